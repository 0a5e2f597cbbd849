#include "pdf/read/ObjectStream.h"

#include "pdf/filter/Filters.h"
#include "pdf/object/Lexer.h"
#include "pdf/object/MayHaveKey.h"
#include "pdf/read/Limits.h"

#include <algorithm>
#include <numeric>

namespace quillon::pdf {

std::shared_ptr<const ObjectStream> ObjectStream::decode(const StreamText& stream) {
    const auto count = stream.dictionary["N"].integer();
    const auto first = stream.dictionary["First"].integer();
    if (!count || !first || *count < 0 || *first < 0) return nullptr;
    auto decoded = decodeStream(stream.dictionary, stream.data, limits::decodedStream);
    if (!decoded) return nullptr;
    auto result = std::make_shared<ObjectStream>();
    result->bytes_ = std::move(*decoded);
    const std::string_view text = result->bytes();
    const auto most = static_cast<std::int64_t>(std::min(limits::packedObjects, text.size() / 4 + 1));
    result->index_.reserve(static_cast<std::size_t>(std::min(*count, most)));
    std::size_t at = 0;
    for (std::int64_t i = 0; i < std::min(*count, most); ++i) {
        skipWhiteSpace(text, at);
        const auto number = readUnsigned(text, at);
        skipWhiteSpace(text, at);
        const auto offset = readUnsigned(text, at);
        if (!number || !offset || *number > UINT32_MAX) break;
        // An object beyond the end keeps its place in the index, so that those behind it keep theirs; it reads as
        // nothing.
        const std::uint64_t place = std::min<std::uint64_t>(*offset + static_cast<std::uint64_t>(*first), text.size());
        result->index_.push_back({static_cast<std::uint32_t>(*number), static_cast<std::uint32_t>(place)});
    }
    result->mayHaveValueKey_ = pdf::mayHaveValueKey(text);
    if (result->index_.size() > shortIndex) result->sortNumbers();
    return result;
}

void ObjectStream::sortNumbers() {
    byNumber_.resize(index_.size());
    std::iota(byNumber_.begin(), byNumber_.end(), 0U);
    if (std::ranges::is_sorted(index_, {}, &Place::number)) return;
    std::ranges::stable_sort(byNumber_, {}, [this](std::uint32_t i) { return index_[i].number; });
}

std::string_view ObjectStream::textAt(std::size_t index) const noexcept {
    const std::string_view rest = bytes().substr(index_[index].offset);
    const bool inOrder = index + 1 < index_.size() && index_[index + 1].offset > index_[index].offset;
    return inOrder ? rest.substr(0, index_[index + 1].offset - index_[index].offset) : rest;
}

std::optional<std::size_t> ObjectStream::find(std::uint32_t number, std::size_t hint) const noexcept {
    if (hint < index_.size() && index_[hint].number == number) return hint;
    if (index_.size() <= shortIndex) {
        const auto place = std::ranges::find(index_, number, &Place::number);
        return place == index_.end() ? std::nullopt : std::optional(static_cast<std::size_t>(place - index_.begin()));
    }
    const auto found =
        std::ranges::lower_bound(byNumber_, number, {}, [this](std::uint32_t i) { return index_[i].number; });
    if (found == byNumber_.end() || index_[*found].number != number) return std::nullopt;
    return *found;
}

}  // namespace quillon::pdf
