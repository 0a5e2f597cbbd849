#pragma once

#include <QString>

#include <cstdint>
#include <map>
#include <string>

namespace quillon {

/// What the codes of a font mean, for its ToUnicode map (ISO 32000-2, 9.10.3).
class GlyphTexts {
public:
    /// False when the code means another text already. An empty text means nothing.
    bool claim(std::uint32_t code, const QString& text);

    /// The CMap, for codes of `bytes` bytes.
    [[nodiscard]] std::string toUnicode(unsigned bytes) const;

private:
    std::map<std::uint32_t, QString> texts_;
};

}  // namespace quillon
