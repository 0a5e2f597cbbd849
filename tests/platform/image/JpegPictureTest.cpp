#include "platform/image/JpegHeader.h"
#include "tests/platform/image/PictureFixtures.h"
#include "tests/platform/image/PictureTest.h"

#include <QImage>

namespace quillon::testing {

namespace {

class JpegPictureTest : public PictureTest {
protected:
    // The entries of the one image that the page of `jpeg` has, after checking that its bytes were copied.
    std::string entriesOf(const QByteArray& jpeg) {
        const auto image = load(QStringLiteral("picture.jpg"), jpeg);
        if (!image) return "no picture";
        const auto images = imagesOf(*image);
        if (images.size() != 1) return "no page";
        EXPECT_TRUE(images[0].isCopied);
        EXPECT_EQ(images[0].data, jpeg.toStdString());
        return images[0].entries;
    }

    QRgb colorDrawnOf(const QByteArray& jpeg) {
        const auto image = load(QStringLiteral("picture.jpg"), jpeg);
        if (!image) return 0;
        const QImage drawn = drawnByMuPdf(*image);
        // The two turn CMYK into RGB in different ways.
        const bool isCmyk = contains(imagesOf(*image).at(0).entries, "CMYK");
        EXPECT_LE(largestDifference(drawn, drawnByPoppler(*image)), isCmyk ? 120 : 3);
        return drawn.isNull() ? 0 : drawn.pixel(4, 4);
    }
};

}  // namespace

TEST_F(JpegPictureTest, GrayIsEmbeddedByteForByte) {
    FlatJpeg gray;
    gray.samples = {77};
    const std::string entries = entriesOf(gray.bytes());
    EXPECT_TRUE(contains(entries, "/Filter/DCTDecode"));
    EXPECT_TRUE(contains(entries, "/ColorSpace/DeviceGray"));
    EXPECT_TRUE(contains(entries, "/Width 8/Height 8/BitsPerComponent 8"));
    EXPECT_FALSE(contains(entries, "/Decode["));
    EXPECT_EQ(colorDrawnOf(gray.bytes()), qRgb(77, 77, 77));
}

TEST_F(JpegPictureTest, ColourIsEmbeddedByteForByteAndDrawnAsQtDecodesIt) {
    const QByteArray jpeg = encoded(colorful(), "jpeg");
    EXPECT_TRUE(contains(entriesOf(jpeg), "/ColorSpace/DeviceRGB"));
    const QImage decoded = QImage::fromData(jpeg);
    expectDrawn(*load(QStringLiteral("picture.jpg")), decoded, 4);
}

TEST_F(JpegPictureTest, ProgressiveIsEmbedded) {
    FlatJpeg progressive;
    progressive.startOfFrame = 0xC2;
    progressive.samples = {200};
    EXPECT_TRUE(contains(entriesOf(progressive.bytes()), "/DCTDecode"));
    EXPECT_EQ(colorDrawnOf(progressive.bytes()), qRgb(200, 200, 200));
}

TEST_F(JpegPictureTest, ExtendedIsEmbedded) {
    FlatJpeg extended;
    extended.startOfFrame = 0xC1;
    EXPECT_TRUE(contains(entriesOf(extended.bytes()), "/DCTDecode"));
}

TEST_F(JpegPictureTest, TrailingBytesAreKept) {
    const QByteArray jpeg = FlatJpeg().bytes() + "more";
    EXPECT_TRUE(contains(entriesOf(jpeg), "/DCTDecode"));
}

TEST_F(JpegPictureTest, AdobeCmykIsInvertedByDecode) {
    FlatJpeg cmyk;
    cmyk.samples = {255 - 0, 255 - 255, 255 - 0, 255 - 0};  // magenta, stored inverted
    cmyk.adobeTransform = 0;
    const std::string entries = entriesOf(cmyk.bytes());
    EXPECT_TRUE(contains(entries, "/ColorSpace/DeviceCMYK"));
    EXPECT_TRUE(contains(entries, "/Decode[1 0 1 0 1 0 1 0]"));
    const QRgb color = colorDrawnOf(cmyk.bytes());
    EXPECT_GT(qRed(color), 200);
    EXPECT_LT(qGreen(color), 60);
}

TEST_F(JpegPictureTest, AdobeYcckIsInvertedByDecode) {
    FlatJpeg ycck;
    ycck.samples = {0, 128, 128, 255};  // white: no ink of any kind, inverted
    ycck.adobeTransform = 2;
    EXPECT_TRUE(contains(entriesOf(ycck.bytes()), "/Decode[1 0 1 0 1 0 1 0]"));
    EXPECT_EQ(colorDrawnOf(ycck.bytes()), qRgb(255, 255, 255));
}

TEST_F(JpegPictureTest, CmykWithoutAdobeMarkerIsNotInverted) {
    FlatJpeg cmyk;
    cmyk.samples = {0, 0, 0, 0};
    EXPECT_FALSE(contains(entriesOf(cmyk.bytes()), "/Decode["));
    EXPECT_EQ(colorDrawnOf(cmyk.bytes()), qRgb(255, 255, 255));
}

TEST_F(JpegPictureTest, RgbByComponentIdsIsNotTakenForYcbcr) {
    FlatJpeg rgb;
    rgb.samples = {250, 20, 30};
    rgb.ids = {'R', 'G', 'B'};
    EXPECT_TRUE(contains(entriesOf(rgb.bytes()), "/DecodeParms<</ColorTransform 0>>"));
    EXPECT_EQ(colorDrawnOf(rgb.bytes()), qRgb(250, 20, 30));
}

TEST_F(JpegPictureTest, RgbByAdobeMarkerNeedsNoParameter) {
    FlatJpeg rgb;
    rgb.samples = {250, 20, 30};
    rgb.adobeTransform = 0;
    EXPECT_FALSE(contains(entriesOf(rgb.bytes()), "ColorTransform"));
    EXPECT_EQ(colorDrawnOf(rgb.bytes()), qRgb(250, 20, 30));
}

TEST_F(JpegPictureTest, YcbcrWithoutMarkersNeedsNoParameter) {
    FlatJpeg ycbcr;
    ycbcr.samples = {120, 128, 128};
    EXPECT_FALSE(contains(entriesOf(ycbcr.bytes()), "ColorTransform"));
    EXPECT_EQ(colorDrawnOf(ycbcr.bytes()), qRgb(120, 120, 120));
}

TEST_F(JpegPictureTest, TwelveBitsAndLosslessAreNotEmbedded) {
    FlatJpeg twelveBits;
    twelveBits.startOfFrame = 0xC1;
    twelveBits.precision = 12;
    EXPECT_EQ(entriesOf(twelveBits.bytes()), "no picture");
    FlatJpeg lossless;
    lossless.startOfFrame = 0xC3;
    EXPECT_EQ(entriesOf(lossless.bytes()), "no picture");
}

TEST_F(JpegPictureTest, ArithmeticCodingIsDecoded) {
    FlatJpeg arithmetic;
    arithmetic.startOfFrame = 0xC9;
    const auto image = load(QStringLiteral("picture.jpg"), arithmetic.bytes());
    ASSERT_TRUE(image);
    const auto images = imagesOf(*image);
    ASSERT_EQ(images.size(), 1U);
    EXPECT_FALSE(images[0].isCopied);
    EXPECT_FALSE(contains(images[0].entries, "DCTDecode"));
    EXPECT_EQ(drawnByMuPdf(*image).size(), QSize(8, 8));
}

TEST_F(JpegPictureTest, ProfileInSeveralSegmentsIsAssembledInOrder) {
    const QByteArray profile = iccProfile("RGB ", 1000);
    QByteArray uneven = profile;
    for (int index = 128; index < uneven.size(); ++index) uneven[index] = static_cast<char>(index * 7);
    FlatJpeg jpeg;
    jpeg.samples = {120, 128, 128};
    jpeg.withProfile(uneven, {3, 1, 2});
    const auto image = load(QStringLiteral("picture.jpg"), jpeg.bytes());
    ASSERT_TRUE(image);
    ImagePdfSink sink;
    ASSERT_TRUE(image->produce(sink));
    const auto profiles = sink.streamsWith("/N 3");
    ASSERT_EQ(profiles.size(), 1U);
    EXPECT_TRUE(contains(profiles[0]->entries, "/Alternate/DeviceRGB"));
    const QByteArray stored = bigEndian(1000, 4) + QByteArray::fromStdString(profiles[0]->data);
    EXPECT_EQ(qUncompress(stored), uneven);
    EXPECT_EQ(sink.streamsWith("[/ICCBased 1 0 R]").size(), 1U);
}

TEST_F(JpegPictureTest, IncompleteProfileIsLeftOut) {
    FlatJpeg jpeg;
    jpeg.samples = {120, 128, 128};
    jpeg.withProfile(iccProfile("RGB "), {1, 2});
    jpeg.segments.pop_back();
    EXPECT_TRUE(contains(entriesOf(jpeg.bytes()), "/ColorSpace/DeviceRGB"));
}

TEST_F(JpegPictureTest, ProfileOfOtherColourSpaceIsLeftOut) {
    FlatJpeg jpeg;
    jpeg.samples = {120, 128, 128};
    jpeg.withProfile(iccProfile("GRAY"), {1});
    EXPECT_TRUE(contains(entriesOf(jpeg.bytes()), "/ColorSpace/DeviceRGB"));
    FlatJpeg gray;
    gray.withProfile(iccProfile("GRAY"), {1});
    EXPECT_TRUE(contains(entriesOf(gray.bytes()), "/ColorSpace[/ICCBased"));
    FlatJpeg cmyk;
    cmyk.samples = {0, 0, 0, 0};
    cmyk.withProfile(iccProfile("CMYK"), {1});
    EXPECT_TRUE(contains(entriesOf(cmyk.bytes()), "/ColorSpace[/ICCBased"));
}

TEST_F(JpegPictureTest, DensityInInchesGivesThePageSize) {
    FlatJpeg jpeg;
    jpeg.width = 800;
    jpeg.height = 400;
    jpeg.withJfif(1, 200, 100);
    EXPECT_EQ(load(QStringLiteral("a.jpg"), jpeg.bytes())->size(), QSizeF(288, 288));
}

TEST_F(JpegPictureTest, DensityInCentimetresGivesThePageSize) {
    FlatJpeg jpeg;
    jpeg.width = 1000;
    jpeg.height = 500;
    jpeg.withJfif(2, 100, 100);
    const QSizeF size = load(QStringLiteral("a.jpg"), jpeg.bytes())->size();
    EXPECT_NEAR(size.width(), 1000 * 72 / 254.0, 1e-9);
    EXPECT_NEAR(size.height(), 500 * 72 / 254.0, 1e-9);
}

TEST_F(JpegPictureTest, DensityOfAspectRatioOnlyGives72) {
    FlatJpeg jpeg;
    jpeg.withJfif(0, 300, 300);
    EXPECT_EQ(load(QStringLiteral("a.jpg"), jpeg.bytes())->size(), QSizeF(8, 8));
}

TEST_F(JpegPictureTest, JfifDensityGoesBeforeExif) {
    Exif exif;
    exif.horizontal = exif.vertical = std::pair(72U * 2, 1U);
    FlatJpeg both;
    both.width = both.height = 720;
    both.withJfif(1, 720, 720).withExif(exif);
    EXPECT_EQ(load(QStringLiteral("a.jpg"), both.bytes())->size(), QSizeF(72, 72));
    FlatJpeg exifOnly;
    exifOnly.width = exifOnly.height = 720;
    exifOnly.withJfif(0, 1, 1).withExif(exif);
    EXPECT_EQ(load(QStringLiteral("a.jpg"), exifOnly.bytes())->size(), QSizeF(360, 360));
}

TEST_F(JpegPictureTest, AllOrientationsAreDrawnUprightWithoutTouchingTheBytes) {
    const QImage upright = colorful(48, 32);
    for (unsigned orientation = 1; orientation <= 8; ++orientation) {
        SCOPED_TRACE(orientation);
        // What a camera held that way stores: the upright picture, the orientation undone.
        QImage stored = upright;
        switch (orientation) {
            case 2:
                stored = upright.mirrored(true, false);
                break;
            case 3:
                stored = upright.mirrored(true, true);
                break;
            case 4:
                stored = upright.mirrored(false, true);
                break;
            case 5:
                stored = upright.transformed(QTransform().rotate(90)).mirrored(true, false);
                break;
            case 6:
                stored = upright.transformed(QTransform().rotate(-90));
                break;
            case 7:
                stored = upright.transformed(QTransform().rotate(90)).mirrored(false, true);
                break;
            case 8:
                stored = upright.transformed(QTransform().rotate(90));
                break;
            default:
                break;
        }
        Exif exif;
        exif.orientation = orientation;
        exif.isLittleEndian = orientation % 2 == 0;
        const QByteArray jpeg = withSegment(encoded(stored, "jpeg"), 0xE1, QByteArray("Exif\0\0", 6) + exif.bytes());
        const auto image = load(QStringLiteral("a.jpg"), jpeg);
        ASSERT_TRUE(image);
        EXPECT_EQ(image->size(), QSizeF(48, 32));
        EXPECT_EQ(imagesOf(*image).at(0).data, jpeg.toStdString());
        // JPEG changes the colours; how much is measured on the picture before it is turned.
        const int loss = largestDifference(QImage::fromData(encoded(stored, "jpeg")), stored);
        expectDrawn(*image, upright, loss + 4);
    }
}

TEST_F(JpegPictureTest, InvalidOrientationsAreIgnored) {
    for (const unsigned orientation : {0U, 9U, 255U, 65535U}) {
        Exif exif;
        exif.orientation = orientation;
        FlatJpeg jpeg;
        jpeg.width = 16;
        jpeg.withExif(exif);
        EXPECT_EQ(load(QStringLiteral("a.jpg"), jpeg.bytes())->size(), QSizeF(16, 8)) << orientation;
    }
}

TEST_F(JpegPictureTest, ResolutionOfEachAxisTurnsWithThePicture) {
    Exif exif;
    exif.orientation = 6;
    exif.horizontal = std::pair(144U, 1U);
    exif.vertical = std::pair(72U, 1U);
    FlatJpeg jpeg;
    jpeg.width = 100;
    jpeg.height = 40;
    jpeg.withExif(exif);
    EXPECT_EQ(load(QStringLiteral("a.jpg"), jpeg.bytes())->size(), QSizeF(40, 50));
}

TEST_F(JpegPictureTest, HeaderCutAnywhereIsNoPictureAndNeverACrash) {
    FlatJpeg jpeg;
    jpeg.withJfif(1, 72, 72).withExif(Exif{6, std::pair(1U, 1U), std::pair(1U, 1U), 2, false});
    jpeg.withProfile(iccProfile("GRAY"), {1, 2});
    const QByteArray whole = jpeg.bytes();
    const qsizetype scan = whole.lastIndexOf("\xFF\xDA");
    for (qsizetype length = 0; length < scan; ++length) {
        EXPECT_FALSE(load(QStringLiteral("a.jpg"), whole.left(length))) << length;
    }
}

TEST_F(JpegPictureTest, EndlessMarkersAreGivenUp) {
    EXPECT_FALSE(load(QStringLiteral("fill.jpg"), "\xFF\xD8" + QByteArray(8 << 20, '\xFF')));
    QByteArray segments("\xFF\xD8");
    for (int count = 0; count < 100'000; ++count) segments += QByteArray("\xFF\xE5\0\2", 4);
    EXPECT_FALSE(load(QStringLiteral("segments.jpg"), segments));
}

}  // namespace quillon::testing
