#include "platform/image/Resolution.h"

namespace quillon {

namespace {

constexpr double leastPerInch = 5;
constexpr double mostPerInch = 30'000;
constexpr double centimetresPerInch = 2.54;
constexpr double metresPerInch = 0.0254;

// Written so that NaN is not believable either.
bool isBelievable(double perInch) {
    return perInch >= leastPerInch && perInch <= mostPerInch;
}

}  // namespace

std::optional<Resolution> Resolution::perInch(double horizontal, double vertical) {
    const bool horizontalIsSaid = isBelievable(horizontal);
    const bool verticalIsSaid = isBelievable(vertical);
    if (!horizontalIsSaid && !verticalIsSaid) return std::nullopt;
    return Resolution{horizontalIsSaid ? horizontal : vertical, verticalIsSaid ? vertical : horizontal};
}

std::optional<Resolution> Resolution::perCentimetre(double horizontal, double vertical) {
    return perInch(horizontal * centimetresPerInch, vertical * centimetresPerInch);
}

std::optional<Resolution> Resolution::perMetre(double horizontal, double vertical) {
    return perInch(horizontal * metresPerInch, vertical * metresPerInch);
}

std::optional<Resolution> Resolution::perTiffUnit(int unit, double horizontal, double vertical) {
    switch (unit) {
        case 2:
            return perInch(horizontal, vertical);
        case 3:
            return perCentimetre(horizontal, vertical);
        default:
            return std::nullopt;
    }
}

}  // namespace quillon
