#include "tests/platform/image/PictureFixtures.h"

#include <QBuffer>
#include <QImageWriter>
#include <zlib.h>

#include <algorithm>
#include <cstdlib>

namespace quillon::testing {

namespace {

QByteArray littleEndian(std::uint32_t value, int bytes) {
    QByteArray result = bigEndian(value, bytes);
    std::reverse(result.begin(), result.end());
    return result;
}

QByteArray segment(std::uint8_t marker, const QByteArray& data) {
    return QByteArray("\xFF") + static_cast<char>(marker) + bigEndian(static_cast<std::uint32_t>(data.size()) + 2, 2) +
           data;
}

// Collects bits, the first the highest, and stuffs them as JPEG wants.
class BitString {
public:
    void add(unsigned value, int bits) {
        for (int bit = bits - 1; bit >= 0; --bit) {
            pending_ = pending_ << 1 | (value >> bit & 1U);
            if (++count_ < 8) continue;
            bytes_.append(static_cast<char>(pending_));
            if (pending_ == 0xFF) bytes_.append('\0');
            pending_ = 0;
            count_ = 0;
        }
    }

    QByteArray end() {
        while (count_ != 0) add(1, 1);
        return bytes_;
    }

private:
    QByteArray bytes_;
    unsigned pending_ = 0;
    int count_ = 0;
};

QByteArray chunk(const Png::Chunk& content) {
    const QByteArray body = content.first + content.second;
    const auto* const data = reinterpret_cast<const unsigned char*>(body.constData());
    const auto checksum = static_cast<std::uint32_t>(crc32(0, data, static_cast<uInt>(body.size())));
    return bigEndian(static_cast<std::uint32_t>(content.second.size()), 4) + body + bigEndian(checksum, 4);
}

}  // namespace

QImage colorful(int width, int height) {
    QImage image(width, height, QImage::Format_RGB32);
    for (int y = 0; y < height; ++y) {
        for (int x = 0; x < width; ++x) image.setPixel(x, y, qRgb(x * 5 % 256, y * 7 % 256, (x * y + 31 * x) % 256));
    }
    return image;
}

QImage blackAndWhite(int width, int height) {
    QImage image(width, height, QImage::Format_Mono);
    image.setColorTable({qRgb(0, 0, 0), qRgb(255, 255, 255)});
    image.fill(1);
    for (int y = 0; y < height; ++y) {
        for (int x = 0; x < width; ++x) {
            if (x == y || (x > 10 && x < 10 + y && y > 4) || (y == 2 && x % 3 == 0)) image.setPixel(x, y, 0);
        }
    }
    return image;
}

QByteArray encoded(const QImage& image, const char* format) {
    QBuffer buffer;
    buffer.open(QIODevice::WriteOnly);
    QImage silent = image;  // about its resolution, for which Qt otherwise takes the screen's
    silent.setDotsPerMeterX(2835);
    silent.setDotsPerMeterY(2835);
    QImageWriter(&buffer, format).write(silent);
    QByteArray bytes = buffer.data();
    if (bytes.startsWith("BM")) bytes.replace(38, 8, QByteArray(8, '\0'));
    return bytes;
}

QByteArray bigEndian(std::uint32_t value, int bytes) {
    QByteArray result;
    for (int index = bytes - 1; index >= 0; --index) result.append(static_cast<char>(value >> (8 * index) & 0xFF));
    return result;
}

QByteArray Exif::bytes() const {
    const auto number = [this](std::uint32_t value, int count) {
        return isLittleEndian ? littleEndian(value, count) : bigEndian(value, count);
    };
    QByteArray entries;
    QByteArray rationals;
    std::uint32_t count = 0;
    const std::uint32_t rationalsAt = 8 + 2 + 4 * 12 + 4;
    const auto addShort = [&](unsigned tag, std::optional<unsigned> value) {
        if (!value) return;
        entries += number(tag, 2) + number(3, 2) + number(1, 4) + number(*value, 2) + number(0, 2);
        ++count;
    };
    const auto addRational = [&](unsigned tag, const std::optional<std::pair<unsigned, unsigned>>& value) {
        if (!value) return;
        entries += number(tag, 2) + number(5, 2) + number(1, 4) +
                   number(rationalsAt + static_cast<std::uint32_t>(rationals.size()), 4);
        rationals += number(value->first, 4) + number(value->second, 4);
        ++count;
    };
    addShort(0x0112, orientation);
    addRational(0x011A, horizontal);
    addRational(0x011B, vertical);
    addShort(0x0128, unit);
    entries.resize(4 * 12 + 4);
    return QByteArray(isLittleEndian ? "II" : "MM") + number(42, 2) + number(8, 4) + number(count, 2) + entries +
           rationals;
}

QByteArray iccProfile(const char* space, int length) {
    QByteArray profile(length, '\x5A');
    profile.replace(0, 4, bigEndian(static_cast<std::uint32_t>(length), 4));
    profile.replace(12, 4, "mntr");
    profile.replace(16, 4, space);
    profile.replace(36, 4, "acsp");
    return profile;
}

FlatJpeg& FlatJpeg::withJfif(unsigned unit, unsigned horizontal, unsigned vertical) {
    segments.emplace_back(0xE0, QByteArray("JFIF\0\1\2", 7) + bigEndian(unit, 1) + bigEndian(horizontal, 2) +
                                    bigEndian(vertical, 2) + QByteArray(2, '\0'));
    return *this;
}

FlatJpeg& FlatJpeg::withExif(const Exif& exif) {
    segments.emplace_back(0xE1, QByteArray("Exif\0\0", 6) + exif.bytes());
    return *this;
}

FlatJpeg& FlatJpeg::withProfile(const QByteArray& profile, const std::vector<int>& pieceOrder) {
    const auto count = static_cast<qsizetype>(pieceOrder.size());
    const qsizetype length = (profile.size() + count - 1) / count;
    for (const int piece : pieceOrder) {
        segments.emplace_back(0xE2, QByteArray("ICC_PROFILE\0", 12) + static_cast<char>(piece) +
                                        static_cast<char>(count) + profile.mid((piece - 1) * length, length));
    }
    return *this;
}

// One quantisation table of eights makes a block's first coefficient its sample minus 128, and all others are zero. The
// Huffman codes are the twelve categories in 4 bits, and a single 0 for the end of a block.
QByteArray FlatJpeg::bytes() const {
    const auto count = static_cast<std::uint32_t>(samples.size());
    QByteArray file("\xFF\xD8");
    for (const auto& [marker, data] : segments) file += segment(marker, data);
    if (adobeTransform) {
        file += segment(
            0xEE, QByteArray("Adobe") + bigEndian(100, 2) + QByteArray(4, '\0') + static_cast<char>(*adobeTransform));
    }
    file += segment(0xDB, QByteArray(1, '\0') + QByteArray(64, '\x08'));
    QByteArray frame = bigEndian(precision, 1) + bigEndian(height, 2) + bigEndian(width, 2) + bigEndian(count, 1);
    const bool isProgressive = startOfFrame == 0xC2;
    QByteArray scan = bigEndian(count, 1);
    for (std::size_t index = 0; index < samples.size(); ++index) {
        frame += bigEndian(ids[index], 1) + bigEndian(0x11, 1) + bigEndian(0, 1);
        scan += bigEndian(ids[index], 1) + bigEndian(0, 1);
    }
    file += segment(startOfFrame, frame);
    QByteArray lengths(16, '\0');
    lengths[3] = 12;
    file += segment(0xC4, bigEndian(0x00, 1) + lengths + QByteArray::fromHex("000102030405060708090A0B"));
    lengths.fill('\0');
    lengths[0] = 1;
    file += segment(0xC4, bigEndian(0x10, 1) + lengths + QByteArray(1, '\0'));
    file += segment(0xDA, scan + bigEndian(isProgressive ? 0 : 0x003F, 2) + bigEndian(0, 1));

    BitString bits;
    for (const int sample : samples) {
        const int difference = sample - 128;
        int category = 0;
        while (std::abs(difference) >> category != 0) ++category;
        bits.add(static_cast<unsigned>(category), 4);
        const int value = difference < 0 ? difference + (1 << category) - 1 : difference;
        bits.add(static_cast<unsigned>(value), category);
        if (!isProgressive) bits.add(0, 1);
    }
    return file + bits.end() + "\xFF\xD9";
}

QByteArray withSegment(const QByteArray& jpeg, std::uint8_t marker, const QByteArray& data) {
    return jpeg.left(2) + segment(marker, data) + jpeg.mid(2);
}

QByteArray Png::bytes() const {
    QByteArray file("\x89PNG\r\n\x1A\n");
    file += chunk({"IHDR", bigEndian(width, 4) + bigEndian(height, 4) + bigEndian(bitDepth, 1) +
                               bigEndian(colorType, 1) + QByteArray(2, '\0') + bigEndian(interlace, 1)});
    for (const Chunk& content : before) file += chunk(content);
    const QByteArray pixels = compressedRows();
    const qsizetype length = pixels.size() / pixelChunks + 1;
    for (qsizetype offset = 0; offset < pixels.size(); offset += length)
        file += chunk({"IDAT", pixels.mid(offset, length)});
    for (const Chunk& content : after) file += chunk(content);
    return file + chunk({"IEND", {}});
}

QByteArray Png::compressedRows() const {
    const qsizetype rowLength = std::max<qsizetype>(height == 0 ? 0 : rows.size() / static_cast<qsizetype>(height), 1);
    QByteArray filtered;
    for (qsizetype offset = 0; offset < rows.size(); offset += rowLength)
        filtered += QByteArray(1, '\0') + rows.mid(offset, rowLength);
    return qCompress(filtered).mid(4);  // Qt puts the length in front
}

Png Png::of(const QImage& image, std::uint8_t colorType, std::uint8_t bitDepth) {
    Png png;
    png.width = static_cast<std::uint32_t>(image.width());
    png.height = static_cast<std::uint32_t>(image.height());
    png.bitDepth = bitDepth;
    png.colorType = colorType;
    for (int y = 0; y < image.height(); ++y) {
        unsigned pending = 0;
        int used = 0;
        const auto add = [&](int sample) {
            if (bitDepth == 16) {
                png.rows += bigEndian(static_cast<unsigned>(sample) * 257U, 2);
                return;
            }
            pending = pending << bitDepth | static_cast<unsigned>(sample) >> (8 - bitDepth);
            used += bitDepth;
            if (used < 8) return;
            png.rows.append(static_cast<char>(pending));
            pending = 0;
            used = 0;
        };
        for (int x = 0; x < image.width(); ++x) {
            const QRgb pixel = image.pixel(x, y);
            add(qRed(pixel));
            if (colorType != 2) continue;
            add(qGreen(pixel));
            add(qBlue(pixel));
        }
        while (used != 0) add(0);
    }
    return png;
}

}  // namespace quillon::testing
