#pragma once

#include "platform/image/RasterDecoder.h"

#include <QByteArray>
#include <QIODevice>
#include <QImageReader>

#include <memory>

namespace quillon {

/// Reads pictures with Qt's decoders.
class QtRasterDecoder final : public RasterDecoder {
public:
    /// As GuiServices::makeDecoder.
    QtRasterDecoder(QIODevice& device, const QByteArray& format);

    [[nodiscard]] QSize size() const override;
    [[nodiscard]] bool canDecode() const override;
    [[nodiscard]] std::unique_ptr<RasterImage> decode() override;
    [[nodiscard]] std::unique_ptr<RasterImage> decodeBeginning() override;

private:
    QImageReader reader_;
};

}  // namespace quillon
