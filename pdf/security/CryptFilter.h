#pragma once

#include "pdf/object/Object.h"

#include <optional>
#include <string>

namespace quillon::pdf {

// A stream may name the crypt filter of its data as the first of its filters (ISO 32000-2, 7.4.10). In the dictionaries
// given here `Filter` and `DecodeParms` are no references.

/// The name; `Identity` where the filter is there without one; nothing without the filter.
[[nodiscard]] std::optional<std::string> cryptFilterOf(const Dictionary& dictionary);

/// The values of `Filter` and `DecodeParms` without crypt filters, null where nothing is left: for data that has been
/// deciphered.
struct PlainFilters {
    Object filter;
    Object parameters;
};
[[nodiscard]] PlainFilters withoutCryptFilter(const Dictionary& dictionary);

}  // namespace quillon::pdf
