#pragma once

#include "pdf/join/JoinedNames.h"
#include "pdf/join/SourceCopies.h"
#include "pdf/read/DestinationResolver.h"
#include "pdf/write/ObjectEditor.h"

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

namespace quillon::pdf {

/// Joins the named destinations of all sources (ISO 32000-2, 12.3.2.4), and keeps the links of each to its own.
///
/// Names stay as they are unless an earlier source has the same. Of a source that is taken whole all names are kept, of
/// others those that links of their pages use. A link by a name that leads nowhere loses its destination, so that it
/// does not lead to what another source calls so; pages that are given by their index are given by reference. Copies of
/// a page other than the first have explicit destinations. The names of PDF 1.1, which are no texts, become texts of
/// the tree.
class DestinationJoiner {
public:
    /// Before the pages of a source are copied, which must be announced.
    void begin(const SourceCopies& source);
    /// After they were: writes the values of the names that are kept and not written yet. False when there are none.
    /// What the values lead to may have links by further names.
    bool writeNames();
    /// When nothing more is copied of the source.
    void release();
    /// False for the text of a destination that surely stays as it is in the first copies.
    [[nodiscard]] bool mayReplace(std::string_view destination) const;
    /// What takes the place of the text of a link's destination; nothing if it stays. `overlay` is that of the copy
    /// that the link is for; null: the first.
    [[nodiscard]] std::optional<std::string> replacement(std::string_view destination, const Overlay* overlay);
    /// The same for the links in a value.
    [[nodiscard]] Object withLinks(const Object& value, const Overlay* overlay);

    /// Whether there is a source to edit objects of.
    [[nodiscard]] bool isActive() const noexcept { return source_ != nullptr; }
    [[nodiscard]] JoinedNames& names() noexcept { return joined_; }

private:
    enum class State : std::uint8_t { Waiting, Dead, Kept, Written };
    struct Name {
        JoinedNames::Place joined{};  // if kept
        bool stays = false;           // likewise, as it is
        State state = State::Waiting;
    };
    [[nodiscard]] const DestinationTable& table() const noexcept { return source_->survey.destinations; }
    void keep(std::size_t place);
    [[nodiscard]] bool isLive(const Object& value);
    [[nodiscard]] std::optional<std::size_t> placeOf(std::string_view name, bool isName) const;
    [[nodiscard]] std::optional<std::string> renamed(std::string_view name, bool isName, const Overlay* overlay);
    [[nodiscard]] std::string pageReference(std::string_view index) const;
    [[nodiscard]] std::string explicitly(const Object& value, const Overlay& overlay);
    [[nodiscard]] std::optional<std::string> replacement(const Object& destination, const Overlay* overlay);
    [[nodiscard]] std::optional<std::string> withPage(const Array& destination) const;
    [[nodiscard]] const Object& valueOf(Reference reference);
    void writeValue(std::size_t place, std::string& out);

    JoinedNames joined_;
    // Of the source being copied.
    const SourceCopies* source_ = nullptr;
    std::optional<DestinationResolver> resolver_;
    std::vector<Name> entries_;                           // by the place of the destination
    bool allStay_ = false;                                // those of the tree as they are
    std::string text_;                                    // kept for its room
    std::unordered_map<std::uint32_t, Object> indirect_;  // destinations by object number, see `valueOf`
};

}  // namespace quillon::pdf
