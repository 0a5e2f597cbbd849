#include "platform/ui/SheetDialog.h"

#include <utility>

namespace quillon {

void SheetDialog::beginSheet(QWidget& modalForWindow, DidEnd didEndSelector) {
    if (running_) return;
    running_ = true;
    didEnd_ = std::move(didEndSelector);
    if (parentWidget() != &modalForWindow) setParent(&modalForWindow, Qt::Dialog);
    setWindowModality(Qt::WindowModal);
    show();
    // A window manager gives the focus to the window that it deems the newest; it is the sheet that the keys are for.
    raise();
    activateWindow();
}

void SheetDialog::endSheet(int returnCode) {
    if (!running_) return;
    running_ = false;
    const DidEnd didEnd = std::exchange(didEnd_, nullptr);
    if (didEnd) didEnd(*this, returnCode);
}

}  // namespace quillon
