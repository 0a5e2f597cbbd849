#include "platform/ui/Toolbar.h"

#include <QAction>

namespace quillon {

void Toolbar::validateItems() {
    if (!validateToolbarItem_) return;
    const QList<QAction*> items = actions();
    for (QAction* item : items) {
        if (!item->isSeparator()) item->setEnabled(validateToolbarItem_(item->iconText()));
    }
}

}  // namespace quillon
