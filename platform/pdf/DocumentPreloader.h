#pragma once

#include "pdf/read/SourcePreloader.h"

#include <QUrl>

#include <cstddef>
#include <functional>

namespace quillon {

/// Opens documents ahead of time on a second thread, for one who will open a whole list of them. Only a hint:
/// PDFDocument is used as ever and finds what is open already.
class DocumentPreloader {
public:
    /// The file of the document at a place of the list; an empty URL where none is opened. Called on both threads.
    using UrlAt = std::function<QUrl(std::size_t)>;

    /// The documents, in the order in which they will be opened, are those at 0 … `count` - 1.
    DocumentPreloader(std::size_t count, UrlAt urlAt);

    /// The document at `index` of the list is opened next.
    void reached(std::size_t index) { sources_.reached(index); }

private:
    pdf::SourcePreloader sources_;
};

}  // namespace quillon
