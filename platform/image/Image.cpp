#include "platform/image/Image.h"

#include "platform/image/PdfText.h"
#include "platform/image/Picture.h"

#include <QFile>
#include <QFileInfo>

#include <algorithm>
#include <array>
#include <utility>

namespace quillon {

namespace {

constexpr double pointsPerInch = 72;
constexpr double leastSide = 3;
constexpr double mostSide = 14'400;

QSizeF limited(QSizeF size) {
    const double tooLarge = std::max(size.width(), size.height()) / mostSide;
    if (tooLarge > 1) size /= tooLarge;
    const double tooSmall = leastSide / std::min(size.width(), size.height());
    if (tooSmall > 1) size *= tooSmall;
    return {std::clamp(size.width(), leastSide, mostSide), std::clamp(size.height(), leastSide, mostSide)};
}

// Puts the picture, which PDF draws in the unit square with the first row on top, on the page: [a b c d e f].
std::array<double, 6> matrix(Orientation orientation, double width, double height) {
    switch (orientation.number()) {
        case 2:
            return {-width, 0, 0, height, width, 0};
        case 3:
            return {-width, 0, 0, -height, width, height};
        case 4:
            return {width, 0, 0, -height, 0, height};
        case 5:
            return {0, -height, -width, 0, width, height};
        case 6:
            return {0, -height, width, 0, 0, height};
        case 7:
            return {0, height, width, 0, 0, 0};
        case 8:
            return {0, height, -width, 0, width, 0};
        default:
            return {width, 0, 0, height, 0, 0};
    }
}

}  // namespace

std::shared_ptr<const Image> Image::initWithContentsOfURL(const QUrl& url) {
    if (!url.isLocalFile()) return nullptr;
    const QString path = url.toLocalFile();
    const auto file = pdf::InputFile::open(QFile::encodeName(path).toStdString());
    if (!file) return nullptr;
    auto picture = Picture::open(file, QFileInfo(path).suffix().toLower().toLatin1());
    if (!picture) return nullptr;
    const QSize pixels = picture->properties().pixels;
    if (qint64{pixels.width()} * pixels.height() > maximumPixels) return nullptr;
    return std::shared_ptr<const Image>(new Image(std::move(picture)));
}

Image::Image(std::unique_ptr<const Picture> picture) : picture_(std::move(picture)) {}

Image::~Image() = default;

QSizeF Image::size() const {
    const auto& [pixels, resolution, orientation] = picture_->properties();
    const QSizeF stored = limited({pixels.width() * pointsPerInch / resolution.horizontal,
                                   pixels.height() * pointsPerInch / resolution.vertical});
    return orientation.exchangesAxes() ? stored.transposed() : stored;
}

std::string Image::name() const {
    return picture_->path();
}

pdf::Rectangle Image::mediaBox() const {
    return {0, 0, size().width(), size().height()};
}

std::optional<std::string> Image::produce(pdf::ObjectSink& sink) const {
    const std::optional<std::uint32_t> image = picture_->addTo(sink);
    if (!image) return std::nullopt;
    std::string content = "q ";
    for (const double element : matrix(picture_->properties().orientation, size().width(), size().height()))
        content += pdfNumber(element) + " ";
    content += "cm /Im0 Do Q";
    const std::uint32_t contents = sink.addStream("", content);
    return "/Resources<</XObject<</Im0 " + std::to_string(*image) + " 0 R>>>>/Contents " + std::to_string(contents) +
           " 0 R";
}

}  // namespace quillon
