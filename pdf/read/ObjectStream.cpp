#include "pdf/read/ObjectStream.h"

#include <algorithm>

#include "pdf/filter/Filters.h"
#include "pdf/object/Lexer.h"
#include "pdf/read/Limits.h"

namespace quillon::pdf {

std::shared_ptr<const ObjectStream> ObjectStream::decode(const StreamText& stream) {
    const auto count = stream.dictionary["N"].integer();
    const auto first = stream.dictionary["First"].integer();
    if (!count || !first || *count < 0 || *first < 0) return nullptr;
    auto decoded = decodeStream(stream.dictionary, stream.data, limits::decodedStream);
    if (!decoded) return nullptr;
    auto result = std::make_shared<ObjectStream>();
    result->bytes_ = std::move(*decoded);
    const std::string_view text = result->bytes_;
    result->index_.reserve(std::min<std::size_t>(static_cast<std::size_t>(*count), text.size() / 4 + 1));
    std::size_t at = 0;
    for (std::int64_t i = 0; i < *count; ++i) {
        skipWhiteSpace(text, at);
        const auto number = readUnsigned(text, at);
        skipWhiteSpace(text, at);
        const auto offset = readUnsigned(text, at);
        if (!number || !offset || *number > UINT32_MAX) break;
        const std::uint64_t place = *offset + static_cast<std::uint64_t>(*first);
        if (place < text.size()) {
            result->index_.push_back({static_cast<std::uint32_t>(*number), static_cast<std::uint32_t>(place)});
        }
    }
    return result;
}

std::string_view ObjectStream::textAt(std::size_t index) const noexcept {
    const std::string_view rest = std::string_view(bytes_).substr(index_[index].offset);
    const bool inOrder = index + 1 < index_.size() && index_[index + 1].offset > index_[index].offset;
    return inOrder ? rest.substr(0, index_[index + 1].offset - index_[index].offset) : rest;
}

std::optional<std::size_t> ObjectStream::find(std::uint32_t number, std::size_t hint) const noexcept {
    if (hint < index_.size() && index_[hint].number == number) return hint;
    const auto found = std::ranges::find(index_, number, &Place::number);
    if (found == index_.end()) return std::nullopt;
    return static_cast<std::size_t>(found - index_.begin());
}

}  // namespace quillon::pdf
