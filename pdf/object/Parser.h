#pragma once

#include "pdf/object/Lexer.h"
#include "pdf/object/Object.h"

#include <optional>
#include <string_view>
#include <vector>

namespace quillon::pdf {

/// Parses values (ISO 32000-2, 7.3). Total: what cannot be read becomes null, what is not closed is closed where the
/// text or the object ends.
class Parser {
public:
    /// Arrays and dictionaries nested deeper than this read as null, so that no input exhausts the stack.
    static constexpr int maximumDepth = 200;

    explicit Parser(std::string_view text, std::size_t position = 0) noexcept : lexer_(text, position) {}

    /// The value at the current position. Null, with `sawKeyword()` true, when a keyword such as `endobj` stands there.
    [[nodiscard]] Object parse();

    /// Whether everything parsed so far was well-formed.
    [[nodiscard]] bool clean() const noexcept { return clean_; }
    /// Behind the last value.
    [[nodiscard]] std::size_t position() const noexcept { return lexer_.position(); }

private:
    Object parseValue(Token token, int depth);
    Object parseNumber(const Token& token);
    Object parseArray(int depth);
    Object parseDictionary(int depth);
    void skipNested();
    bool endsObject(const Token& token);

    Lexer lexer_;
    bool clean_ = true;
};

/// The reference at `position` of `text` if it is written as usual; moves `position` behind it. Nothing where any other
/// value stands; `position` is of no use then.
[[nodiscard]] std::optional<Reference> readReference(std::string_view text, std::size_t& position) noexcept;

/// The references of an array that begins with the text and holds nothing else, written as usual; nothing for any
/// other. Quicker than to parse it.
[[nodiscard]] std::optional<std::vector<Reference>> plainReferences(std::string_view array);

/// The reference that `value`, all of it, is if it is written as usual; nothing for any other value. Quicker than to
/// parse it.
[[nodiscard]] std::optional<Reference> plainReference(std::string_view value) noexcept;

}  // namespace quillon::pdf
