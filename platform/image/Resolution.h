#pragma once

#include <optional>

namespace quillon {

/// Pixels per inch along the rows and along the columns of a picture as it is stored.
struct Resolution {
    double horizontal = 72;
    double vertical = 72;

    /// From what a file says, in pixels per inch. A value that no scanner, camera or program means (not finite, below
    /// 5 or above 30,000) counts as not said. When one axis is said the other takes it over; nothing when neither is.
    [[nodiscard]] static std::optional<Resolution> perInch(double horizontal, double vertical);
    [[nodiscard]] static std::optional<Resolution> perCentimetre(double horizontal, double vertical);
    [[nodiscard]] static std::optional<Resolution> perMetre(double horizontal, double vertical);

    /// As the ResolutionUnit tag of TIFF and EXIF says: 2 inch, 3 centimetre; every other unit is none.
    [[nodiscard]] static std::optional<Resolution> perTiffUnit(int unit, double horizontal, double vertical);
};

}  // namespace quillon
