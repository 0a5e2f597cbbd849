#pragma once

#include "platform/ui/WindowController.h"

#include <QString>

#include <cstdint>
#include <memory>

class QColor;
class QLabel;
class QLineEdit;

namespace quillon {

class cacheData;
namespace Ui {
class MergeMethodWindow;
}

/// The sheet in which the merge method of an entry is chosen, with the range or step that goes with it. What its fields
/// hold stays from one opening to the next. Main thread only; ask for window() before anything else.
class MergeWindowController final : public WindowController {
    Q_OBJECT

public:
    explicit MergeWindowController(const QString& windowNibName);
    ~MergeWindowController() override;

    /// Prepares the sheet for an entry, which is only looked at meanwhile: selects its method, offers its value to the
    /// field of the method, and leaves a picture no choice but Whole and Repeat. The offer goes to the controls that
    /// change first, those of the method selected before; so a value may end up in the field of another method of its
    /// kind, or nowhere. A method that there is not stops the program.
    void selectMethod(const cacheData& entry);

    /// The selected MergeMethod.
    [[nodiscard]] std::int32_t getMergeOption() const;
    /// The range of Part or the step of Cross and Cross reverse, as it was typed; empty for the other methods.
    [[nodiscard]] QString getMergeOptionValue() const;

    /// The last content of the range field that consisted of digits, commas and minus signs.
    [[nodiscard]] const QString& partLastValidInput() const noexcept { return partLastValidInput_; }
    void setPartLastValidInput(const QString& input) { partLastValidInput_ = input; }

protected:
    void loadInterface(SheetDialog& window) override;
    void windowDidLoad() override;

private:
    void mergeMethodOptionOnClicked();
    void resetMethodState(int option);
    void changeMethodPart(bool enable);
    void changeMethodMix(bool enable);
    void changeMethodMixReverse(bool enable);
    void offerValue(QLineEdit& field, bool isAccepted);
    [[nodiscard]] bool isStepEntry() const;
    [[nodiscard]] static QColor getColor(bool enabled);

    [[nodiscard]] bool validateInput();
    [[nodiscard]] bool requireText(const QLineEdit& field, const QString& message);
    bool showAlert(const QString& message);
    void alertDidEnd(QWidget& alert);
    void applyOnClicked();
    void cancelOnClicked();
    void doClose();
    void controlTextDidChange(const QString& text);

    std::unique_ptr<Ui::MergeMethodWindow> ui_;
    int oldOPtion_ = 0;                // the row that was selected before the current one
    const cacheData* data_ = nullptr;  // not owned; the entry that selectMethod prepares, until its value was offered
    QString partLastValidInput_;
};

}  // namespace quillon
