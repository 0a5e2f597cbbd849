#include "pdf/join/DestinationTable.h"

#include <utility>

namespace quillon::pdf {

DestinationTable::DestinationTable(DestinationNames names) : names_(std::move(names)) {
    values_.reserve(names_.tree.size() + names_.old.size());
    add(names_.tree, tree_);
    add(names_.old, old_);
}

void DestinationTable::add(const NamedValues& names, NameTable& known) {
    known.reserve(names.size());
    for (const auto& [name, value] : names) {
        if (known.add(name).isNew) values_.push_back(&value);
    }
}

}  // namespace quillon::pdf
