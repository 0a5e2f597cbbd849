#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

namespace quillon::pdf {

/// What was found damaged in one file and how it was dealt with: a line each, in the order of finding. Small as long as
/// nothing was found.
class Warnings {
public:
    /// More lines than this say nothing new; they are counted, not kept.
    static constexpr std::size_t most = 50;

    /// `file` is the name that the lines begin with, and must outlive this.
    explicit Warnings(const std::string& file) : file_(file) {}
    explicit Warnings(std::string&& file) = delete;

    /// `object` 0 and `offset` negative: the line names none.
    void add(std::string_view text, std::uint32_t object = 0, std::int64_t offset = -1);

    /// Takes back all but the first `count` lines.
    void keepFirst(std::size_t count);

    [[nodiscard]] const std::vector<std::string>& lines() const noexcept;

private:
    const std::string& file_;
    std::unique_ptr<std::vector<std::string>> lines_;  // null: none
};

}  // namespace quillon::pdf
