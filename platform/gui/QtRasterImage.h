#pragma once

#include "platform/image/RasterImage.h"

#include <QImage>

#include <utility>

namespace quillon {

/// A picture of any of QImage's formats.
class QtRasterImage final : public RasterImage {
public:
    /// `image` is not null.
    explicit QtRasterImage(QImage image) : image_(std::move(image)) {}

    [[nodiscard]] int width() const override { return image_.width(); }
    [[nodiscard]] int height() const override { return image_.height(); }
    void forEachRow(const std::function<void(std::span<const QRgba64>)>& visit) const override;
    [[nodiscard]] std::vector<char> profile() const override;

private:
    QImage image_;
};

}  // namespace quillon
