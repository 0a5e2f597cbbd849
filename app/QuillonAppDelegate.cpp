#include "app/QuillonAppDelegate.h"

#include <QApplication>
#include <QEvent>

namespace quillon {

void QuillonAppDelegate::setWindow(QWidget* window) {
    if (window_) window_->removeEventFilter(this);
    window_ = window;
    if (window_) window_->installEventFilter(this);
}

void QuillonAppDelegate::applicationDidFinishLaunching() {
    makeKeyAndOrderFront();
}

void QuillonAppDelegate::windowWillClose() {
    window_->hide();
}

bool QuillonAppDelegate::applicationShouldHandleReopen(bool hasVisibleWindows) {
    if (!hasVisibleWindows) makeKeyAndOrderFront();
    return true;
}

void QuillonAppDelegate::makeKeyAndOrderFront() {
    window_->show();
    activate();
}

void QuillonAppDelegate::activate() {
    if (!window_->isVisible()) return;
    if (window_->isMinimized()) window_->setWindowState(window_->windowState() & ~Qt::WindowMinimized);
    // A sheet in front of the window is what takes the keys.
    QWidget* sheet = QApplication::activeModalWidget();
    QWidget* front = sheet != nullptr ? sheet : window_.data();
    window_->raise();
    front->raise();
    front->activateWindow();
}

bool QuillonAppDelegate::eventFilter(QObject* watched, QEvent* event) {
    if (watched != window_ || event->type() != QEvent::Close) return QObject::eventFilter(watched, event);
    windowWillClose();
    event->ignore();
    return true;
}

}  // namespace quillon
