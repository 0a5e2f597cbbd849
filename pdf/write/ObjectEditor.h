#pragma once

#include "pdf/object/Object.h"
#include "pdf/write/Overlay.h"

#include <cstdint>
#include <optional>
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
        bool mayHaveValueKey = true;       ///< false only if the object certainly has no entry `V`
    };
    /// False when the object `text` stays. Otherwise `changed` is set to the text, still of the source, that takes its
    /// place. Where links lead is asked for later.
    virtual bool edit(const Copied& object, std::string_view text, std::string& changed) = 0;
    /// Whether links may lead elsewhere than they did. Asked once.
    [[nodiscard]] virtual bool editsLinks() const = 0;
    /// False for the text of a destination that surely stays as it is in the first copies.
    [[nodiscard]] virtual bool mayReplace(std::string_view text) const = 0;
    /// What takes the place of the text of a link's destination, still of the source; nothing if it stays.
    [[nodiscard]] virtual std::optional<std::string> destination(std::string_view text, const Overlay* overlay) = 0;
    /// A value with the destinations of all links in it replaced.
    [[nodiscard]] virtual Object withLinks(const Object& value, const Overlay* overlay) = 0;
    /// What takes the place of the text `key`, an index into the structure tree (ISO 32000-2, 14.7.5.4); empty:
    /// nothing. `page`: the page that has it; null for a stream, which all copies of pages share.
    virtual std::string structureKey(std::string_view key, const Copied* page) = 0;
};

}  // namespace quillon::pdf
