#pragma once

#include "pdf/write/ObjectSink.h"

#include <cstdint>
#include <span>
#include <string>
#include <vector>

namespace quillon {

/// A colour profile that came with a picture; possibly none.
class IccProfile {
public:
    IccProfile() = default;

    /// Takes the bytes for no profile when they are not one that PDF allows in an ICCBased colour space (ISO 32000-2,
    /// 8.6.5.5): signature, length, device class and a grey, RGB or CMYK colour space are checked.
    explicit IccProfile(std::vector<char> bytes);

    /// The colour components that the profile describes, 0 for none.
    [[nodiscard]] int componentCount() const noexcept { return componentCount_; }

    /// The PDF text of the colour space of `components` colour components (1, 3 or 4): ICCBased by this profile when
    /// that describes as many, adding it to `sink`, otherwise the Device space.
    [[nodiscard]] std::string addColorSpace(int components, pdf::ObjectSink& sink) const;

    /// The name of the Device space of `components` colour components.
    [[nodiscard]] static std::string deviceSpace(int components);

private:
    std::vector<char> bytes_;
    int componentCount_ = 0;
};

}  // namespace quillon
