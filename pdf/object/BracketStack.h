#pragma once

#include "pdf/object/Parser.h"

#include <array>
#include <cstddef>
#include <cstdint>

namespace quillon::pdf {

/// The brackets that are open at a place of a value, without allocation and bounded in depth.
class BracketStack {
public:
    static constexpr auto deepest = static_cast<std::size_t>(Parser::maximumDepth);

    BracketStack() noexcept {}  // NOLINT(modernize-use-equals-default): so that nothing but the depth is set

    [[nodiscard]] bool empty() const noexcept { return depth_ == 0; }
    [[nodiscard]] std::size_t depth() const noexcept { return depth_; }

    /// False when nested as deeply as the parser reads. `place`: where the bracket stands, for `place`.
    [[nodiscard]] bool push(char bracket, std::size_t place = 0) noexcept {
        if (depth_ == open_.size()) return false;
        places_[depth_] = static_cast<std::uint32_t>(place);
        open_[depth_++] = bracket;
        return true;
    }

    /// False when the innermost open bracket is another one, or none is open.
    [[nodiscard]] bool pop(char bracket) noexcept { return depth_ > 0 && open_[--depth_] == bracket; }

    /// Whether the innermost open bracket is this one.
    [[nodiscard]] bool isIn(char bracket) const noexcept { return depth_ > 0 && open_[depth_ - 1] == bracket; }
    /// Of the innermost open bracket; asks for one.
    [[nodiscard]] std::size_t place() const noexcept { return places_[depth_ - 1]; }

private:
    std::array<std::uint32_t, deepest> places_;
    std::array<char, deepest> open_;
    std::size_t depth_ = 0;
};

}  // namespace quillon::pdf
