#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace quillon::pdf {

/// Walks the entries of a dictionary's text without parsing the values.
class DictionaryScanner {
public:
    struct Entry {
        std::string_view key;    ///< as written, without the slash; see `decodedKey`
        std::string_view value;  ///< the text of the value
    };

    /// `text` starts at the dictionary's `<<`, or before it with white space.
    explicit DictionaryScanner(std::string_view text) noexcept;

    /// The next entry; false at the end and from the first malformed place on, see `valid`.
    [[nodiscard]] bool next(Entry& entry) noexcept;

    /// False when the text is no dictionary or is malformed at the place where `next` stopped.
    [[nodiscard]] bool valid() const noexcept { return valid_; }
    /// Behind the closing `>>`, once `next` has returned false and `valid` is true.
    [[nodiscard]] std::size_t position() const noexcept { return position_; }

private:
    std::string_view text_;
    std::size_t position_ = 0;
    bool valid_ = false;
    bool done_ = false;
};

/// Behind the dictionary at the start of `text` (white space before it allowed); 0 when none stands there or it is
/// malformed.
[[nodiscard]] std::size_t skipDictionary(std::string_view text) noexcept;

/// The text of the dictionary at the start of `text`, made well-formed in `repaired` if it is not; empty if there is
/// none.
[[nodiscard]] std::string_view soundDictionary(std::string_view text, std::string& repaired);

/// A key as written in a file, with its `#xx` escapes resolved.
[[nodiscard]] std::string decodedKey(std::string_view key);

namespace detail {
/// For a key that is longer than the name.
[[nodiscard]] bool escapedKeyIs(std::string_view key, std::string_view name);
}  // namespace detail

/// Whether a key as written in a file means `name`; `#xx` escapes are honoured.
[[nodiscard]] inline bool keyIs(std::string_view key, std::string_view name) {
    return key == name || (key.size() > name.size() && detail::escapedKeyIs(key, name));
}

/// The text of the value of `name` in the dictionary `text`, the last if it occurs twice; empty when there is none.
[[nodiscard]] std::string_view findValue(std::string_view text, std::string_view name);

}  // namespace quillon::pdf
