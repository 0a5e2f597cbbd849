#pragma once

#include "pdf/object/Object.h"

#include <array>
#include <cstddef>
#include <cstdint>
#include <string_view>

namespace quillon::pdf {

/// A set of entries of a catalog (ISO 32000-2, 7.7.2), those that are joined when documents are.
class CatalogKeys {
public:
    static constexpr std::array<std::string_view, 11> all = {
        "AcroForm",      "AF",         "Dests",          "Lang",   "MarkInfo", "Names", "OCProperties",
        "OutputIntents", "PageLabels", "StructTreeRoot", "Threads"};

    CatalogKeys() = default;
    explicit CatalogKeys(const Dictionary& catalog) {
        for (const auto& [key, value] : catalog.entries()) {
            if (!value.isNull()) bits_ |= bit(key);
        }
    }

    [[nodiscard]] bool has(std::string_view key) const noexcept { return (bits_ & bit(key)) != 0; }

private:
    static constexpr std::uint32_t bit(std::string_view key) noexcept {
        for (std::size_t i = 0; i < all.size(); ++i) {
            if (all[i] == key) return 1U << i;
        }
        return 0;
    }

    std::uint32_t bits_ = 0;
};

}  // namespace quillon::pdf
