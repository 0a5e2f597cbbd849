#pragma once

#include "pdf/io/InputFile.h"
#include "platform/image/InputFileDevice.h"
#include "platform/image/MessageSilencer.h"

#include <QByteArray>
#include <QImage>
#include <QImageReader>
#include <QSize>

#include <memory>

namespace quillon {

/// Reads the first picture of a file with Qt's decoders. For one reading on one thread.
class PictureDecoder {
public:
    /// The largest picture in memory, in bytes. A page of 60 × 40 cm at 600 pixels per inch in RGB takes 515 MB.
    static constexpr qint64 maximumBytes = qint64{512} << 20;

    /// `format` is Qt's name of the file's kind, or an empty array to tell it by the content.
    PictureDecoder(const std::shared_ptr<pdf::InputFile>& file, const QByteArray& format);

    /// In pixels, from the headers; empty for kinds that must be decoded to know it.
    [[nodiscard]] QSize size() const;

    /// Whether the headers are those of a picture, and of one that fits into `maximumBytes`.
    [[nodiscard]] bool canDecode() const;

    /// Null when the file is damaged.
    [[nodiscard]] QImage decode();

    /// The picture as far as it is intact, the rest blank. Null when nothing of it is, or when the decoder cannot tell.
    [[nodiscard]] QImage decodeBeginning();

private:
    MessageSilencer silencer_;
    InputFileDevice device_;
    QImageReader reader_;
};

}  // namespace quillon
