#include "platform/image/PictureDecoder.h"

#include <QPixelFormat>

#include <algorithm>

namespace quillon {

namespace {

// Qt's limit holds for the process; it is the last line of defence where a decoder's headers do not tell the size.
void limitQtsAllocations() {
    static const bool isLimited = [] {
        QImageReader::setAllocationLimit(static_cast<int>(PictureDecoder::maximumBytes >> 20));
        return true;
    }();
    static_cast<void>(isLimited);
}

qint64 bitsPerPixel(QImage::Format format) {
    constexpr qint64 usualBits = 32;
    return format == QImage::Format_Invalid ? usualBits : QImage::toPixelFormat(format).bitsPerPixel();
}

}  // namespace

PictureDecoder::PictureDecoder(const std::shared_ptr<pdf::InputFile>& file, const QByteArray& format) : device_(file) {
    limitQtsAllocations();
    reader_.setDecideFormatFromContent(format.isEmpty());
    reader_.setAutoTransform(false);
    reader_.setDevice(&device_);
    reader_.setFormat(format);
}

QSize PictureDecoder::size() const {
    return reader_.size();
}

bool PictureDecoder::canDecode() const {
    if (!reader_.canRead()) return false;
    const QSize pixels = reader_.size();
    if (!pixels.isValid()) return true;
    const qint64 bytesPerRow = (pixels.width() * bitsPerPixel(reader_.imageFormat()) + 7) / 8;
    return !pixels.isEmpty() && bytesPerRow <= maximumBytes / pixels.height();
}

QImage PictureDecoder::decode() {
    return canDecode() ? reader_.read() : QImage();
}

QImage PictureDecoder::decodeBeginning() {
    if (!canDecode()) return {};
    QImage image(reader_.size(), reader_.imageFormat());
    if (image.isNull()) return {};
    image.fill(0);
    const uchar* const blank = image.constBits();
    if (reader_.read(&image)) return image;

    // A decoder that did not fill the memory it was offered leaves unknown bytes behind.
    if (image.isNull() || image.constBits() != blank) return {};
    const auto isWritten = [](uchar byte) { return byte != 0; };
    return std::any_of(blank, blank + image.sizeInBytes(), isWritten) ? image : QImage();
}

}  // namespace quillon
