#pragma once

#include "pdf/object/BracketStack.h"
#include "pdf/object/Characters.h"
#include "pdf/object/LinkFinder.h"
#include "pdf/object/Object.h"
#include "pdf/object/Parser.h"
#include "pdf/object/StopFinder.h"
#include "pdf/object/ValueSkipper.h"

#include <algorithm>
#include <concepts>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace quillon::pdf {

// Objects that only travel from a source to the output are not understood: the runs between the few bytes that matter
// are copied as they stand, and only references change. That is several times faster than parsing and writing them
// again. Text whose brackets or strings are not balanced, or that holds a comment, takes the slow road through the
// parser instead, so what is written never spoils the objects around it.

/// A mapper that says where links lead, too. Whether it does at all is asked each time, by `editsLinks`.
template <class Mapper>
concept LinkMapper = requires(Mapper mapper, std::string_view destination, const Object& value) {
    { mapper.editsLinks() } -> std::same_as<bool>;
    /// False for the text of a destination that surely stays as it is; whether it is one is not known yet.
    { mapper.mayReplace(destination) } -> std::same_as<bool>;
    /// What takes the place of the text of a destination, its references not mapped yet; nothing if it stays.
    { mapper.destination(destination) } -> std::same_as<std::optional<std::string>>;
    /// The same for all links in a value.
    { mapper.withLinks(value) } -> std::same_as<Object>;
};

/// `Mapper`: how references are given their new numbers, a callable `std::uint32_t(Reference)`, 0 for null. It may be a
/// LinkMapper as well.
template <class Mapper>
class ReferenceRewriter {
public:
    explicit ReferenceRewriter(Mapper mapper) : mapper_(std::move(mapper)) {}

    enum class Status {
        Done,
        Malformed  ///< or cut off by the end of the text
    };
    struct Result {
        Status status;
        std::size_t end;  ///< behind the value
    };

    /// Appends the value that starts at `position` of `text`, rewritten. Unless Done, `out` is left as it was.
    Result fast(std::string_view text, std::size_t position, std::string& out);

    /// The same through the parser; always succeeds.
    std::size_t slow(std::string_view text, std::size_t position, std::string& out);

    /// Appends `text`, which is a value that was found well-formed, or any text at all, by the fast road if it can be
    /// gone.
    void value(std::string_view text, std::string& out) {
        if (isPlainScalar(text)) {
            if (!out.empty() && isRegular(out.back()) && isRegular(text.front())) out += ' ';
            out += text;
        } else if (fast(text, 0, out).status != Status::Done) {
            slow(text, 0, out);
        }
    }

private:
    struct Run {
        // No aggregate: that would have the brackets filled with zeros for every object.
        Run(std::string_view from, std::string& to, std::size_t at) noexcept : text(from), out(to), begin(at) {}
        std::string_view text;
        std::string& out;
        std::size_t begin;  // of what is not copied yet
        BracketStack open;
        std::size_t looked = 0;  // bytes that were read only to find links
    };

    /// A name or a number.
    static bool isPlainScalar(std::string_view text) noexcept {
        if (text.empty() || !(text.front() == '/' || isDigit(text.front()))) return false;
        return std::all_of(text.begin() + 1, text.end(), [](char c) { return isRegular(c); });
    }
    std::optional<std::size_t> scalar(std::string_view text, std::size_t position, std::string& out);
    template <class Stops>
    [[nodiscard]] bool array(Run& run, Stops& stops, std::size_t& at);
    [[nodiscard, gnu::always_inline]] inline bool step(Run& run, std::size_t& at);
    [[nodiscard]] bool destination(Run& run, std::size_t& at);
    void reference(Run& run, std::size_t mark);
    Object mapped(const Object& object);

    Mapper mapper_;
};

