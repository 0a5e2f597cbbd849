#pragma once

#include "platform/text/DocumentFont.h"
#include "platform/text/Typeface.h"

#include <QByteArray>

#include <map>
#include <memory>

namespace quillon {

/// The fonts of one document, each once. Used by one thread.
class DocumentFonts {
public:
    [[nodiscard]] DocumentFont& fontFor(const Typeface& typeface);

private:
    std::map<QByteArray, std::shared_ptr<DocumentFont>> fonts_;  // by the key of the typeface
};

}  // namespace quillon
