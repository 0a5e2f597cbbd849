#pragma once

#include "pdf/join/SourceCopies.h"

#include <string>

namespace quillon::pdf {

/// Where a document opens (ISO 32000-2, table 29, OpenAction), as an entry of the output's catalog with the slash in
/// front. Empty when the source has none and when it leads to no page of the output, so that readers open the first.
[[nodiscard]] std::string openAction(const SourceCopies& source);

}  // namespace quillon::pdf
