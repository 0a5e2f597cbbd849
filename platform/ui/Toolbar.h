#pragma once

#include <QToolBar>

#include <functional>
#include <utility>

namespace quillon {

/// A toolbar whose items are enabled and disabled by a rule that knows them by their label. The same action in a menu
/// follows. Main thread only.
class Toolbar final : public QToolBar {
    Q_OBJECT

public:
    using QToolBar::QToolBar;

    /// Answers whether the item with this label (`QAction::iconText`) can be used now.
    using Validator = std::function<bool(const QString& label)>;

    void setValidator(Validator validateToolbarItem) {
        validateToolbarItem_ = std::move(validateToolbarItem);
        validateItems();
    }

    /// Asks the rule again for every item. Called whenever something that it looks at has changed.
    void validateItems();

private:
    Validator validateToolbarItem_;
};

}  // namespace quillon
