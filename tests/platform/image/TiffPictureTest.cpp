#include "tests/platform/image/PictureFixtures.h"
#include "tests/platform/image/PictureTest.h"

#include <QImage>
#include <tiffio.h>

#include <functional>

namespace quillon::testing {

namespace {

class TiffPictureTest : public PictureTest {
protected:
    using Setup = std::function<void(TIFF*)>;

    // A file of 1 bit a pixel that shows `picture`; `setup` may change any tag before the rows are written.
    void writeBilevel(const QString& name, const QImage& picture, int compression, const Setup& setup = {}) {
        TIFF* const tiff = TIFFOpen(pathOf(name).toLocal8Bit().constData(), "w");
        setTags(tiff, picture, 1, compression, PHOTOMETRIC_MINISWHITE);
        if (setup) setup(tiff);
        std::uint16_t photometric = 0;
        TIFFGetField(tiff, TIFFTAG_PHOTOMETRIC, &photometric);
        for (int y = 0; y < picture.height(); ++y) {
            QByteArray row((picture.width() + 7) / 8, '\0');
            for (int x = 0; x < picture.width(); ++x) {
                const bool isWhite = qGray(picture.pixel(x, y)) > 127;
                if (isWhite != (photometric == PHOTOMETRIC_MINISWHITE))
                    row[x / 8] = static_cast<char>(row[x / 8] | 0x80 >> x % 8);
            }
            TIFFWriteScanline(tiff, row.data(), static_cast<std::uint32_t>(y));
        }
        TIFFClose(tiff);
    }

    // A file of `picture` in RGB.
    void writeRgb(const QString& name, const QImage& picture, int compression, const Setup& setup = {}) {
        TIFF* const tiff = TIFFOpen(pathOf(name).toLocal8Bit().constData(), "w");
        setTags(tiff, picture, 8, compression, PHOTOMETRIC_RGB);
        TIFFSetField(tiff, TIFFTAG_SAMPLESPERPIXEL, 3);
        if (setup) setup(tiff);
        QImage rows = picture.convertToFormat(QImage::Format_RGB888);
        for (int y = 0; y < picture.height(); ++y)
            TIFFWriteScanline(tiff, rows.scanLine(y), static_cast<std::uint32_t>(y));
        TIFFClose(tiff);
    }

    std::vector<ImagePdfSink::Stream> imagesIn(const QString& name) {
        const auto image = load(name);
        return image ? imagesOf(*image) : std::vector<ImagePdfSink::Stream>();
    }

    // The one strip of the file as libtiff reads it.
    std::string stripOf(const QString& name) {
        TIFF* const tiff = TIFFOpen(pathOf(name).toLocal8Bit().constData(), "r");
        std::string strip(TIFFGetStrileByteCount(tiff, 0), '\0');
        TIFFReadRawStrip(tiff, 0, strip.data(), static_cast<tmsize_t>(strip.size()));
        TIFFClose(tiff);
        return strip;
    }

