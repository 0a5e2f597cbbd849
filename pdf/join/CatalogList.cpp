#include "pdf/join/CatalogList.h"

#include "pdf/join/Unfolded.h"

namespace quillon::pdf {

void CatalogList::add(const SourceCopies& source, const Object& list) {
    const Object resolved = source.reader().resolve(list);
    if (!resolved.array()) return;
    Unfolded unfolded(source);
    for (const Object& element : *resolved.array()) {
        if (known_.insert(unfolded.of(element)).second) elements_ += source.copied(element) + ' ';
    }
}

}  // namespace quillon::pdf
