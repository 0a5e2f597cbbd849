#pragma once

#include <QRgba64>

#include <functional>
#include <span>
#include <vector>

namespace quillon {

/// The pixels of a decoded picture. Neither side is empty.
class RasterImage {
public:
    virtual ~RasterImage() = default;

    [[nodiscard]] virtual int width() const = 0;
    [[nodiscard]] virtual int height() const = 0;

    /// Calls `visit` with each row from the top, as 16-bit RGBA that is not premultiplied. A sample of 8 bits reads as
    /// 257 times its value. Only a strip of the picture is converted at a time.
    virtual void forEachRow(const std::function<void(std::span<const QRgba64>)>& visit) const = 0;

    /// The bytes of the ICC profile; empty without one.
    [[nodiscard]] virtual std::vector<char> profile() const = 0;
};

}  // namespace quillon