    static void setTags(TIFF* tiff, const QImage& picture, int bits, int compression, int photometric) {
        TIFFSetField(tiff, TIFFTAG_IMAGEWIDTH, picture.width());
        TIFFSetField(tiff, TIFFTAG_IMAGELENGTH, picture.height());
        TIFFSetField(tiff, TIFFTAG_ROWSPERSTRIP, picture.height());
        TIFFSetField(tiff, TIFFTAG_BITSPERSAMPLE, bits);
        TIFFSetField(tiff, TIFFTAG_SAMPLESPERPIXEL, 1);
        TIFFSetField(tiff, TIFFTAG_PLANARCONFIG, PLANARCONFIG_CONTIG);
        TIFFSetField(tiff, TIFFTAG_COMPRESSION, compression);
        TIFFSetField(tiff, TIFFTAG_PHOTOMETRIC, photometric);
    }
};

}  // namespace

TEST_F(TiffPictureTest, GroupFourStripPassesThrough) {
    const QImage picture = blackAndWhite(101, 57);
    const QString name = QStringLiteral("a.tif");
    writeBilevel(name, picture, COMPRESSION_CCITTFAX4);
    const auto images = imagesIn(name);
    ASSERT_EQ(images.size(), 1U);
    EXPECT_TRUE(images[0].isCopied);
    EXPECT_EQ(images[0].data, stripOf(name));
    EXPECT_TRUE(contains(images[0].entries, "/Filter/CCITTFaxDecode/DecodeParms<</K -1/Columns 101/Rows 57"));
    EXPECT_FALSE(contains(images[0].entries, "/BlackIs1"));
    expectDrawn(*load(name), picture);
}

TEST_F(TiffPictureTest, GroupFourOfZeroForBlackPassesThroughInverted) {
    const QImage picture = blackAndWhite(101, 57);
    const QString name = QStringLiteral("a.tif");
    writeBilevel(name, picture, COMPRESSION_CCITTFAX4,
                 [](TIFF* tiff) { TIFFSetField(tiff, TIFFTAG_PHOTOMETRIC, PHOTOMETRIC_MINISBLACK); });
    const auto images = imagesIn(name);
    ASSERT_EQ(images.size(), 1U);
    EXPECT_EQ(images[0].data, stripOf(name));
    EXPECT_TRUE(contains(images[0].entries, "/BlackIs1 true"));
    expectDrawn(*load(name), picture);
}

TEST_F(TiffPictureTest, GroupFourOfReversedBitsIsTurnedRound) {
    const QImage picture = blackAndWhite(101, 57);
    writeBilevel(QStringLiteral("plain.tif"), picture, COMPRESSION_CCITTFAX4);
    const QString name = QStringLiteral("a.tif");
    writeBilevel(name, picture, COMPRESSION_CCITTFAX4,
                 [](TIFF* tiff) { TIFFSetField(tiff, TIFFTAG_FILLORDER, FILLORDER_LSB2MSB); });
    const auto images = imagesIn(name);
    ASSERT_EQ(images.size(), 1U);
    EXPECT_NE(images[0].data, stripOf(name));
    EXPECT_EQ(images[0].data, stripOf(QStringLiteral("plain.tif")));
    expectDrawn(*load(name), picture);
}

TEST_F(TiffPictureTest, GroupFourInSeveralStripsBecomesOne) {
    const QImage picture = blackAndWhite(300, 200);
    const QString name = QStringLiteral("a.tif");
    writeBilevel(name, picture, COMPRESSION_CCITTFAX4, [](TIFF* tiff) { TIFFSetField(tiff, TIFFTAG_ROWSPERSTRIP, 7); });
    const auto images = imagesIn(name);
    ASSERT_EQ(images.size(), 1U);
    writeBilevel(QStringLiteral("one.tif"), picture, COMPRESSION_CCITTFAX4);
    EXPECT_LE(images[0].data.size(), stripOf(QStringLiteral("one.tif")).size());
    expectDrawn(*load(name), picture);
}

TEST_F(TiffPictureTest, OtherBilevelCompressionsAreEncodedAgainWithoutLoss) {
    const QImage picture = blackAndWhite(300, 200);
    for (const int compression : {COMPRESSION_NONE, COMPRESSION_CCITTRLE, COMPRESSION_CCITTFAX3, COMPRESSION_PACKBITS,
                                  COMPRESSION_LZW, COMPRESSION_ADOBE_DEFLATE}) {
        for (const int photometric : {PHOTOMETRIC_MINISWHITE, PHOTOMETRIC_MINISBLACK}) {
            SCOPED_TRACE(std::to_string(compression) + " " + std::to_string(photometric));
            const QString name = QStringLiteral("a.tif");
            writeBilevel(name, picture, compression, [&](TIFF* tiff) {
                TIFFSetField(tiff, TIFFTAG_PHOTOMETRIC, photometric);
                TIFFSetField(tiff, TIFFTAG_ROWSPERSTRIP, 16);
            });
            const auto images = imagesIn(name);
            ASSERT_EQ(images.size(), 1U);
            EXPECT_TRUE(contains(images[0].entries, "/BitsPerComponent 1/"));
            expectDrawn(*load(name), picture);
        }
    }
}

TEST_F(TiffPictureTest, DitheredPicturesAreNotMadeLargerByGroupFour) {
    QImage picture = blackAndWhite(256, 256);
    unsigned state = 1;
    for (int y = 0; y < 256; ++y) {
        for (int x = 0; x < 256; ++x) picture.setPixel(x, y, (state = state * 1664525U + 1013904223U) >> 31);
    }
    const QString name = QStringLiteral("a.tif");
    writeBilevel(name, picture, COMPRESSION_NONE);
    EXPECT_LT(imagesIn(name).at(0).data.size(), 256U * 256 / 8 + 200);
    expectDrawn(*load(name), picture);
}

TEST_F(TiffPictureTest, ColourIsDecoded) {
    for (const int compression : {COMPRESSION_NONE, COMPRESSION_LZW, COMPRESSION_ADOBE_DEFLATE}) {
        const QString name = QStringLiteral("a.tif");
        writeRgb(name, colorful(), compression);
        ASSERT_EQ(imagesIn(name).size(), 1U);
        expectDrawn(*load(name), colorful());
    }
}

TEST_F(TiffPictureTest, OrientationTagIsHonoured) {
    for (const bool isBilevel : {true, false}) {
        const QString name = QStringLiteral("a.tif");
        const Setup turn = [](TIFF* tiff) { TIFFSetField(tiff, TIFFTAG_ORIENTATION, ORIENTATION_RIGHTTOP); };
        const QImage picture = isBilevel ? blackAndWhite() : colorful();
        if (isBilevel) writeBilevel(name, picture, COMPRESSION_CCITTFAX4, turn);
        if (!isBilevel) writeRgb(name, picture, COMPRESSION_LZW, turn);
        EXPECT_EQ(load(name)->size(), QSizeF(32, 48));
        expectDrawn(*load(name), picture.transformed(QTransform().rotate(90)));
    }
}

TEST_F(TiffPictureTest, ResolutionGivesThePageSize) {
    const auto sizeWith = [this](int unit, float horizontal, float vertical) {
        const QString name = QStringLiteral("a.tif");
        writeBilevel(name, blackAndWhite(300, 200), COMPRESSION_CCITTFAX4, [&](TIFF* tiff) {
            TIFFSetField(tiff, TIFFTAG_RESOLUTIONUNIT, unit);
            TIFFSetField(tiff, TIFFTAG_XRESOLUTION, horizontal);
            TIFFSetField(tiff, TIFFTAG_YRESOLUTION, vertical);
        });
        return load(name)->size();
    };
    EXPECT_EQ(sizeWith(RESUNIT_INCH, 100, 50), QSizeF(216, 288));
    EXPECT_NEAR(sizeWith(RESUNIT_CENTIMETER, 100, 50).width(), 300 * 72 / 254.0, 1e-6);
    EXPECT_EQ(sizeWith(RESUNIT_NONE, 100, 50), QSizeF(300, 200));
    EXPECT_EQ(sizeWith(RESUNIT_INCH, 0, 0), QSizeF(300, 200));
}

TEST_F(TiffPictureTest, FirstDirectoryIsThePage) {
    const QString name = QStringLiteral("a.tif");
    writeBilevel(name, blackAndWhite(), COMPRESSION_CCITTFAX4);
    TIFF* const tiff = TIFFOpen(pathOf(name).toLocal8Bit().constData(), "a");
    setTags(tiff, blackAndWhite(24, 8), 1, COMPRESSION_NONE, PHOTOMETRIC_MINISWHITE);
    for (unsigned row = 0; row < 8; ++row) TIFFWriteScanline(tiff, QByteArray(3, '\xFF').data(), row);
    TIFFClose(tiff);
    EXPECT_EQ(load(name)->size(), QSizeF(48, 32));
    expectDrawn(*load(name), blackAndWhite());
}

TEST_F(TiffPictureTest, ProfileIsKept) {
    const QByteArray profile = iccProfile("RGB ");
    const QString name = QStringLiteral("a.tif");
    writeRgb(name, colorful(), COMPRESSION_LZW, [&](TIFF* tiff) {
        TIFFSetField(tiff, TIFFTAG_ICCPROFILE, static_cast<std::uint32_t>(profile.size()), profile.constData());
    });
    EXPECT_TRUE(contains(imagesIn(name).at(0).entries, "/ColorSpace[/ICCBased 1 0 R]"));
}

TEST_F(TiffPictureTest, MissingRowsStayWhite) {
    const QImage picture = blackAndWhite(300, 200);
    const QString name = QStringLiteral("a.tif");
    writeBilevel(name, picture, COMPRESSION_LZW, [](TIFF* tiff) { TIFFSetField(tiff, TIFFTAG_ROWSPERSTRIP, 100); });
    // The second strip is overwritten with what no LZW decoder takes.
    TIFF* const tiff = TIFFOpen(pathOf(name).toLocal8Bit().constData(), "r");
    const auto offset = static_cast<qint64>(TIFFGetStrileOffset(tiff, 1));
    const auto length = static_cast<qint64>(TIFFGetStrileByteCount(tiff, 1));
    TIFFClose(tiff);
    QFile file(pathOf(name));
    ASSERT_TRUE(file.open(QIODevice::ReadWrite) && file.seek(offset));
    file.write(QByteArray(length, '\xFF'));
    file.close();
    QImage expected = picture.convertToFormat(QImage::Format_RGB32);
    for (int y = 100; y < 200; ++y) {
        for (int x = 0; x < 300; ++x) expected.setPixel(x, y, qRgb(255, 255, 255));
    }
    expectDrawn(*load(name), expected);
}

TEST_F(TiffPictureTest, CutAnywhereIsNeverACrashNorANoise) {
    const QString name = QStringLiteral("whole.tif");
    writeBilevel(name, blackAndWhite(24, 16), COMPRESSION_CCITTFAX4);
    writeRgb(QStringLiteral("rgb.tif"), colorful(8, 8), COMPRESSION_LZW);
    ::testing::internal::CaptureStderr();
    for (const QString& whole : {name, QStringLiteral("rgb.tif")}) {
        QFile file(pathOf(whole));
        ASSERT_TRUE(file.open(QIODevice::ReadOnly));
        const QByteArray bytes = file.readAll();
        for (qsizetype length = 0; length < bytes.size(); ++length) {
            if (const auto image = load(QStringLiteral("a.tif"), bytes.left(length))) {
                EXPECT_LE(imagesOf(*image).size(), 1U);
            }
        }
    }
    EXPECT_EQ(::testing::internal::GetCapturedStderr(), "");
}

TEST_F(TiffPictureTest, ChangedBytesAreNeverACrash) {
    const QString name = QStringLiteral("whole.tif");
    writeBilevel(name, blackAndWhite(24, 16), COMPRESSION_CCITTFAX3);
    QFile file(pathOf(name));
    ASSERT_TRUE(file.open(QIODevice::ReadOnly));
    const QByteArray bytes = file.readAll();
    for (qsizetype at = 0; at < bytes.size(); ++at) {
        for (const char value : {'\0', '\1', '\x7F', '\xFF'}) {
            QByteArray changed = bytes;
            changed[at] = value;
            if (const auto image = load(QStringLiteral("a.tif"), changed)) {
                EXPECT_LE(image->size().width(), 14400);
                EXPECT_LE(imagesOf(*image).size(), 2U);
            }
        }
    }
}

}  // namespace quillon::testing
