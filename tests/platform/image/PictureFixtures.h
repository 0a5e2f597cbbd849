#pragma once

#include <QByteArray>
#include <QImage>

#include <cstdint>
#include <optional>
#include <utility>
#include <vector>

namespace quillon::testing {

/// A picture with more than 256 colours in which no two rows or columns are alike.
[[nodiscard]] QImage colorful(int width = 48, int height = 32);

/// Black shapes on white, of 1 bit a pixel.
[[nodiscard]] QImage blackAndWhite(int width = 48, int height = 32);

/// `image` as QImageWriter writes it in `format`, at 72 pixels per inch.
[[nodiscard]] QByteArray encoded(const QImage& image, const char* format);

/// `values` as bytes, the highest first.
[[nodiscard]] QByteArray bigEndian(std::uint32_t value, int bytes);

/// EXIF data with the tags that are given, in either byte order, from the byte order mark on.
struct Exif {
    std::optional<unsigned> orientation;
    std::optional<std::pair<unsigned, unsigned>> horizontal;  ///< numerator and denominator
    std::optional<std::pair<unsigned, unsigned>> vertical;
    std::optional<unsigned> unit;
    bool isLittleEndian = false;

    [[nodiscard]] QByteArray bytes() const;
};

/// A valid header of an ICC profile with some bytes behind it. `space` has four letters, as "RGB ".
[[nodiscard]] QByteArray iccProfile(const char* space, int length = 200);

/// A JPEG file with 8 × 8 pixels of one colour, whose header can be anything.
struct FlatJpeg {
    std::vector<int> samples{128};              ///< one for each component
    std::vector<std::uint8_t> ids{1, 2, 3, 4};  ///< of the components
    std::uint8_t startOfFrame = 0xC0;
    std::uint8_t precision = 8;
    std::uint16_t width = 8;   ///< what the header says
    std::uint16_t height = 8;  ///< what the header says
    std::optional<int> adobeTransform;
    std::vector<std::pair<std::uint8_t, QByteArray>> segments;  ///< marker and data, after the start of the image

    FlatJpeg& withJfif(unsigned unit, unsigned horizontal, unsigned vertical);
    FlatJpeg& withExif(const Exif& exif);
    FlatJpeg& withProfile(const QByteArray& profile, const std::vector<int>& pieceOrder);
    [[nodiscard]] QByteArray bytes() const;
};

/// `jpeg` with a segment put in right after the start of the image.
[[nodiscard]] QByteArray withSegment(const QByteArray& jpeg, std::uint8_t marker, const QByteArray& data);

/// A PNG file of given chunks.
struct Png {
    using Chunk = std::pair<QByteArray, QByteArray>;  ///< type and data

    std::uint32_t width = 0;
    std::uint32_t height = 0;
    std::uint8_t bitDepth = 8;
    std::uint8_t colorType = 0;
    std::uint8_t interlace = 0;
    std::vector<Chunk> before;  ///< between IHDR and the pixels
    std::vector<Chunk> after;   ///< between the pixels and IEND
    QByteArray rows;            ///< packed samples without the filters
    int pixelChunks = 1;        ///< into how many IDAT chunks the compressed rows are cut

    [[nodiscard]] QByteArray bytes() const;
    [[nodiscard]] QByteArray compressedRows() const;

    /// `image` with samples of `bitDepth` in the given colour type (0 grey, 2 RGB).
    [[nodiscard]] static Png of(const QImage& image, std::uint8_t colorType, std::uint8_t bitDepth = 8);
};

}  // namespace quillon::testing
