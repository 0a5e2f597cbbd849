// Makes sample inputs, so that a merge can be shown where there are no files at hand.

#include "benchmarks/SampleDocument.h"

#include <QByteArray>
#include <QDir>
#include <QFile>
#include <QImage>
#include <QString>

#include <cstdio>

namespace {

using quillon::SampleDocument;

constexpr double yellowed = 0.92;
constexpr double coloured = 0.75;

bool write(const QString& path, const std::string& bytes) {
    QFile file(path);
    const auto size = static_cast<qint64>(bytes.size());
    return file.open(QIODevice::WriteOnly) && file.write(bytes.data(), size) == size;
}

/// A landscape of colours, as a photograph would be: 15 × 10 cm at 150 pixels per inch.
bool writePicture(const QString& path) {
    constexpr int dotsPerMeter = 5906;
    QImage picture(886, 591, QImage::Format_RGB32);
    for (int y = 0; y < picture.height(); ++y) {
        for (int x = 0; x < picture.width(); ++x) {
            picture.setPixel(x, y, qRgb(255 * x / picture.width(), 255 * y / picture.height(), 160));
        }
    }
    picture.setDotsPerMeterX(dotsPerMeter);
    picture.setDotsPerMeterY(dotsPerMeter);
    return picture.save(path, "JPEG");
}

/// A pile of three sheets went through a scanner that reads one side: first the fronts, then, turned over as a whole,
/// the backs, so the last back comes first.
bool makeSamples(const QDir& folder) {
    SampleDocument fronts;
    fronts.sheet("Front: page 1", yellowed).sheet("Front: page 3", yellowed).sheet("Front: page 5", yellowed);
    SampleDocument backs;
    backs.sheet("Back: page 4", yellowed).sheet("Back: page 2", yellowed);
    SampleDocument report;
    report.sheet("Report: 1").sheet("Report: 2").sheet("Report: 3");
    return write(folder.filePath(QStringLiteral("fronts.pdf")), fronts.bytes()) &&
           write(folder.filePath(QStringLiteral("backs.pdf")), backs.bytes()) &&
           write(folder.filePath(QStringLiteral("report.pdf")), report.bytes()) &&
           write(folder.filePath(QStringLiteral("separator.pdf")),
                 SampleDocument().sheet("Separator", coloured).bytes()) &&
           writePicture(folder.filePath(QStringLiteral("photo.jpg")));
}

}  // namespace

int main(int argc, char** argv) {
    if (argc != 2) {
        std::fputs("Usage: make_samples FOLDER\n", stderr);
        return 2;
    }
    const QDir folder(QFile::decodeName(argv[1]));
    if (folder.mkpath(QStringLiteral(".")) && makeSamples(folder)) return 0;
    std::fprintf(stderr, "make_samples: cannot write in %s\n", argv[1]);
    return 1;
}
