#include "tests/platform/image/PictureFixtures.h"
#include "tests/platform/image/PictureTest.h"

#include <QImage>
#include <QPainter>

namespace quillon::testing {

namespace {

class PngPictureTest : public PictureTest {
protected:
    // The page's one image, after checking that it holds the compressed rows of `png` as they were.
    ImagePdfSink::Stream copiedFrom(const Png& png) {
        const auto image = load(QStringLiteral("picture.png"), png.bytes());
        const auto images = image ? imagesOf(*image) : std::vector<ImagePdfSink::Stream>();
        if (images.size() != 1) {
            ADD_FAILURE() << images.size() << " images";
            return {};
        }
        EXPECT_TRUE(images[0].isCopied);
        EXPECT_EQ(images[0].data, png.compressedRows().toStdString());
        return images[0];
    }

    void expectDrawnAsQtReads(const QByteArray& bytes, int tolerance = 0) {
        const auto image = load(QStringLiteral("picture.png"), bytes);
        ASSERT_TRUE(image);
        QImage onWhite(QImage::fromData(bytes).size(), QImage::Format_RGB32);
        onWhite.fill(Qt::white);
        QPainter(&onWhite).drawImage(0, 0, QImage::fromData(bytes));
        expectDrawn(*image, onWhite, tolerance);
    }
};

Png paletted(int bitDepth) {
    Png png = Png::of(colorful(32, 16), 0, static_cast<std::uint8_t>(bitDepth));
    png.colorType = 3;
    QByteArray palette;
    for (int index = 0; index < 1 << bitDepth; ++index)
        palette += bigEndian(static_cast<unsigned>(index) * 7919U % 0xFFFFFF, 3);
    png.before.emplace_back("PLTE", palette);
    return png;
}

QImage translucent(QImage::Format format) {
    QImage image = colorful().convertToFormat(format);
    for (int y = 0; y < image.height(); ++y) {
        for (int x = 0; x < image.width(); ++x) {
            QColor color = image.pixelColor(x, y);
            color.setAlpha(x * 5);
            image.setPixelColor(x, y, color);
        }
    }
    return image;
}

}  // namespace

TEST_F(PngPictureTest, GrayOfEachDepthPassesThrough) {
    for (const int depth : {1, 2, 4, 8, 16}) {
        SCOPED_TRACE(depth);
        const Png png = Png::of(colorful(37, 11), 0, static_cast<std::uint8_t>(depth));
        const std::string entries = copiedFrom(png).entries;
        EXPECT_TRUE(contains(entries,
                             "/ColorSpace/DeviceGray/Filter/FlateDecode/DecodeParms<</Predictor 15/Colors 1/"
                             "BitsPerComponent " +
                                 std::to_string(depth) + "/Columns 37>>"))
            << entries;
        expectDrawnAsQtReads(png.bytes(), depth == 16 ? 1 : 0);
    }
}

TEST_F(PngPictureTest, RgbOfEachDepthPassesThrough) {
    for (const int depth : {8, 16}) {
        SCOPED_TRACE(depth);
        const Png png = Png::of(colorful(), 2, static_cast<std::uint8_t>(depth));
        EXPECT_TRUE(contains(copiedFrom(png).entries, "/Colors 3/BitsPerComponent " + std::to_string(depth)));
        expectDrawnAsQtReads(png.bytes(), depth == 16 ? 1 : 0);
    }
}

TEST_F(PngPictureTest, PaletteOfEachDepthPassesThrough) {
    for (const int depth : {1, 2, 4, 8}) {
        SCOPED_TRACE(depth);
        const Png png = paletted(depth);
        EXPECT_TRUE(contains(copiedFrom(png).entries,
                             "/ColorSpace[/Indexed/DeviceRGB " + std::to_string((1 << depth) - 1) + "<000000"));
        expectDrawnAsQtReads(png.bytes());
    }
}

TEST_F(PngPictureTest, SeveralPixelChunksAreCopiedAsRangesInOrder) {
    Png png = Png::of(colorful(), 2);
    png.pixelChunks = 7;
    EXPECT_EQ(copiedFrom(png).ranges.size(), 7U);
    expectDrawnAsQtReads(png.bytes());
}

TEST_F(PngPictureTest, FilteredRowsOfQtsWriterPassThrough) {
    const QByteArray bytes = encoded(colorful(200, 100), "png");
    EXPECT_TRUE(imagesOf(*load(QStringLiteral("a.png"), bytes)).at(0).isCopied);
    expectDrawnAsQtReads(bytes);
}

TEST_F(PngPictureTest, TransparentColourBecomesAColourKey) {
    Png gray = Png::of(colorful(), 0);
    gray.before.emplace_back("tRNS", bigEndian(35, 2));
    EXPECT_TRUE(contains(copiedFrom(gray).entries, "/Mask[35 35]"));
    expectDrawnAsQtReads(gray.bytes());

    Png rgb = Png::of(colorful(), 2);
    const QRgb color = colorful().pixel(9, 9);
    rgb.before.emplace_back("tRNS", bigEndian(static_cast<unsigned>(qRed(color)), 2) +
                                        bigEndian(static_cast<unsigned>(qGreen(color)), 2) +
                                        bigEndian(static_cast<unsigned>(qBlue(color)), 2));
    EXPECT_TRUE(contains(copiedFrom(rgb).entries, "/Mask[45 45 63 63 "));
    expectDrawnAsQtReads(rgb.bytes());
}

TEST_F(PngPictureTest, TransparentPaletteEntriesSideBySideBecomeAColourKey) {
    Png png = paletted(8);
    png.before.emplace_back("tRNS", QByteArray("\xFF\xFF\0\0\0\0\0\xFF", 8));
    EXPECT_TRUE(contains(copiedFrom(png).entries, "/Mask[2 6]"));
    expectDrawnAsQtReads(png.bytes());
}

TEST_F(PngPictureTest, TransparentColourOfOtherDepthsBecomesASoftMask) {
    Png gray = Png::of(colorful(), 0, 4);
    gray.before.emplace_back("tRNS", bigEndian(5, 2));
    Png palette = paletted(4);
    palette.before.emplace_back("tRNS", QByteArray("\xFF\xFF\0\0\xFF", 5));
    for (const Png& png : {gray, palette}) {
        const auto images = imagesOf(*load(QStringLiteral("a.png"), png.bytes()));
        ASSERT_EQ(images.size(), 2U);
        EXPECT_TRUE(contains(images[0].entries, "/BitsPerComponent 1/"));
        expectDrawnAsQtReads(png.bytes());
    }
}

TEST_F(PngPictureTest, TranslucentPaletteBecomesASoftMask) {
    Png png = paletted(4);
    png.before.emplace_back("tRNS", QByteArray("\x40\x80\xC0", 3));
    const auto images = imagesOf(*load(QStringLiteral("a.png"), png.bytes()));
    ASSERT_EQ(images.size(), 2U);
    EXPECT_TRUE(contains(images[0].entries, "/BitsPerComponent 8/ColorSpace/DeviceGray"));
    EXPECT_TRUE(contains(images[1].entries, "/Indexed"));
    EXPECT_TRUE(contains(images[1].entries, "/SMask 1 0 R"));
    expectDrawnAsQtReads(png.bytes(), 1);
}

TEST_F(PngPictureTest, AlphaBecomesASoftMask) {
    const QByteArray bytes = encoded(translucent(QImage::Format_ARGB32), "png");
    const auto images = imagesOf(*load(QStringLiteral("a.png"), bytes));
    ASSERT_EQ(images.size(), 2U);
    EXPECT_TRUE(contains(images[1].entries, "/SMask 1 0 R"));
    expectDrawnAsQtReads(bytes, 1);
}

TEST_F(PngPictureTest, AlphaOfSixteenBitsKeepsThem) {
    const QByteArray bytes = encoded(translucent(QImage::Format_RGBA64), "png");
    // Of 8-bit samples widened there is nothing to keep; one that is not makes the difference.
    QImage fine = translucent(QImage::Format_RGBA64);
    fine.setPixelColor(3, 3, QColor::fromRgba64(1000, 2000, 3000, 40000));
    const auto coarse = imagesOf(*load(QStringLiteral("a.png"), bytes));
    ASSERT_EQ(coarse.size(), 2U);
    EXPECT_TRUE(contains(coarse[1].entries, "/BitsPerComponent 8/"));
    const auto images = imagesOf(*load(QStringLiteral("b.png"), encoded(fine, "png")));
    ASSERT_EQ(images.size(), 2U);
    EXPECT_TRUE(contains(images[0].entries, "/BitsPerComponent 16/"));
    EXPECT_TRUE(contains(images[1].entries, "/BitsPerComponent 16/"));
    expectDrawnAsQtReads(encoded(fine, "png"), 2);
}

TEST_F(PngPictureTest, OpaqueAlphaChannelGivesNoMask) {
    const QByteArray bytes = encoded(colorful().convertToFormat(QImage::Format_ARGB32), "png");
    EXPECT_EQ(imagesOf(*load(QStringLiteral("a.png"), bytes)).size(), 1U);
    expectDrawnAsQtReads(bytes);
}

TEST_F(PngPictureTest, ProfileIsKeptWhenItFits) {
    const QByteArray chunk = QByteArray("name\0\0", 6) + qCompress(iccProfile("RGB ", 3000)).mid(4);
    Png rgb = Png::of(colorful(), 2);
    rgb.before.emplace_back("iCCP", chunk);
    EXPECT_TRUE(contains(copiedFrom(rgb).entries, "/ColorSpace[/ICCBased 1 0 R]"));
    Png palette = paletted(8);
    palette.before.emplace_back("iCCP", chunk);
    EXPECT_TRUE(contains(copiedFrom(palette).entries, "/ColorSpace[/Indexed[/ICCBased 1 0 R] 255<"));
    Png gray = Png::of(colorful(), 0);
    gray.before.emplace_back("iCCP", chunk);
    EXPECT_TRUE(contains(copiedFrom(gray).entries, "/ColorSpace/DeviceGray"));
}

TEST_F(PngPictureTest, ProfileThatInflatesWithoutEndIsLeftOut) {
    Png png = Png::of(colorful(), 2);
    QByteArray bomb = iccProfile("RGB ");
    bomb.resize(40 << 20);
    png.before.emplace_back("iCCP", QByteArray("name\0\0", 6) + qCompress(bomb, 9).mid(4));
    EXPECT_TRUE(contains(copiedFrom(png).entries, "/ColorSpace/DeviceRGB"));
}

TEST_F(PngPictureTest, PhysicalSizeGivesThePageSize) {
    Png png = Png::of(colorful(), 2);
    png.before.emplace_back("pHYs", bigEndian(11811, 4) + bigEndian(5906, 4) + bigEndian(1, 1));
    const QSizeF size = load(QStringLiteral("a.png"), png.bytes())->size();
    EXPECT_NEAR(size.width(), 48 * 72 / (11811 * 0.0254), 1e-9);
    EXPECT_NEAR(size.height(), 32 * 72 / (5906 * 0.0254), 1e-9);
    png.before.back() = {"pHYs", bigEndian(11811, 4) + bigEndian(5906, 4) + bigEndian(0, 1)};
    EXPECT_EQ(load(QStringLiteral("a.png"), png.bytes())->size(), QSizeF(48, 32));
}

TEST_F(PngPictureTest, OrientationIsHonouredBeforeAndAfterThePixels) {
    Exif exif;
    exif.orientation = 8;
    Png before = Png::of(colorful(), 2);
    before.before.emplace_back("eXIf", exif.bytes());
    Png after = Png::of(colorful(), 2);
    after.after.emplace_back("eXIf", exif.bytes());
    for (const Png& png : {before, after}) {
        const auto image = load(QStringLiteral("a.png"), png.bytes());
        EXPECT_EQ(image->size(), QSizeF(32, 48));
        expectDrawn(*image, colorful().transformed(QTransform().rotate(-90)));
    }
}

TEST_F(PngPictureTest, CutPixelDataIsDecodedAsFarAsItGoes) {
    const QImage picture = colorful(200, 150);
    const QByteArray whole = encoded(picture, "png");
    const auto image = load(QStringLiteral("a.png"), whole.left(whole.size() * 2 / 3));
    ASSERT_TRUE(image);
    const auto images = imagesOf(*image);
    ASSERT_EQ(images.size(), 1U);
    EXPECT_FALSE(images[0].isCopied);
    const QImage drawn = drawnByMuPdf(*image);
    ASSERT_EQ(drawn.size(), picture.size());
    const QRect intact(0, 0, 200, 60);
    EXPECT_EQ(largestDifference(drawn.copy(intact), picture.copy(intact)), 0);
}

TEST_F(PngPictureTest, CutAnywhereGivesAWholePageOrNone) {
    const QByteArray whole = Png::of(colorful(16, 8), 2).bytes();
    for (qsizetype length = 0; length < whole.size(); ++length) {
        const auto image = load(QStringLiteral("a.png"), whole.left(length));
        if (!image) continue;
        for (const auto& stream : imagesOf(*image)) EXPECT_FALSE(stream.isCopied) << length;
    }
}

TEST_F(PngPictureTest, DamagedChunksAreNotPassedThrough) {
    Png interrupted = Png::of(colorful(), 2);
    QByteArray bytes = interrupted.bytes();
    bytes[bytes.indexOf("IDAT") + 4] = '\x79';  // no zlib stream begins so
    const auto image = load(QStringLiteral("a.png"), bytes);
    ASSERT_TRUE(image);
    EXPECT_TRUE(imagesOf(*image).empty());

    Png withoutPalette = paletted(4);
    withoutPalette.before.clear();
    EXPECT_FALSE(load(QStringLiteral("b.png"), withoutPalette.bytes()));

    Png wrongDepth = Png::of(colorful(), 2);
    wrongDepth.bitDepth = 4;
    EXPECT_FALSE(load(QStringLiteral("c.png"), wrongDepth.bytes()));
}

}  // namespace quillon::testing
