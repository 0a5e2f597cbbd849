#include "platform/gui/QtRasterDecoder.h"

#include "platform/gui/QtRasterImage.h"

#include <QImage>
#include <QPixelFormat>

#include <utility>

namespace quillon {

namespace {

// Qt's limit holds for the process; it is the last line of defence where a decoder's headers do not tell the size.
void limitQtsAllocations() {
    static const bool isLimited = [] {
        QImageReader::setAllocationLimit(static_cast<int>(RasterDecoder::maximumBytes >> 20));
        return true;
    }();
    static_cast<void>(isLimited);
}

qint64 bitsPerPixel(QImage::Format format) {
    constexpr qint64 usualBits = 32;
    return format == QImage::Format_Invalid ? usualBits : QImage::toPixelFormat(format).bitsPerPixel();
}

std::unique_ptr<RasterImage> rasterOf(QImage image) {
    return image.isNull() ? nullptr : std::make_unique<QtRasterImage>(std::move(image));
}

// Whether any pixel differs from the last, which is blank if the picture was not decoded to its end.
bool showsAnything(const QImage& image) {
    const QRgb blank = image.pixel(image.width() - 1, image.height() - 1);
    for (int y = 0; y < image.height(); ++y) {
        for (int x = 0; x < image.width(); ++x) {
            if (((image.pixel(x, y) ^ blank) & RGB_MASK) != 0) return true;
        }
    }
    return false;
}

}  // namespace

QtRasterDecoder::QtRasterDecoder(QIODevice& device, const QByteArray& format) {
    limitQtsAllocations();
    reader_.setDecideFormatFromContent(format.isEmpty());
    reader_.setAutoTransform(false);
    reader_.setDevice(&device);
    reader_.setFormat(format);
}

QSize QtRasterDecoder::size() const {
    return reader_.size();
}

bool QtRasterDecoder::canDecode() const {
    if (!reader_.canRead()) return false;
    const QSize pixels = reader_.size();
    if (!pixels.isValid()) return true;
    const qint64 bytesPerRow = (pixels.width() * bitsPerPixel(reader_.imageFormat()) + 7) / 8;
    return !pixels.isEmpty() && bytesPerRow <= maximumBytes / pixels.height();
}

std::unique_ptr<RasterImage> QtRasterDecoder::decode() {
    if (!canDecode()) return nullptr;
    return rasterOf(reader_.read());
}

std::unique_ptr<RasterImage> QtRasterDecoder::decodeBeginning() {
    if (!canDecode()) return nullptr;
    QImage image(reader_.size(), reader_.imageFormat());
    if (image.isNull()) return nullptr;
    const bool hasWhite = image.format() != QImage::Format_Indexed8 && image.depth() > 1 && !image.hasAlphaChannel();
    image.fill(hasWhite ? ~0U : 0U);
    const uchar* const offered = image.constBits();
    if (reader_.read(&image)) return rasterOf(std::move(image));

    // A decoder that did not fill the memory it was offered leaves unknown bytes behind.
    if (image.isNull() || image.constBits() != offered || !showsAnything(image)) return nullptr;
    return rasterOf(std::move(image));
}

}  // namespace quillon
