#include "platform/text/DocumentFonts.h"

#include "platform/text/DrawnFont.h"
#include "platform/text/EmbeddedFont.h"

#include <utility>

namespace quillon {

DocumentFont& DocumentFonts::fontFor(const Typeface& typeface) {
    auto& entry = fonts_[typeface.key()];
    if (entry) return *entry;
    auto file = typeface.open();
    if (file->isEmbeddable()) {
        entry = std::make_shared<EmbeddedFont>(std::move(file));
    } else {
        entry = std::make_shared<DrawnFont>(std::move(file));
    }
    return *entry;
}

}  // namespace quillon
