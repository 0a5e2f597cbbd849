#pragma once

#include "pdf/write/Painting.h"

#include <QString>

#include <cstdint>
#include <memory>
#include <string>

namespace quillon {

/// A font of the document being written.
class DocumentFont {
public:
    /// How a glyph is shown.
    struct Use {
        std::shared_ptr<const pdf::PaintResource> resource;  ///< the font of the page
        std::string code;                                    ///< bytes of a string shown in that font
        double advance = 0;                                  ///< thousandths of an em
        bool showsText = false;  ///< whoever reads the file sees that the glyph means the text that was given
    };

    DocumentFont() = default;
    DocumentFont(const DocumentFont&) = delete;
    DocumentFont& operator=(const DocumentFont&) = delete;
    virtual ~DocumentFont() = default;

    /// Has the glyph in the file. A glyph can mean one text only, the first that it was used for; with an empty text it
    /// is left open.
    [[nodiscard]] virtual Use use(std::uint32_t glyph, const QString& text) = 0;
};

}  // namespace quillon
