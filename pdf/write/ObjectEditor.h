#pragma once

#include "pdf/write/Overlay.h"

#include <cstdint>
#include <string>
#include <string_view>

namespace quillon::pdf {

/// Changes plain objects of a source before they are copied.
class ObjectEditor {
public:
    virtual ~ObjectEditor() = default;

    struct Copied {
        std::uint32_t source = 0;          ///< object number in the source; 0 for what is no object of its own
        std::uint32_t output = 0;          ///< number of the copy
        const Overlay* overlay = nullptr;  ///< of a copy other than the first
    };
    enum class Verdict { Keep, Change, LeaveOut };
    /// What to do with the object `text`. With Change, `changed` is set to the text, still of the source, that takes
    /// its place.
    virtual Verdict edit(const Copied& object, std::string_view text, std::string& changed) = 0;
    /// What takes the place of the text `key`, an index into the structure tree (ISO 32000-2, 14.7.5.4); empty:
    /// nothing. `page`: the page that has it; null for a stream, which all copies of pages share.
    virtual std::string structureKey(std::string_view key, const Copied* page) = 0;
};

}  // namespace quillon::pdf
