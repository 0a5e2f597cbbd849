#include "platform/gui/QtRasterImage.h"

#include <QColorSpace>
#include <QPixelFormat>

#include <algorithm>
#include <cstddef>

namespace quillon {

namespace {

constexpr qint64 stripBytes = qint64{1} << 20;

// The format on the way to 16 bits. Formats of few bits are widened to 8 bits first: expanded to 16 at once, their
// samples would look as if they had more than 8.
QImage::Format intermediateFormat(const QImage& image) {
    const QPixelFormat format = image.pixelFormat();
    const bool hasWideSamples =
        image.depth() > 32 || image.format() == QImage::Format_Grayscale16 || format.redSize() > 8;
    if (hasWideSamples) return QImage::Format_RGBA64;
    return image.hasAlphaChannel() ? QImage::Format_ARGB32 : QImage::Format_RGB32;
}

}  // namespace

void QtRasterImage::forEachRow(const std::function<void(std::span<const QRgba64>)>& visit) const {
    const QImage::Format intermediate = intermediateFormat(image_);
    const qint64 rowBytes = std::max<qint64>(image_.width() * qint64{sizeof(QRgba64)}, 1);
    const int stripHeight = static_cast<int>(std::clamp<qint64>(stripBytes / rowBytes, 1, image_.height()));
    for (int top = 0; top < image_.height(); top += stripHeight) {
        const int height = std::min(stripHeight, image_.height() - top);
        QImage strip(image_.constScanLine(top), image_.width(), height, image_.bytesPerLine(), image_.format());
        strip.setColorTable(image_.colorTable());
        const QImage wide = strip.convertToFormat(intermediate).convertToFormat(QImage::Format_RGBA64);
        for (int row = 0; row < height; ++row) {
            const auto* const pixels = reinterpret_cast<const QRgba64*>(wide.constScanLine(row));
            visit(std::span(pixels, static_cast<std::size_t>(image_.width())));
        }
    }
}

std::vector<char> QtRasterImage::profile() const {
    const QByteArray bytes = image_.colorSpace().iccProfile();
    return {bytes.begin(), bytes.end()};
}

}  // namespace quillon
