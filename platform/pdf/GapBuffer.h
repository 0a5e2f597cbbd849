#pragma once

#include <algorithm>
#include <cstddef>
#include <utility>
#include <vector>

namespace quillon {

/// A sequence whose edits cost the distance from the last one, not the length: a document of a hundred thousand pages
/// is thinned, woven or reversed by a hundred thousand edits beside each other.
template <class T>
class GapBuffer {
public:
    GapBuffer() = default;
    explicit GapBuffer(std::vector<T> items)
        : items_(std::move(items)), gapBegin_(items_.size()), gapEnd_(items_.size()) {}

    [[nodiscard]] std::size_t size() const noexcept { return items_.size() - (gapEnd_ - gapBegin_); }
    /// `index` is less than size().
    [[nodiscard]] T& operator[](std::size_t index) noexcept { return items_[place(index)]; }
    [[nodiscard]] const T& operator[](std::size_t index) const noexcept { return items_[place(index)]; }

    /// `index` is at most size().
    void insert(std::size_t index, T item) {
        if (gapBegin_ == gapEnd_) widenGap();
        moveGap(index);
        items_[gapBegin_++] = std::move(item);
    }

    /// `index` is less than size().
    void erase(std::size_t index) {
        moveGap(index);
        items_[gapEnd_++] = T();
    }

private:
    [[nodiscard]] std::size_t place(std::size_t index) const noexcept {
        return index < gapBegin_ ? index : index + (gapEnd_ - gapBegin_);
    }

    void widenGap() {
        constexpr std::size_t least = 16;
        const std::size_t added = std::max(least, items_.size() / 2);
        std::vector<T> wider(items_.size() + added);
        const auto at = [](std::vector<T>& items, std::size_t index) {
            return items.begin() + static_cast<std::ptrdiff_t>(index);
        };
        std::move(items_.begin(), at(items_, gapBegin_), wider.begin());
        std::move(at(items_, gapEnd_), items_.end(), at(wider, gapEnd_ + added));
        items_ = std::move(wider);
        gapEnd_ += added;
    }

    void moveGap(std::size_t index) {
        while (gapBegin_ > index) items_[--gapEnd_] = std::move(items_[--gapBegin_]);
        while (gapBegin_ < index) items_[gapBegin_++] = std::move(items_[gapEnd_++]);
    }

    std::vector<T> items_;
    std::size_t gapBegin_ = 0;
    std::size_t gapEnd_ = 0;
};

}  // namespace quillon
