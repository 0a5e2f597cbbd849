#pragma once

#include "pdf/read/SourcePreloader.h"

#include <QUrl>

#include <cstddef>
#include <vector>

namespace quillon {

/// Opens documents ahead of time on a second thread, for one who will open a whole list of them. Only a hint:
/// PDFDocument is used as ever and finds what is open already.
class DocumentPreloader {
public:
    /// `urls` in the order in which they will be opened; an empty URL is passed over.
    explicit DocumentPreloader(const std::vector<QUrl>& urls);

    /// The document at `index` of the list is opened next.
    void reached(std::size_t index) { sources_.reached(index); }

private:
    pdf::SourcePreloader sources_;
};

}  // namespace quillon
