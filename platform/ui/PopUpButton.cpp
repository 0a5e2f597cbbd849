#include "platform/ui/PopUpButton.h"

#include <QAction>
#include <QMenu>

#include <utility>

namespace quillon {

PopUpButton::PopUpButton(QWidget* parent) : QPushButton(parent) {
    // In a dialog Return is for the default button.
    setAutoDefault(false);
}

PopUpButton::~PopUpButton() = default;

void PopUpButton::setPopUpMenu(std::unique_ptr<QMenu> menu) {
    setMenu(menu.get());
    menu_ = std::move(menu);
    const QList<QAction*> items = menu_->actions();
    if (!items.isEmpty()) setText(items.constFirst()->text());
    connect(menu_.get(), &QMenu::triggered, this, [this](const QAction* item) {
        setText(item->text());
        Q_EMIT itemChosen();
    });
}

void PopUpButton::selectItemWithTitle(const QString& title) {
    const QList<QAction*> items = menu_ ? menu_->actions() : QList<QAction*>();
    for (const QAction* item : items) {
        if (item->text() == title) setText(title);
    }
}

}  // namespace quillon
