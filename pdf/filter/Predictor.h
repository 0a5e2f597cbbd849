#pragma once

#include "pdf/object/Object.h"

#include <string>
#include <string_view>

namespace quillon::pdf {

/// Undoes the prediction that `parameters` (a DecodeParms dictionary) names: TIFF 2 with 8 bits, or PNG 10 to 15 (ISO
/// 32000-2, 7.4.4.4). Data without a prediction, or with parameters that make no sense, is returned as it is.
[[nodiscard]] std::string undoPrediction(const Dictionary& parameters, std::string data);

}  // namespace quillon::pdf
