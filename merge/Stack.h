#pragma once

#include <cstdint>
#include <memory>
#include <utility>
#include <vector>

namespace quillon {

class cacheData;

/// The entries that are collected behind a Cross entry. In spite of its name it hands them out in the order in which
/// they were pushed: `pop` moves a read position forward and removes nothing.
class Stack {
public:
    void push(std::shared_ptr<cacheData> entry) { back_.push_back(std::move(entry)); }
    void pop() noexcept { ++index_; }
    /// The entry at the read position; null past the end.
    [[nodiscard]] std::shared_ptr<cacheData> top() const;
    /// Whether the read position is the end; as long as nothing was popped, whether there are no entries.
    [[nodiscard]] bool isEmpty() const noexcept;
    /// The read position is left where it is.
    void removeAll() noexcept { back_.clear(); }
    /// The entries themselves, not a copy, so that the caller can remove some.
    [[nodiscard]] std::vector<std::shared_ptr<cacheData>>& getBackup() noexcept { return back_; }

private:
    std::vector<std::shared_ptr<cacheData>> back_;
    std::int32_t index_ = 0;
    [[maybe_unused]] std::int32_t mark_ = 0;  // part of the record's shape; nothing uses it
};

}  // namespace quillon
