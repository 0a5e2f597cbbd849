#pragma once

#include "pdf/io/InputFile.h"
#include "platform/gui/GuiServices.h"
#include "platform/image/InputFileDevice.h"
#include "platform/image/MessageSilencer.h"
#include "platform/image/RasterDecoder.h"

#include <QByteArray>
#include <QSize>

#include <memory>

namespace quillon {

/// Reads the first picture of a file with the decoders of GuiServices, silently. For one reading on one thread. Without
/// those services it can decode nothing.
class PictureDecoder {
public:
    /// `format` as for GuiServices::makeDecoder.
    PictureDecoder(const std::shared_ptr<pdf::InputFile>& file, const QByteArray& format);

    // As those of RasterDecoder.
    [[nodiscard]] QSize size() const { return decoder_ ? decoder_->size() : QSize(); }
    [[nodiscard]] bool canDecode() const { return decoder_ && decoder_->canDecode(); }
    [[nodiscard]] std::unique_ptr<RasterImage> decode() { return decoder_ ? decoder_->decode() : nullptr; }
    [[nodiscard]] std::unique_ptr<RasterImage> decodeBeginning() {
        return decoder_ ? decoder_->decodeBeginning() : nullptr;
    }

private:
    const GuiServices* services_;  // first, since what is said about their absence is not to be silenced
    MessageSilencer silencer_;
    InputFileDevice device_;
    std::unique_ptr<RasterDecoder> decoder_;
};

}  // namespace quillon
