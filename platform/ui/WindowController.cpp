#include "platform/ui/WindowController.h"

namespace quillon {

WindowController::WindowController(const QString& windowNibName) : windowNibName_(windowNibName) {}

WindowController::~WindowController() {
    delete window_.data();
}

SheetDialog& WindowController::window() {
    if (!loaded_) {
        loaded_ = true;
        window_ = new SheetDialog;
        loadInterface(*window_);
        window_->setObjectName(windowNibName_);
        windowDidLoad();
    }
    return *window_;
}

}  // namespace quillon
