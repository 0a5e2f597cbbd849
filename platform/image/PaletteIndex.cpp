#include "platform/image/PaletteIndex.h"

#include <algorithm>

namespace quillon {

PaletteIndex::PaletteIndex(std::span<const QRgb> palette) {
    for (const QRgb color : palette) entries_.emplace_back(color, static_cast<unsigned>(entries_.size()));
    std::sort(entries_.begin(), entries_.end());
    if (!entries_.empty()) last_ = entries_.front();
}

unsigned PaletteIndex::indexOf(QRgb color) {
    if (color != last_.first) last_ = *std::lower_bound(entries_.begin(), entries_.end(), std::pair(color, 0U));
    return last_.second;
}

}  // namespace quillon