namespace detail {

using RewriterStops = StopFinder<'(', '<', '>', '[', ']', '%', 'R', 'j', 'D', '#'>;

/// Reads the digits in front of `at`, but no further than `begin`, and goes to the first of them. The number, 0 if it
/// is too high for that of an object; nothing where there are no digits.
[[nodiscard]] inline std::optional<std::uint32_t> readBack(std::string_view text, std::size_t begin,
                                                           std::size_t& at) noexcept {
    const std::size_t end = at;
    while (at > begin && isDigit(text[at - 1])) --at;
    if (at == end) return std::nullopt;
    std::uint64_t number = 0;
    for (std::size_t i = at; i < end && number <= UINT32_MAX; ++i) {
        number = 10 * number + static_cast<std::uint64_t>(text[i] - '0');
    }
    return number <= UINT32_MAX ? static_cast<std::uint32_t>(number) : 0;
}

/// Whether the `j` at `at` ends the keyword `obj` or `endobj`: then a bracket is missing.
[[nodiscard]] inline bool endsObjectKeyword(std::string_view text, std::size_t at) noexcept {
    return at >= 2 && text[at - 1] == 'b' && text[at - 2] == 'o' &&
           (at + 1 == text.size() || !isRegular(text[at + 1])) &&
           (at == 2 || !isRegular(text[at - 3]) || text[at - 3] == 'd');
}

}  // namespace detail

template <class Mapper>
auto ReferenceRewriter<Mapper>::fast(std::string_view text, std::size_t position, std::string& out) -> Result {
    const std::size_t before = out.size();
    const auto fail = [&] {
        out.resize(before);
        return Result{Status::Malformed, position};
    };
    std::size_t at = skipBlank(text, position);
    if (at >= text.size()) return fail();
    if (text[at] != '[' && text.substr(at, 2) != "<<") {
        const auto end = scalar(text, at, out);
        return end ? Result{Status::Done, *end} : fail();
    }
    Run run(text, out, at);
    detail::RewriterStops stops(text);
    do {
        at = stops.find(at);
        if (at >= text.size()) return fail();
        if (!(text[at] == '[' ? array(run, stops, at) : step(run, at))) return fail();
    } while (!run.open.empty());
    out.append(text, run.begin, at - run.begin);
    return {Status::Done, at};
}

/// Takes the beginning of an array, and its end if that stops next, as in most: they hold nothing but numbers. False
/// where arrays are nested too deep.
template <class Mapper>
template <class Stops>
bool ReferenceRewriter<Mapper>::array(Run& run, Stops& stops, std::size_t& at) {
    if (!run.open.push('[', at)) return false;
    at = stops.find(at + 1);
    if (at >= run.text.size() || run.text[at] != ']') return true;
    ++at;
    return run.open.pop('[');
}

/// Takes what stands at any other stop. False where the fast road ends.
template <class Mapper>
bool ReferenceRewriter<Mapper>::step(Run& run, std::size_t& at) {
    const std::string_view text = run.text;
    const std::size_t place = at++;
    const char c = text[place];
    const bool doubled = at < text.size() && text[at] == c;
    switch (c) {
        case '(': {
            const auto end = skipLiteralString(text, place);
            at = end.value_or(at);
            return end.has_value();
        }
        case ']':
            return run.open.pop('[');
        case '<': {
            if (doubled) {
                ++at;
                return run.open.push(c, place);
            }
            const std::size_t close = text.find('>', at);
            at = close + 1;
            return close != std::string_view::npos;
        }
        case '>':
            ++at;
            return doubled && run.open.pop('<');
        case 'R':
            reference(run, place);
            return true;
        case 'j':
            return !detail::endsObjectKeyword(text, place);
        case 'D':
        case '#':
            return destination(run, at);
        default:
            return false;
    }
}

/// Looks whether the character before `at` belongs to the key of a destination, and replaces that. False where only the
/// parser can tell.
template <class Mapper>
bool ReferenceRewriter<Mapper>::destination(Run& run, std::size_t& at) {
    if constexpr (LinkMapper<Mapper>) {
        if (!run.open.isIn('<') || !mapper_.editsLinks()) return true;
        const std::string_view behind = destinationBehind(run.text, at - 1);
        if (behind.empty()) return true;
        if (!mapper_.mayReplace(behind)) {
            // A name may be a key itself.
            if (behind.front() != '/') at = static_cast<std::size_t>(behind.data() - run.text.data()) + behind.size();
            return true;
        }
        const FoundLink link = findLink(run.text, run.open.place(), at - 1);
        // Names that only look like keys must not have a large dictionary read again for each.
        run.looked += link.looked;
        if (run.looked > 4 * (run.text.size() + BracketStack::deepest)) return false;
        if (link.kind != FoundLink::Kind::Destination) return link.kind == FoundLink::Kind::None;
        const auto replaced = mapper_.destination(run.text.substr(link.begin, link.end - link.begin));
        if (!replaced) return true;
        run.out.append(run.text, run.begin, link.begin - run.begin);
        if (isRegular(run.out.back()) && isRegular(replaced->front())) run.out += ' ';
        value(*replaced, run.out);
        run.begin = at = link.end;
        if (isRegular(run.out.back()) && at < run.text.size() && isRegular(run.text[at])) run.out += ' ';
    }
    return true;
}

