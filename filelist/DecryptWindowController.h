#pragma once

#include "platform/ui/WindowController.h"

#include <QString>

#include <memory>

namespace quillon {

namespace Ui {
class DecryptWindow;
}

/// The sheet that asks for the password of a protected file. It ends with 1 for OK and 0 for Cancel, and stays visible
/// until it is ordered out. What was typed stays in its field. Main thread only; ask for window() before anything else.
class DecryptWindowController final : public WindowController {
    Q_OBJECT

public:
    explicit DecryptWindowController(const QString& windowNibName);
    ~DecryptWindowController() override;

    /// What the field holds; null when it is empty.
    [[nodiscard]] QString getPassword() const;

protected:
    void loadInterface(SheetDialog& window) override;

private:
    void okOnClicked();
    void cancelOnClicked();
    void endSheet(int returnCode);

    std::unique_ptr<Ui::DecryptWindow> ui_;
};

}  // namespace quillon
