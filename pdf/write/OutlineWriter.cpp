#include "pdf/write/OutlineWriter.h"

#include <algorithm>

namespace quillon::pdf {

OutlineWriter::OutlineWriter(const std::vector<OutlineEntry>& entries) : entries_(entries) {
    for (std::size_t i = 0; i < entries_.size(); ++i) {
        const Source* source = entries_[i].action.source.get();
        if (source) withAction_[source].push_back(static_cast<std::uint32_t>(i));
    }
}

void OutlineWriter::copyActions(const Source& source, const PageCopies& copies, SourceCopier& copier) {
    const auto found = withAction_.find(&source);
    if (found == withAction_.end()) return;
    for (const std::uint32_t index : found->second) {
        const SourceText& action = entries_[index].action;
        copier.copyEditedValue(action.text, copies.ofOpening(action.opening), actions_[index]);
    }
}

/// Finds out which nodes stand beside, above and below each other.
void OutlineWriter::link() {
    links_.assign(entries_.size(), {});
    std::vector<std::uint32_t> path;  // the last node at each depth
    for (std::uint32_t i = 0; i < entries_.size(); ++i) {
        path.resize(std::min<std::size_t>(path.size(), entries_[i].depth + std::size_t{1}));
        Links& own = links_[i];
        // A node that is more than one level below the one before it hangs under that one.
        const bool hasSibling = path.size() == entries_[i].depth + std::size_t{1};
        if (hasSibling) path.pop_back();
        own.parent = path.empty() ? none : path.back();
        path.push_back(i);
        Links& above = own.parent == none ? root_ : links_[own.parent];
        own.previous = above.last;
        if (above.last != none) links_[above.last].next = i;
        if (above.first == none) above.first = i;
        above.last = i;
    }
    for (std::size_t i = entries_.size(); i-- > 0;) {
        Links& above = links_[i].parent == none ? root_ : links_[links_[i].parent];
        above.shown += 1 + (entries_[i].open ? links_[i].shown : 0);
    }
}

std::uint32_t OutlineWriter::write(ObjectOutput& output, const PageTreeWriter& pages) {
    if (entries_.empty()) return 0;
    link();
    const std::uint32_t root = output.reserve();
    for (std::size_t i = 0; i < entries_.size(); ++i) static_cast<void>(output.reserve());
    std::string& body = output.body();
    std::size_t begin = body.size();
    body += "<</Type/Outlines/First " + std::to_string(root + 1 + root_.first) + " 0 R/Last " +
            std::to_string(root + 1 + root_.last) + " 0 R/Count " + std::to_string(root_.shown) + ">>";
    output.close(root, begin);
    for (std::size_t i = 0; i < entries_.size(); ++i) {
        begin = body.size();
        writeEntry(i, root, pages, body);
        output.close(root + 1 + static_cast<std::uint32_t>(i), begin);
    }
    return root;
}

void OutlineWriter::writeEntry(std::size_t index, std::uint32_t root, const PageTreeWriter& pages,
                               std::string& out) const {
    const OutlineEntry& entry = entries_[index];
    const Links& links = links_[index];
    const auto link = [&](std::string_view key, std::uint32_t target) {
        if (target == none) return;
        out += key;
        out += std::to_string(root + 1 + target) + " 0 R";
    };
    out += "<</Title";
    writeString(out, entry.title);
    out += "/Parent " + std::to_string(links.parent == none ? root : root + 1 + links.parent) + " 0 R";
    link("/Prev ", links.previous);
    link("/Next ", links.next);
    link("/First ", links.first);
    link("/Last ", links.last);
    if (links.shown > 0) out += (entry.open ? "/Count " : "/Count -") + std::to_string(links.shown);
    out += entry.look;
    const auto action = actions_.find(static_cast<std::uint32_t>(index));
    if (entry.page && !pages.isDropped(*entry.page)) {
        out += "/Dest[" + std::to_string(pages.pageNumber(*entry.page)) + " 0 R" + entry.view + ']';
    } else if (action != actions_.end()) {
        out += "/A " + action->second;
    }
    out += ">>";
}

}  // namespace quillon::pdf
