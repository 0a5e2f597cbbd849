#pragma once

#include "pdf/read/StreamText.h"

#include <cstddef>
#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace quillon::pdf {

/// A decoded object stream (ISO 32000-2, 7.5.7). Streams linked by `Extends` need no care of their own: the
/// cross-reference data names the very stream that holds an object.
class ObjectStream {
public:
    /// Null when it cannot be decoded at all.
    [[nodiscard]] static std::shared_ptr<const ObjectStream> decode(const StreamText& stream);

    [[nodiscard]] std::size_t count() const noexcept { return index_.size(); }
    /// The object number at `index`, which is less than `count()`.
    [[nodiscard]] std::uint32_t numberAt(std::size_t index) const noexcept { return index_[index].number; }
    /// From the beginning of the value at `index` to that of the next, or to the end of the stream.
    [[nodiscard]] std::string_view textAt(std::size_t index) const noexcept;
    /// The place of object `number`, which `hint` usually is; nothing when the stream does not hold it.
    [[nodiscard]] std::optional<std::size_t> find(std::uint32_t number, std::size_t hint) const noexcept;
    [[nodiscard]] std::string_view bytes() const noexcept { return bytes_; }
    /// Whether any of its values may have an entry `V`.
    [[nodiscard]] bool mayHaveValueKey() const noexcept { return mayHaveValueKey_; }
    /// Has the processor fetch the value at `index`, if there is one, from memory: it is about to be read.
    void fetchAhead(std::size_t index) const noexcept {
        if (index < index_.size()) __builtin_prefetch(bytes_.data() + index_[index].offset);
    }

private:
    struct Place {
        std::uint32_t number;
        std::uint32_t offset;
    };

    // Of so many objects at most the index is gone through to find one, if the hint is ever wrong.
    static constexpr std::size_t shortIndex = 256;

    void sortNumbers();

    std::string bytes_;
    bool mayHaveValueKey_ = false;
    std::vector<Place> index_;
    std::vector<std::uint32_t> byNumber_;  // places in a long index, by object number
};

}  // namespace quillon::pdf
