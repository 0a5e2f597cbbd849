#pragma once

#include <cstddef>
#include <cstdint>
#include <string_view>

namespace quillon::pdf {

/// If `place` is in the name `D` or `Dest`, its first letter or a `#` in it, the value that stands behind the name, if
/// it is one that may have to change: a name, a string, a reference, or an array that does not name its page by a
/// reference. Otherwise empty.
[[nodiscard]] std::string_view destinationBehind(std::string_view text, std::size_t place);

/// Where a link leads, in the text of an object.
struct FoundLink {
    enum class Kind : std::uint8_t {
        None,
        Destination,
        Unsure  ///< only the parser can tell
    };
    Kind kind = Kind::None;
    std::size_t begin = 0;  ///< of the destination in the text
    std::size_t end = 0;
    std::size_t looked = 0;  ///< how many bytes had to be looked at
};

/// Looks whether the name at `place`, as above, is the key of a destination: the `D` of an action that goes to one of
/// the document (ISO 32000-2, 12.6.4.2), or the `Dest` of a link annotation or of an outline item. `dictionary` is
/// where the innermost dictionary around it begins.
[[nodiscard]] FoundLink findLink(std::string_view text, std::size_t dictionary, std::size_t place);

}  // namespace quillon::pdf
