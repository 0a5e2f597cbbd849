#pragma once

#include "platform/text/LineLayout.h"

namespace quillon {

/// Lays out lines of text with Qt. As LineLayout::of.
[[nodiscard]] LineLayout layOutLine(const QString& text, const QString& family);

}  // namespace quillon
