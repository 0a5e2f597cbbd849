#pragma once

#include "pdf/object/Object.h"

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>

namespace quillon::pdf {

/// Decodes the stream filters that the structure of a file may use (ISO 32000-2, 7.4): FlateDecode and LZWDecode with
/// predictors, ASCIIHexDecode, ASCII85Decode and RunLengthDecode. Image filters are not decoded: such streams only
/// travel.
///
/// `dictionary` is the stream's, with `Filter` and `DecodeParms` resolved. Data that breaks off or is damaged is
/// decoded as far as it goes. Nothing when a filter is unknown, or when more than `limit` bytes would come out of a
/// stage.
[[nodiscard]] std::optional<std::string> decodeStream(const Dictionary& dictionary, std::string_view data,
                                                      std::size_t limit);

}  // namespace quillon::pdf
