#include "pdf/read/StreamText.h"

#include "pdf/object/Characters.h"
#include "pdf/object/Lexer.h"
#include "pdf/object/Parser.h"
#include "pdf/object/ValueSkipper.h"
#include "pdf/read/Limits.h"

#include <algorithm>

namespace quillon::pdf {

namespace {

/// Where an `endobj` stands that something belonging to the file's structure follows: binary data may hold the word
/// alone.
std::size_t findObjectEnd(std::string_view text) {
    constexpr std::string_view keyword = "endobj";
    for (std::size_t at = text.find(keyword); at != std::string_view::npos; at = text.find(keyword, at + 1)) {
        std::size_t after = at + keyword.size();
        skipWhiteSpace(text, after);
        const std::string_view rest = text.substr(after);
        if (rest.empty() || readObjectHeader(rest) || rest.starts_with("xref") || rest.starts_with("trailer") ||
            rest.starts_with("startxref")) {
            return at;
        }
    }
    return std::string_view::npos;
}

struct StreamBeginning {
    StreamText text;         // without data
    std::uint64_t data = 0;  // where they begin in the file
};

/// What stands in front of the data of the stream at `offset`, in a view of `wanted` bytes. Nothing where `mustGoOn`
/// and the view may end before the data begins.
std::optional<StreamBeginning> readBeginningAt(BlockCache& file, std::uint64_t offset, std::size_t wanted,
                                               bool mustGoOn) {
    const OwnedText view = file.view(offset, wanted);
    const auto header = readObjectHeader(view.text);
    if (!header) return std::nullopt;
    Parser parser(view.text, header->length);
    const Object parsed = parser.parse();
    const auto begin = streamDataBegin(view.text, parser.position());
    if (!parsed.dictionary() || !begin) return std::nullopt;
    // Behind the keyword blanks and an end of line may be cut off.
    if (mustGoOn && (*begin >= view.text.size() || isWhiteSpace(view.text[*begin]))) return std::nullopt;
    return StreamBeginning{{header->reference, *parsed.dictionary(), {}}, offset + *begin};
}

}  // namespace

std::optional<ObjectHeader> readObjectHeader(std::string_view text) noexcept {
    std::size_t at = 0;
    skipWhiteSpace(text, at);
    const auto number = readUnsigned(text, at);
    const std::size_t afterNumber = at;
    skipWhiteSpace(text, at);
    if (!number || *number > UINT32_MAX || at == afterNumber) return std::nullopt;
    const auto generation = readUnsigned(text, at);
    skipWhiteSpace(text, at);
    if (!generation || *generation > UINT32_MAX || text.substr(at, 3) != "obj") return std::nullopt;
    return ObjectHeader{{static_cast<std::uint32_t>(*number), static_cast<std::uint32_t>(*generation)}, at + 3};
}

std::optional<std::size_t> streamDataBegin(std::string_view text, std::size_t position) noexcept {
    std::size_t at = skipBlank(text, position);
    constexpr std::string_view keyword = "stream";
    if (text.substr(std::min(at, text.size()), keyword.size()) != keyword) return std::nullopt;
    at += keyword.size();
    // CR LF or LF should follow; a lone CR is met in real files, and so are blanks before the end of line.
    std::size_t blank = at;
    while (blank < text.size() && text[blank] == ' ') ++blank;
    if (blank < text.size() && (text[blank] == '\r' || text[blank] == '\n')) at = blank;
    if (at < text.size() && text[at] == '\r') ++at;
    if (at < text.size() && text[at] == '\n') ++at;
    return at;
}

bool endsStreamAt(BlockCache& file, std::uint64_t offset) {
    constexpr std::string_view keyword = "endstream";
    constexpr std::size_t usual = 32;
    constexpr std::size_t longest = BlockCache::blockSize;
    for (std::size_t looked = usual;; looked = longest) {
        const OwnedText view = file.view(offset, looked);
        // What a view has beyond that depends on the reader, and must not matter.
        const std::string_view text = view.text.substr(0, looked);
        std::size_t at = 0;
        skipWhiteSpace(text, at);
        if (at + keyword.size() <= text.size() || looked == longest) return text.substr(at).starts_with(keyword);
    }
}

std::uint64_t searchStreamLength(BlockCache& file, std::uint64_t offset, std::uint64_t limit) {
    constexpr std::size_t longestStep = 64 * 1024;
    constexpr std::size_t overlap = 64;
    std::uint64_t end = std::min(limit, file.file().size());
    std::size_t step = 1024;  // many are short
    for (std::uint64_t at = offset; at < end; at += step, step = std::min(step * 4, longestStep)) {
        std::string text;
        file.append(at, std::min<std::uint64_t>(step + overlap, end - at), text);
        const std::size_t stream = text.find("endstream");
        const std::size_t keyword = std::min(stream, findObjectEnd(std::string_view(text).substr(0, stream)));
        if (keyword != std::string::npos) {
            end = at + keyword;
            break;
        }
    }
    std::string tail;
    const std::uint64_t tailBegin = std::max(offset, end - std::min<std::uint64_t>(end, 2));
    file.append(tailBegin, end - tailBegin, tail);
    if (tail.ends_with('\n')) {
        tail.pop_back();
        if (tail.ends_with('\r')) tail.pop_back();
    } else if (tail.ends_with('\r')) {
        tail.pop_back();
    }
    return tailBegin + tail.size() - offset;
}

std::optional<StreamText> readStreamAt(BlockCache& file, std::uint64_t offset,
                                       const std::function<Object(Reference)>& resolve) {
    // Nearly every dictionary is short, and what a view has beyond one block is a copy.
    constexpr std::size_t usual = 512;
    constexpr std::size_t longest = BlockCache::blockSize;  // a view of so much is never longer
    auto stream = readBeginningAt(file, offset, usual, true);
    if (!stream) stream = readBeginningAt(file, offset, longest, false);
    if (!stream) return std::nullopt;
    auto& [text, data] = *stream;
    const Object& length = text.dictionary["Length"];
    const bool indirect = resolve && length.reference();
    const std::int64_t stated = (indirect ? resolve(*length.reference()) : length).integer().value_or(-1);
    const auto size = static_cast<std::int64_t>(file.file().size());
    std::uint64_t bytes = static_cast<std::uint64_t>(std::clamp<std::int64_t>(stated, 0, size));
    if (stated < 0 || stated > size || !endsStreamAt(file, data + bytes)) {
        bytes = searchStreamLength(file, data, file.file().size());
    }
    if (bytes > limits::decodedStream) return std::nullopt;
    file.append(data, bytes, text.data);
    return std::move(text);
}

}  // namespace quillon::pdf
