#include "platform/text/DocumentFonts.h"

#include "platform/text/DrawnFont.h"
#include "platform/text/EmbeddedFont.h"

#include <algorithm>

namespace quillon {

DocumentFont& DocumentFonts::fontFor(const QRawFont& font) {
    const auto known = std::ranges::find(known_, font, &std::pair<QRawFont, DocumentFont*>::first);
    if (known != known_.end()) return *known->second;
    auto& entry = fonts_[{font.familyName() + QLatin1Char('/') + font.styleName(), font.fontTable("head")}];
    if (!entry) {
        auto file = std::make_unique<const FontFile>(font);
        if (file->isEmbeddable()) {
            entry = std::make_shared<EmbeddedFont>(std::move(file));
        } else {
            entry = std::make_shared<DrawnFont>(font, std::move(file));
        }
    }
    known_.emplace_back(font, entry.get());
    return *entry;
}

}  // namespace quillon
