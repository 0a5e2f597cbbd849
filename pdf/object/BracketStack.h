#pragma once

#include "pdf/object/Parser.h"

#include <array>
#include <cstddef>

namespace quillon::pdf {

/// The brackets that are open at a place of a value, without allocation and bounded in depth.
class BracketStack {
public:
    [[nodiscard]] bool empty() const noexcept { return depth_ == 0; }
    [[nodiscard]] std::size_t depth() const noexcept { return depth_; }

    /// False when nested as deeply as the parser reads.
    [[nodiscard]] bool push(char bracket) noexcept {
        if (depth_ == open_.size()) return false;
        open_[depth_++] = bracket;
        return true;
    }

    /// False when the innermost open bracket is another one, or none is open.
    [[nodiscard]] bool pop(char bracket) noexcept { return depth_ > 0 && open_[--depth_] == bracket; }

private:
    std::array<char, static_cast<std::size_t>(Parser::maximumDepth)> open_;
    std::size_t depth_ = 0;
};

}  // namespace quillon::pdf
