#pragma once

#include "pdf/join/SourceCopies.h"

#include <string>

namespace quillon::pdf {

/// A value written out with what its references lead to, so that equal values of different files can be told from
/// others. Copies the streams among them. What is nested too deeply is equal to nothing of another file.
[[nodiscard]] std::string unfolded(const SourceCopies& source, const Object& value);

}  // namespace quillon::pdf
