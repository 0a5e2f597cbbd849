#pragma once

#include <cstddef>
#include <cstdint>
#include <string_view>
#include <vector>

namespace quillon::pdf {

/// Finds where links lead in the text of an object, without parsing it: the `D` of actions that go to a destination of
/// the document (ISO 32000-2, 12.6.4.2) and the `Dest` of link annotations and outline items. Of equal keys elsewhere
/// nothing is known.
class LinkScanner {
public:
    enum class Kind : std::uint8_t {
        Name,
        Text,
        Page,      ///< the index of a page, the first element of an array
        Reference  ///< to what the destination is
    };
    struct Link {
        std::size_t begin;  ///< of the value in the text
        std::size_t end;
        Kind kind;
        bool leads;  ///< false for what turned out to be none
    };

    /// False where only the parser can tell.
    [[nodiscard]] bool scan(std::string_view text);
    /// In the order of the text, valid until the next scan.
    [[nodiscard]] const std::vector<Link>& links() const noexcept { return links_; }

private:
    enum class Key : std::uint8_t { Other, Action, Kind, Title, Parent, D, Dest };
    static constexpr std::size_t none = SIZE_MAX;
    /// An open array or dictionary.
    struct Open {
        bool isDictionary;
        bool expectsKey = true;
        Key key = Key::Other;
        bool goesTo = false;
        bool isLink = false;
        bool hasTitle = false;
        bool hasParent = false;
        std::size_t action = none;  // index of the link
        std::size_t destination = none;
    };

    [[nodiscard]] static Key keyOf(std::string_view name) noexcept;
    [[nodiscard]] Key takeKey() noexcept;
    [[nodiscard]] bool takeName(std::string_view text, std::size_t& at);
    [[nodiscard]] bool takeRegular(std::string_view text, std::size_t& at);
    [[nodiscard]] bool open(std::string_view text, std::size_t& at, bool isDictionary);
    [[nodiscard]] bool close(bool isDictionary);
    [[nodiscard]] bool add(Key key, Link link);

    std::vector<Link> links_;
    std::vector<Open> open_;
};

}  // namespace quillon::pdf
