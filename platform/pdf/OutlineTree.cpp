#include "platform/pdf/OutlineTree.h"

#include "platform/pdf/PDFDestination.h"
#include "platform/pdf/PDFOutline.h"
#include "platform/pdf/TextString.h"

#include <unordered_set>
#include <utility>

namespace quillon {

std::shared_ptr<PDFOutline> readOutlineTree(const std::shared_ptr<pdf::Source>& source, std::uint32_t opening,
                                            const std::function<std::shared_ptr<PDFPage>(std::uint32_t)>& pageAt) {
    const pdf::SourceAccess access(*source);
    if (!access.document()) return nullptr;
    auto items = pdf::readOutline(*access.document());
    if (!items) return nullptr;
    auto root = std::make_shared<PDFOutline>();
    root->setIsOpen(true);
    std::vector<PDFOutline*> path{root.get()};  // the last node of each level
    for (pdf::OutlineItem& item : *items) {
        auto node = std::make_shared<PDFOutline>();
        node->setLabel(fromTextString(item.title));
        node->setIsOpen(item.open);
        node->setLook(std::move(item.look));
        if (!item.action.empty()) node->setAction({source, opening, std::move(item.action)});
        if (item.destination) {
            const QPointF point(item.destination->left.value_or(0), item.destination->top.value_or(0));
            node->setDestination(std::make_shared<PDFDestination>(pageAt(item.destination->page), point,
                                                                  std::move(item.destination->view)));
        }
        path.resize(item.depth + std::size_t{1});
        PDFOutline* const parent = path.back();
        path.push_back(node.get());
        parent->insertChild(std::move(node), parent->numberOfChildren());
    }
    return root;
}

std::vector<pdf::OutlineEntry> outlineEntries(
    const PDFOutline& root, const std::function<std::optional<std::size_t>(const PDFPage&)>& placeOf) {
    std::vector<pdf::OutlineEntry> entries;
    std::unordered_set<const PDFOutline*> seen{&root};
    std::vector<std::pair<const PDFOutline*, int>> path{{&root, 0}};  // nodes, and the next child of each
    while (!path.empty()) {
        auto& [parent, next] = path.back();
        const std::shared_ptr<PDFOutline> node = parent->childAtIndex(next++);
        if (!node) {
            path.pop_back();
            continue;
        }
        if (!seen.insert(node.get()).second) continue;
        pdf::OutlineEntry& entry = entries.emplace_back();
        entry.title = toTextString(node->label());
        entry.depth = static_cast<std::uint32_t>(path.size() - 1);
        entry.open = node->isOpen();
        entry.look = node->look();
        entry.action = node->action();
        if (const auto& destination = node->destination(); destination && destination->page()) {
            entry.page = placeOf(*destination->page());
            entry.view = destination->view();
        }
        path.emplace_back(node.get(), 0);
    }
    return entries;
}

}  // namespace quillon
