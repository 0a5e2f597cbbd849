#include "platform/image/Image.h"
#include "tests/platform/image/PictureFixtures.h"
#include "tests/platform/image/PictureTest.h"

#include <QElapsedTimer>
#include <QFile>
#include <QImage>

#include <clocale>
#include <ctime>
#include <sys/stat.h>

namespace quillon::testing {

namespace {

class ImageTest : public PictureTest {
protected:
    // The content stream of the page.
    static std::string contentOf(const Image& image) {
        ImagePdfSink sink;
        const auto entries = image.produce(sink);
        if (!entries) return {};
        for (const auto* stream : sink.streamsWith("")) {
            if (stream->entries.empty()) return stream->data;
        }
        return {};
    }
};

}  // namespace

TEST_F(ImageTest, PageShowsThePictureOnItsWholeBox) {
    const auto image = load(QStringLiteral("a.jpg"), FlatJpeg().bytes());
    ASSERT_TRUE(image);
    ImagePdfSink sink;
    EXPECT_EQ(image->produce(sink), "/Resources<</XObject<</Im0 1 0 R>>>>/Contents 2 0 R");
    EXPECT_EQ(contentOf(*image), "q 8 0 0 8 0 0 cm /Im0 Do Q");
    EXPECT_EQ(image->mediaBox().right, 8);
    EXPECT_EQ(image->mediaBox().top, 8);
    EXPECT_EQ(image->mediaBox().left, 0);
    EXPECT_EQ(image->mediaBox().bottom, 0);
}

TEST_F(ImageTest, OrientationIsTheMatrix) {
    const std::vector<std::string> matrices{"20 0 0 10 0 0",   "-20 0 0 10 20 0",   "-20 0 0 -10 20 10",
                                            "20 0 0 -10 0 10", "0 -20 -10 0 10 20", "0 -20 10 0 0 20",
                                            "0 20 10 0 0 0",   "0 20 -10 0 10 0"};
    for (unsigned orientation = 1; orientation <= 8; ++orientation) {
        FlatJpeg jpeg;
        jpeg.width = 20;
        jpeg.height = 10;
        Exif exif;
        exif.orientation = orientation;
        const auto image = load(QStringLiteral("a.jpg"), jpeg.withExif(exif).bytes());
        EXPECT_EQ(contentOf(*image), "q " + matrices[orientation - 1] + " cm /Im0 Do Q");
    }
}

TEST_F(ImageTest, NumbersAreWrittenTheSameInEveryLocale) {
    FlatJpeg jpeg;
    jpeg.withJfif(1, 64, 64);
    const auto image = load(QStringLiteral("a.jpg"), jpeg.bytes());
    const char* const former = std::setlocale(LC_ALL, "de_DE.UTF-8");
    EXPECT_EQ(contentOf(*image), "q 9 0 0 9 0 0 cm /Im0 Do Q");
    if (former) std::setlocale(LC_ALL, "C");
    FlatJpeg third;
    third.withJfif(1, 144, 192);
    third.width = 25;
    EXPECT_EQ(contentOf(*load(QStringLiteral("b.jpg"), third.bytes())), "q 12.5 0 0 3 0 0 cm /Im0 Do Q");
}

TEST_F(ImageTest, HugePagesAreShrunkAsAWhole) {
    FlatJpeg jpeg;
    jpeg.width = 28'800;
    jpeg.height = 7'200;
    const auto image = load(QStringLiteral("a.jpg"), jpeg.bytes());
    EXPECT_EQ(image->size(), QSizeF(14'400, 3'600));
}

TEST_F(ImageTest, TinyPagesAreEnlargedAsAWhole) {
    FlatJpeg jpeg;
    jpeg.width = 2;
    jpeg.height = 1;
    EXPECT_EQ(load(QStringLiteral("a.jpg"), jpeg.bytes())->size(), QSizeF(6, 3));
}

TEST_F(ImageTest, NeedlesStayWithinThePageLimits) {
    FlatJpeg jpeg;
    jpeg.width = 1;
    jpeg.height = 60'000;
    EXPECT_EQ(load(QStringLiteral("a.jpg"), jpeg.bytes())->size(), QSizeF(3, 14'400));
}

TEST_F(ImageTest, UnbelievableResolutionsCountAsNone) {
    const std::vector<std::pair<unsigned, unsigned>> nonsense{
        {0, 1}, {1, 0}, {1, 1}, {0xFFFFFFFF, 1}, {300, 4'000'000}};
    for (const auto& value : nonsense) {
        FlatJpeg jpeg;
        Exif exif;
        exif.horizontal = exif.vertical = value;
        EXPECT_EQ(load(QStringLiteral("a.jpg"), jpeg.withExif(exif).bytes())->size(), QSizeF(8, 8)) << value.first;
    }
}

TEST_F(ImageTest, ResolutionOfBmpIsThatOfItsHeader) {
    QByteArray bmp = encoded(colorful(200, 100), "bmp");
    EXPECT_EQ(load(QStringLiteral("silent.bmp"), bmp)->size(), QSizeF(200, 100));
    bmp.replace(38, 8, QByteArray("\x10\x27\0\0\x88\x13\0\0", 8));  // 10,000 and 5,000 pixels per metre
    const QSizeF size = load(QStringLiteral("a.bmp"), bmp)->size();
    EXPECT_NEAR(size.width(), 200 * 72 / 254.0, 1e-9);
    EXPECT_NEAR(size.height(), 100 * 72 / 127.0, 1e-9);
}

TEST_F(ImageTest, EveryFormatOfQtIsDecodedWithoutLoss) {
    for (const char* format : {"bmp", "ppm", "xpm", "ico", "webp"}) {
        SCOPED_TRACE(format);
        const QByteArray bytes = encoded(colorful(32, 32), format);
        ASSERT_FALSE(bytes.isEmpty());
        const auto image = load(QStringLiteral("a.") + QString::fromLatin1(format), bytes);
        ASSERT_TRUE(image);
        expectDrawn(*image, QImage::fromData(bytes));
    }
}

TEST_F(ImageTest, KindIsToldByContentNotByName) {
    EXPECT_TRUE(load(QStringLiteral("a.png"), encoded(colorful(), "bmp")));
    EXPECT_TRUE(load(QStringLiteral("a"), encoded(colorful(), "ppm")));
    EXPECT_TRUE(load(QStringLiteral("a.txt"), encoded(colorful(), "png")));
}

TEST_F(ImageTest, TargaIsNotTakenForACursor) {
    QByteArray targa("\0\0\2\0\0\0\0\0\0\0\0\0", 12);
    targa += QByteArray("\x10\0\x10\0\x18\x20", 6);
    targa += QByteArray(16 * 16 * 3, '\x40') + QByteArray(8, '\0') + QByteArray("TRUEVISION-XFILE.", 18);
    const auto image = load(QStringLiteral("a.tga"), targa);
    ASSERT_TRUE(image);
    EXPECT_EQ(image->size(), QSizeF(16, 16));
    EXPECT_EQ(imagesOf(*image).size(), 1U);
}

TEST_F(ImageTest, FewColoursBecomeAPaletteOfFewBits) {
    QImage picture(40, 40, QImage::Format_RGB32);
    picture.fill(qRgb(10, 20, 30));
    const auto entriesWith = [&](int colors) {
        for (int index = 0; index < colors; ++index) picture.setPixel(index % 40, index / 40, qRgb(index, 99, 3));
        return imagesOf(*load(QStringLiteral("a.bmp"), encoded(picture, "bmp"))).at(0).entries;
    };
    EXPECT_TRUE(contains(entriesWith(1), "/BitsPerComponent 1/ColorSpace[/Indexed/DeviceRGB 1<"));
    EXPECT_TRUE(contains(entriesWith(3), "/BitsPerComponent 2/ColorSpace[/Indexed/DeviceRGB 3<"));
    EXPECT_TRUE(contains(entriesWith(15), "/BitsPerComponent 4/ColorSpace[/Indexed/DeviceRGB 15<"));
    EXPECT_TRUE(contains(entriesWith(200), "/BitsPerComponent 8/ColorSpace[/Indexed/DeviceRGB 200<"));
    expectDrawn(*load(QStringLiteral("a.bmp")), picture);
}

TEST_F(ImageTest, GraysBecomeGray) {
    QImage picture(64, 64, QImage::Format_RGB32);
    for (int y = 0; y < 64; ++y) {
        for (int x = 0; x < 64; ++x) picture.setPixel(x, y, qRgb(x + y, x + y, x + y));
    }
    const auto image = load(QStringLiteral("a.bmp"), encoded(picture, "bmp"));
    EXPECT_TRUE(contains(imagesOf(*image).at(0).entries, "/BitsPerComponent 8/ColorSpace/DeviceGray"));
    expectDrawn(*image, picture);
    const auto bilevel = load(QStringLiteral("b.bmp"), encoded(blackAndWhite(), "bmp"));
    EXPECT_TRUE(contains(imagesOf(*bilevel).at(0).entries, "/BitsPerComponent 1/ColorSpace/DeviceGray"));
    expectDrawn(*bilevel, blackAndWhite());
}

TEST_F(ImageTest, FirstFrameOfAnAnimationIsThePage) {
    // Two frames of one pixel, red and blue.
    const QByteArray frame("\x2C\0\0\0\0\1\0\1\0\0\2\2", 12);
    const QByteArray gif = QByteArray("GIF89a\1\0\1\0\x80\0\0\xFF\0\0\0\0\xFF", 19) + frame +
                           QByteArray("\x44\1\0", 3) + frame + QByteArray("\x4C\1\0\x3B", 4);
    const auto image = load(QStringLiteral("a.gif"), gif);
    ASSERT_TRUE(image);
    EXPECT_EQ(imagesOf(*image).size(), 1U);
    QImage red(3, 3, QImage::Format_RGB32);
    red.fill(qRgb(255, 0, 0));
    expectDrawn(*image, red);
}

TEST_F(ImageTest, BombsAreRefusedFromTheHeader) {
    const std::uint32_t side = 30'000;
    FlatJpeg jpeg;
    jpeg.width = jpeg.height = side;
    Png png;
    png.width = png.height = side;
    png.rows = QByteArray(100, '\0');
    png.bitDepth = 1;
    QByteArray gif("GIF89a\0\0\0\0\x80\0\0\xFF\0\0\0\0\xFF\x2C\0\0\0\0\0\0\0\0\0\2\2\x44\1\0\x3B", 35);
    for (const int at : {6, 8, 24, 26}) gif.replace(at, 2, QByteArray("\x30\x75", 2));
    QByteArray bmp = encoded(blackAndWhite(), "bmp");
    bmp.replace(18, 8, QByteArray("\x30\x75\0\0\x30\x75\0\0", 8));
    QElapsedTimer timer;
    timer.start();
    EXPECT_FALSE(load(QStringLiteral("a.jpg"), jpeg.bytes()));
    EXPECT_FALSE(load(QStringLiteral("a.png"), png.bytes()));
    EXPECT_FALSE(load(QStringLiteral("a.gif"), gif));
    EXPECT_FALSE(load(QStringLiteral("a.bmp"), bmp));
    EXPECT_FALSE(load(QStringLiteral("a.pbm"), "P4\n30000 30000\n0"));
    EXPECT_LT(timer.elapsed(), 2'000);
}

TEST_F(ImageTest, PicturesTooLargeForTheirDecoderAreRefusedFromTheHeader) {
    EXPECT_FALSE(load(QStringLiteral("a.ppm"), "P6\n20000 20000\n255\n0"));
    Png interlaced;
    interlaced.width = interlaced.height = 20'000;
    interlaced.colorType = 6;
    interlaced.interlace = 1;
    interlaced.rows = QByteArray(100, '\0');
    EXPECT_FALSE(load(QStringLiteral("a.png"), interlaced.bytes()));
}

TEST_F(ImageTest, LargeScansThatNeedNoDecodingAreTaken) {
    FlatJpeg jpeg;
    jpeg.width = jpeg.height = 24'000;
    EXPECT_TRUE(load(QStringLiteral("a.jpg"), jpeg.bytes()));
}

TEST_F(ImageTest, WhatIsNoPictureIsNull) {
    ::testing::internal::CaptureStderr();
    EXPECT_FALSE(load(QStringLiteral("missing.png")));
    EXPECT_FALSE(load(QString()));  // the folder itself
    EXPECT_FALSE(load(QStringLiteral("empty.png"), {}));
    EXPECT_FALSE(load(QStringLiteral("text.png"), "This is no picture at all.\n"));
    for (const char* start :
         {"\xFF\xD8\xFF", "\x89PNG\r\n\x1A\n", "II*", "MM", "GIF89a", "BM", "RIFF", "P6 ", "/* XPM */"}) {
        for (const char* suffix : {"jpg", "tif", "gif", "bmp", "tga", "ico", "webp", "wbmp", "xbm", "mng", "icns"}) {
            const QString name = QStringLiteral("garbage.") + QString::fromLatin1(suffix);
            const auto image = load(name, QByteArray(start) + QByteArray(500, '\xA5'));
            if (image) {
                EXPECT_LE(imagesOf(*image).size(), 2U);
            }
        }
    }
    FlatJpeg withoutRows;
    withoutRows.height = 0;
    EXPECT_FALSE(load(QStringLiteral("flat.jpg"), withoutRows.bytes()));
    EXPECT_FALSE(Image::initWithContentsOfURL(QUrl(QStringLiteral("http://localhost/a.png"))));
    EXPECT_FALSE(Image::initWithContentsOfURL(QUrl()));
    EXPECT_EQ(::testing::internal::GetCapturedStderr(), "");
}

TEST_F(ImageTest, FifoIsNotWaitedFor) {
    const QString path = pathOf(QStringLiteral("fifo.png"));
    ASSERT_EQ(mkfifo(path.toLocal8Bit().constData(), 0600), 0);
    EXPECT_FALSE(load(QStringLiteral("fifo.png")));
}

TEST_F(ImageTest, FileThatVanishesOrChangesGivesNoPage) {
    const QByteArray jpeg = encoded(colorful(), "jpeg");
    for (const QByteArray& bytes : {jpeg, encoded(colorful(), "png"), encoded(colorful(), "bmp")}) {
        const QString name = QStringLiteral("a");
        for (const QByteArray& replacement : {QByteArray(), bytes.left(10), QByteArray(bytes.size(), 'x')}) {
            QFile::remove(pathOf(name));
            const auto image = load(name, bytes);
            ASSERT_TRUE(image);
            ASSERT_TRUE(QFile::remove(pathOf(name)));
            writeFile(name, replacement);
            // The file is held open and may still be read as it was; what must not be is a page of something else.
            ImagePdfSink sink;
            if (const auto document = sink.document(*image)) expectDrawn(*image, QImage::fromData(bytes), 4);
        }
        const auto image = load(name, bytes);
        ASSERT_TRUE(QFile::resize(pathOf(name), 12));
        ImagePdfSink sink;
        EXPECT_FALSE(image->produce(sink));
    }
}

TEST_F(ImageTest, ManyScansAreLoadedAndCopiedAtFileSpeed) {
    const QByteArray jpeg = encoded(colorful(2480, 3508), "jpeg");
    const std::clock_t start = std::clock();  // of the processor, which other programs do not slow down
    for (int count = 0; count < 60; ++count) {
        const auto image = load(QStringLiteral("scan.jpg"), jpeg);
        ASSERT_TRUE(image);
        ASSERT_EQ(imagesOf(*image).size(), 1U);
    }
#ifdef __SANITIZE_THREAD__
    constexpr int slowdown = 8;  // of the code under test, but not of Qt
#else
    constexpr int slowdown = 1;
#endif
    // To decode one such page takes Qt a twentieth of a second.
    EXPECT_LT(static_cast<double>(std::clock() - start) / CLOCKS_PER_SEC, 2.5 * slowdown);
}

}  // namespace quillon::testing
