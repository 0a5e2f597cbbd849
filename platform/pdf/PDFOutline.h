#pragma once

#include "pdf/read/SourcePage.h"

#include <QString>

#include <memory>
#include <string>
#include <utility>
#include <vector>

namespace quillon {

class PDFDestination;

/// A node of a document's outline (ISO 32000-2, 12.3.3). A node owns its children.
class PDFOutline {
public:
    PDFOutline() = default;

    [[nodiscard]] const QString& label() const noexcept { return label_; }
    void setLabel(const QString& label) { label_ = label; }

    /// Null when the node leads nowhere.
    [[nodiscard]] const std::shared_ptr<PDFDestination>& destination() const noexcept { return destination_; }
    void setDestination(std::shared_ptr<PDFDestination> destination) { destination_ = std::move(destination); }

    /// Whether the children are shown.
    [[nodiscard]] bool isOpen() const noexcept { return isOpen_; }
    void setIsOpen(bool isOpen) noexcept { isOpen_ = isOpen; }

    /// What a node of a file does that leads to no page of it (opens an address, say); no source when it does nothing.
    [[nodiscard]] const pdf::SourceText& action() const noexcept { return action_; }
    void setAction(pdf::SourceText action) { action_ = std::move(action); }
    /// Colour and style of the label, as PDF text; empty for the usual ones.
    [[nodiscard]] const std::string& look() const noexcept { return look_; }
    void setLook(std::string look) { look_ = std::move(look); }

    [[nodiscard]] int numberOfChildren() const noexcept { return static_cast<int>(children_.size()); }
    /// Null outside 0 … numberOfChildren() - 1.
    [[nodiscard]] std::shared_ptr<PDFOutline> childAtIndex(int index) const;
    /// An index past the end means the end, a negative one the front. No child (null):
    /// nothing happens.
    void insertChild(std::shared_ptr<PDFOutline> child, int atIndex);

private:
    QString label_;
    std::shared_ptr<PDFDestination> destination_;
    bool isOpen_ = false;
    pdf::SourceText action_;
    std::string look_;
    std::vector<std::shared_ptr<PDFOutline>> children_;
};

}  // namespace quillon
