#pragma once

#include "pdf/read/ObjectReader.h"

#include <cstdint>
#include <string>
#include <utility>
#include <vector>

namespace quillon::pdf {

using NamedValues = std::vector<std::pair<std::string, Object>>;
using NumberedValues = std::vector<std::pair<std::int64_t, Object>>;

/// The entries of the name tree `root` (ISO 32000-2, 7.9.6) in the order of the file; values that are references are
/// not followed. Loops, nodes named twice and what is no entry are passed over; a tree larger than its file can justify
/// is cut off.
[[nodiscard]] NamedValues readNameTree(ObjectReader& reader, const Object& root);

/// The same for a number tree (7.9.7).
[[nodiscard]] NumberedValues readNumberTree(ObjectReader& reader, const Object& root);

}  // namespace quillon::pdf
