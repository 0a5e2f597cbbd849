#pragma once

#include "platform/text/DocumentFont.h"

#include <QByteArray>
#include <QRawFont>

#include <map>
#include <memory>
#include <utility>
#include <vector>

namespace quillon {

/// The fonts of one document, each once. Used by one thread.
class DocumentFonts {
public:
    [[nodiscard]] DocumentFont& fontFor(const QRawFont& font);

private:
    std::vector<std::pair<QRawFont, DocumentFont*>> known_;
    // The same font may come as several QRawFont: by the name and the table that holds the file's checksum.
    std::map<std::pair<QString, QByteArray>, std::shared_ptr<DocumentFont>> fonts_;
};

}  // namespace quillon
