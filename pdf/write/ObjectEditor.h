#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <unordered_map>

namespace quillon::pdf {

/// Objects of a page that is written a second time, and the pages of the same opening: their own numbers, that
/// references from this copy lead to instead.
using Overlay = std::unordered_map<std::uint32_t, std::uint32_t>;

/// Changes plain objects of a source before they are copied.
class ObjectEditor {
public:
    virtual ~ObjectEditor() = default;

    struct Copied {
        std::uint32_t source = 0;          ///< object number in the source; 0 for a page that stands in its node
        std::uint32_t output = 0;          ///< number of the copy
        const Overlay* overlay = nullptr;  ///< of a copy other than the first
    };
    enum class Verdict { Keep, Change, LeaveOut };
    /// What to do with the object `text`. With Change, `changed` is set to the text, still of the source, that takes
    /// its place.
    virtual Verdict edit(const Copied& object, std::string_view text, std::string& changed) = 0;
};

}  // namespace quillon::pdf