/// `mark` is the place of an `R`. If it ends a reference, writes the run before it and the new reference.
template <class Mapper>
void ReferenceRewriter<Mapper>::reference(Run& run, std::size_t mark) {
    const std::string_view text = run.text;
    if (mark + 1 < text.size() && isRegular(text[mark + 1])) return;
    // Goes back over white space, digits, white space, digits.
    std::size_t at = mark;
    const auto skipBlankBack = [&] {
        const std::size_t from = at;
        while (at > run.begin && isWhiteSpace(text[at - 1])) --at;
        return at != from;
    };
    std::optional<std::uint32_t> generation = 0;
    // Nearly all have the generation 0 between two blanks.
    constexpr std::string_view usual = " 0 ";
    if (mark - run.begin > usual.size() && text.substr(mark - usual.size(), usual.size()) == usual) {
        at -= usual.size();
        skipBlankBack();
    } else {
        if (!skipBlankBack()) return;
        generation = detail::readBack(text, run.begin, at);
        if (!generation || !skipBlankBack()) return;
    }
    const auto number = detail::readBack(text, run.begin, at);
    if (!number || (at > run.begin && isRegular(text[at - 1]))) return;
    const Reference reference{*number, *generation};
    run.out.append(text, run.begin, at - run.begin);
    run.begin = mark + 1;
    writeReference(run.out, mapper_(reference));
}

template <class Mapper>
std::optional<std::size_t> ReferenceRewriter<Mapper>::scalar(std::string_view text, std::size_t position,
                                                             std::string& out) {
    const auto end = skipValue(text, position);
    if (!end) return std::nullopt;
    const std::string_view whole = text.substr(position, *end - position);
    if (const auto target = plainReference(whole)) {
        writeReference(out, mapper_(*target));
        return end;
    }
    // Which string it is does not matter.
    const bool isString = whole.front() == '(' || whole.front() == '<';
    const Object object = isString ? Object(std::string()) : Parser(whole).parse();
    if (const Reference* target = object.reference()) {
        writeReference(out, mapper_(*target));
    } else if (object.isNull()) {
        writeReference(out, 0);  // also for a stray keyword
    } else {
        if (!out.empty() && isRegular(out.back()) && isRegular(whole.front())) out += ' ';
        out += whole;
    }
    return end;
}

template <class Mapper>
std::size_t ReferenceRewriter<Mapper>::slow(std::string_view text, std::size_t position, std::string& out) {
    Parser parser(text, position);
    Object parsed = parser.parse();
    if constexpr (LinkMapper<Mapper>) {
        if (mapper_.editsLinks()) parsed = mapper_.withLinks(parsed);
    }
    mapped(parsed).write(out);
    return parser.position();
}

template <class Mapper>
Object ReferenceRewriter<Mapper>::mapped(const Object& object) {
    if (const Reference* target = object.reference()) {
        const std::uint32_t number = mapper_(*target);
        return number == 0 ? Object() : Object(Reference{number, 0});
    }
    if (const Array* array = object.array()) {
        Array result;
        result.reserve(array->size());
        for (const Object& element : *array) result.push_back(mapped(element));
        return result;
    }
    if (const Dictionary* dictionary = object.dictionary()) {
        Dictionary result;
        for (const auto& [key, value] : dictionary->entries()) result.append(key, mapped(value));
        return result;
    }
    return object;
}

}  // namespace quillon::pdf
