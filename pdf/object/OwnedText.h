#pragma once

#include <memory>
#include <string_view>

namespace quillon::pdf {

/// Text with whatever keeps it alive.
struct OwnedText {
    std::shared_ptr<const void> owner;
    std::string_view text;
};

}  // namespace quillon::pdf
