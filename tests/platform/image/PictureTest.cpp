#include "tests/platform/image/PictureTest.h"

#include <QFile>
#include <QProcess>
#include <QStringList>
#include <QUrl>

#include <algorithm>
#include <cstdlib>
#include <mutex>

namespace quillon::testing {

namespace {

std::mutex messagesMutex;
QStringList messages;

void collectMessage(QtMsgType, const QMessageLogContext&, const QString& message) {
    const std::scoped_lock lock(messagesMutex);
    messages.append(message);
}

// Whether the program ended well and had nothing to say.
bool runsClean(const QString& program, const QStringList& arguments) {
    QProcess process;
    process.start(program, arguments);
    if (!process.waitForFinished(120'000) || process.exitCode() != 0) return false;
    // Debian builds mutool without colour management; it says so each time.
    const QByteArray said = process.readAllStandardError().replace("warning: ICC support is not available\n", "");
    if (!said.isEmpty()) ADD_FAILURE() << program.toStdString() << ": " << said.toStdString();
    return said.isEmpty();
}

}  // namespace

void PictureTest::SetUp() {
    ASSERT_TRUE(folder_.isValid());
    messages.clear();
    qInstallMessageHandler(collectMessage);
}

void PictureTest::TearDown() {
    qInstallMessageHandler(nullptr);
    EXPECT_TRUE(messages.isEmpty()) << messages.join(u'\n').toStdString();
}

QString PictureTest::pathOf(const QString& name) const {
    return folder_.filePath(name);
}

QString PictureTest::writeFile(const QString& name, const QByteArray& bytes) const {
    QFile file(pathOf(name));
    EXPECT_TRUE(file.open(QIODevice::WriteOnly));
    EXPECT_EQ(file.write(bytes), bytes.size());
    return file.fileName();
}

std::shared_ptr<const Image> PictureTest::load(const QString& name) const {
    return Image::initWithContentsOfURL(QUrl::fromLocalFile(pathOf(name)));
}

std::shared_ptr<const Image> PictureTest::load(const QString& name, const QByteArray& bytes) const {
    writeFile(name, bytes);
    return load(name);
}

std::vector<ImagePdfSink::Stream> PictureTest::imagesOf(const Image& image) const {
    ImagePdfSink sink;
    if (!image.produce(sink)) return {};
    std::vector<ImagePdfSink::Stream> images;
    for (const auto* stream : sink.streamsWith("/Subtype/Image")) images.push_back(*stream);
    return images;
}

QString PictureTest::writeDocument(const Image& image) const {
    ImagePdfSink sink;
    const std::optional<std::string> document = sink.document(image);
    if (!document) return {};
    const QString path = writeFile(QStringLiteral("page.pdf"), QByteArray::fromStdString(*document));
    return runsClean(QStringLiteral("qpdf"), {QStringLiteral("--check"), path}) ? path : QString();
}

QImage PictureTest::drawnByMuPdf(const Image& image) const {
    const QString document = writeDocument(image);
    const QString picture = pathOf(QStringLiteral("mupdf.png"));
    const QStringList arguments{QStringLiteral("draw"),
                                QStringLiteral("-q"),
                                QStringLiteral("-r"),
                                QStringLiteral("72"),
                                QStringLiteral("-o"),
                                picture,
                                document};
    return !document.isEmpty() && runsClean(QStringLiteral("mutool"), arguments) ? QImage(picture) : QImage();
}

QImage PictureTest::drawnByPoppler(const Image& image) const {
    const QString document = writeDocument(image);
    const QString picture = pathOf(QStringLiteral("poppler"));
    const QStringList arguments{QStringLiteral("-r"),
                                QStringLiteral("288"),
                                QStringLiteral("-png"),
                                QStringLiteral("-singlefile"),
                                document,
                                picture};
    const bool isDrawn = !document.isEmpty() && runsClean(QStringLiteral("pdftoppm"), arguments);
    if (!isDrawn) return {};
    // At its own resolution Poppler shifts a picture by parts of a pixel; four times as large, each pixel is a square
    // of which the middle is certain.
    const QImage large(picture + QStringLiteral(".png"));
    QImage drawn(large.size() / 4, QImage::Format_RGB32);
    for (int y = 0; y < drawn.height(); ++y) {
        for (int x = 0; x < drawn.width(); ++x) drawn.setPixel(x, y, large.pixel(4 * x + 2, 4 * y + 2));
    }
    return drawn;
}

void PictureTest::expectDrawn(const Image& image, const QImage& expected, int tolerance) const {
    EXPECT_LE(largestDifference(drawnByMuPdf(image), expected), tolerance) << "drawn by MuPDF";
    EXPECT_LE(largestDifference(drawnByPoppler(image), expected), tolerance) << "drawn by Poppler";
}

int largestDifference(const QImage& one, const QImage& other) {
    if (one.isNull() || one.size() != other.size()) return 256;
    int largest = 0;
    for (int y = 0; y < one.height(); ++y) {
        for (int x = 0; x < one.width(); ++x) {
            const QRgb first = one.pixel(x, y);
            const QRgb second = other.pixel(x, y);
            largest = std::max({largest, std::abs(qRed(first) - qRed(second)), std::abs(qGreen(first) - qGreen(second)),
                                std::abs(qBlue(first) - qBlue(second))});
        }
    }
    return largest;
}

bool contains(const std::string& text, const std::string& part) {
    return text.find(part) != std::string::npos;
}

}  // namespace quillon::testing
