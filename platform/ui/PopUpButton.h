#pragma once

#include <QPushButton>
#include <QString>

#include <memory>

class QMenu;

namespace quillon {

/// A button that pops up a menu and shows the title of the item that is selected.
class PopUpButton final : public QPushButton {
    Q_OBJECT

public:
    explicit PopUpButton(QWidget* parent = nullptr);
    ~PopUpButton() override;

    /// Replaces the menu; its first item is then selected, even a hidden one.
    void setPopUpMenu(std::unique_ptr<QMenu> menu);

    [[nodiscard]] QString titleOfSelectedItem() const { return text(); }
    /// Without such an item nothing changes. Does not count as a choice.
    void selectItemWithTitle(const QString& title);

Q_SIGNALS:
    /// A person has chosen an item, which is now selected.
    void itemChosen();

private:
    std::unique_ptr<QMenu> menu_;
};

}  // namespace quillon
