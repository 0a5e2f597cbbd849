#include "platform/gui/QtTypeface.h"

#include "platform/gui/HarfBuzzFontFile.h"

namespace quillon {

// The same font may come as several QRawFont. It is told by its name and the table that holds its file's checksum.
QtTypeface::QtTypeface(const QRawFont& font)
    : font_(font),
      key_((font.familyName() + QLatin1Char('/') + font.styleName() + QLatin1Char('/')).toUtf8() +
           font.fontTable("head")) {}

std::unique_ptr<const FontFile> QtTypeface::open() const {
    return std::make_unique<HarfBuzzFontFile>(font_);
}

}  // namespace quillon
