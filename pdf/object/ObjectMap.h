#pragma once

#include <algorithm>
#include <cstdint>
#include <unordered_map>
#include <vector>

namespace quillon::pdf {

/// A value for each object number. Numbers up to a limit that the size of the file justifies are an array; a file that
/// names one far beyond it costs a table entry, not memory up to that number.
template <class T>
class ObjectMap {
public:
    explicit ObjectMap(std::uint64_t fileSize = 0)
        : denseLimit_(static_cast<std::uint32_t>(std::min<std::uint64_t>(fileSize / 4 + 4096, 1U << 30U))) {}

    /// The value of `number`, T() if none was set.
    [[nodiscard]] T get(std::uint32_t number) const {
        if (number < dense_.size()) return dense_[number];
        if (number < denseLimit_) return T();
        const auto found = sparse_.find(number);
        return found == sparse_.end() ? T() : found->second;
    }

    /// The place of the value of `number`, made if need be. Valid until the next call.
    [[nodiscard]] T& at(std::uint32_t number) {
        if (number >= denseLimit_) return sparse_[number];
        if (number >= dense_.size()) dense_.resize(number + std::size_t{1});
        return dense_[number];
    }

    /// Makes room for numbers below `count` at once.
    void expect(std::uint64_t count) {
        if (count <= denseLimit_ && count > dense_.size()) dense_.resize(count);
    }

    /// Calls `visit(number, value)` for every number that may have a value.
    template <class Visitor>
    void forEach(Visitor visit) const {
        for (std::size_t i = 0; i < dense_.size(); ++i) visit(static_cast<std::uint32_t>(i), dense_[i]);
        for (const auto& [number, value] : sparse_) visit(number, value);
    }

    /// One above the highest number of the array.
    [[nodiscard]] std::size_t denseSize() const noexcept { return dense_.size(); }
    [[nodiscard]] std::size_t memory() const noexcept {
        return dense_.capacity() * sizeof(T) + sparse_.size() * (sizeof(T) + 32);
    }

private:
    std::uint32_t denseLimit_;
    std::vector<T> dense_;
    std::unordered_map<std::uint32_t, T> sparse_;
};

}  // namespace quillon::pdf
