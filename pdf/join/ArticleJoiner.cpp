#include "pdf/join/ArticleJoiner.h"

#include <algorithm>
#include <unordered_set>

namespace quillon::pdf {

void ArticleJoiner::begin(const SourceCopies& source) {
    current_.clear();
    visits_ = 0;
    const Object threads = source.reader().resolve(source.catalog["Threads"]);
    if (!threads.array()) return;
    std::unordered_set<std::uint32_t> seen;  // threads and beads
    for (const Object& thread : *threads.array()) {
        if (thread.reference() && seen.insert(thread.reference()->number).second) {
            takeThread(source, *thread.reference(), seen);
        }
    }
}

/// Finds the beads of a thread that are on pages of each group.
void ArticleJoiner::takeThread(const SourceCopies& source, Reference thread, std::unordered_set<std::uint32_t>& seen) {
    ObjectReader& reader = source.reader();
    const Object resolved = reader.parse(thread);
    if (!resolved.dictionary()) return;
    std::vector<std::pair<Reference, std::uint32_t>> beads;  // with their pages
    for (Object next = (*resolved.dictionary())["F"]; next.reference() && reader.mayVisit(seen.size());) {
        const Reference bead = *next.reference();
        if (!seen.insert(bead.number).second) break;
        const Object dictionary = reader.parse(bead);
        if (!dictionary.dictionary()) break;
        const Object& page = (*dictionary.dictionary())["P"];
        if (page.reference()) beads.emplace_back(bead, page.reference()->number);
        next = Object((*dictionary.dictionary())["N"]);
    }
    for (std::uint32_t group = 0; group < source.pages.groups(); ++group) {
        if (!source.pages.isAsked(group) && !reader.mayVisit(visits_ += beads.size())) break;
        Overlay* const overlay = source.pages.overlay(group);
        Thread own{thread, 0, group, {}};
        for (const auto& [bead, page] : beads) {
            const bool isTaken = overlay ? overlay->covers(page) : source.copier.isTaken(page);
            if (isTaken) own.beads.push_back({bead, output_->reserve()});
            const std::uint32_t number = isTaken ? own.beads.back().number : Overlay::none;
            overlay ? overlay->set(bead.number, number) : source.copier.announce(bead.number, number);
        }
        if (own.beads.empty()) continue;
        own.number = output_->reserve();
        overlay ? overlay->set(thread.number, own.number) : source.copier.announce(thread.number, own.number);
        current_.push_back(std::move(own));
    }
}

void ArticleJoiner::end(const SourceCopies& source) {
    for (const Thread& thread : current_) writeThread(source, thread);
    current_.clear();
}

void ArticleJoiner::writeThread(const SourceCopies& source, const Thread& thread) {
    const Overlay* const overlay = source.pages.overlay(thread.group);
    const auto reference = [](std::string_view key, std::uint32_t number) {
        return std::string(key) + ' ' + std::to_string(number) + " 0 R";
    };
    const Object resolved = source.reader().parse(thread.reference);
    if (!resolved.dictionary()) return;
    const auto write = [&](std::uint32_t number, const std::string& text) {
        if (source.charge(text.size(), thread.group)) output_->addObject(number, text);
    };
    write(thread.number, "<<" + entries(source, *resolved.dictionary(), overlay, {"F"}) +
                             reference("/F", thread.beads.front().number) + ">>");
    threads_ += std::to_string(thread.number) + " 0 R ";
    const std::size_t count = thread.beads.size();
    for (std::size_t i = 0; i < count; ++i) {
        const Object bead = source.reader().parse(thread.beads[i].reference);
        std::string text = "<<";
        if (bead.dictionary()) text += entries(source, *bead.dictionary(), overlay, {"T", "N", "V"});
        if (i == 0) text += reference("/T", thread.number);
        text += reference("/N", thread.beads[(i + 1) % count].number);
        text += reference("/V", thread.beads[(i + count - 1) % count].number);
        write(thread.beads[i].number, text + ">>");
    }
}

std::string ArticleJoiner::entries(const SourceCopies& source, const Dictionary& dictionary, const Overlay* overlay,
                                   std::initializer_list<std::string_view> dropped) {
    std::string text;
    for (const auto& [key, value] : dictionary.entries()) {
        if (std::ranges::find(dropped, key) != dropped.end()) continue;
        writeName(text, key);
        text += ' ' + source.copied(value, overlay);
    }
    return text;
}

}  // namespace quillon::pdf
