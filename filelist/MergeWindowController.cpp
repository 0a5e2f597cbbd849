#include "filelist/MergeWindowController.h"

#include "filelist/NumberOnlyFormatter.h"
#include "merge/cacheData.h"
#include "platform/AssertionFailure.h"
#include "platform/ui/Alert.h"
#include "platform/ui/TextColor.h"
#include "ui_MergeMethodWindow.h"

#include <QColor>

#include <algorithm>

namespace quillon {
namespace {

bool isRangeCharacter(QChar character) {
    return QLatin1String("-,0123456789").contains(character);
}

}  // namespace

MergeWindowController::MergeWindowController(const QString& windowNibName) : WindowController(windowNibName) {}

MergeWindowController::~MergeWindowController() = default;

void MergeWindowController::loadInterface(SheetDialog& window) {
    using Self = MergeWindowController;
    ui_ = std::make_unique<Ui::MergeMethodWindow>();
    ui_->setupUi(&window);
    for (QRadioButton* cell :
         {ui_->wholeRadio, ui_->partRadio, ui_->mixRadio, ui_->mixReverseRadio, ui_->repeatRadio}) {
        ui_->mergeMethodOption->addRow(*cell);
    }
    // A step that is no number would count as 0, which repeats the same page for ever.
    for (QLineEdit* field : {ui_->mixTextField, ui_->mixReverseTextField}) {
        field->setValidator(new NumberOnlyFormatter(field));
    }
    connect(ui_->mergeMethodOption, &RadioMatrix::clicked, this, &Self::mergeMethodOptionOnClicked);
    connect(ui_->partTextField, &QLineEdit::textEdited, this, &Self::controlTextDidChange);
    connect(ui_->applyButton, &QPushButton::clicked, this, &Self::applyOnClicked);
    connect(ui_->cancelButton, &QPushButton::clicked, this, &Self::cancelOnClicked);
    connect(&window, &SheetDialog::cancelRequested, this, &Self::cancelOnClicked);
}

void MergeWindowController::windowDidLoad() {
    for (QLabel* label : {ui_->partLabel, ui_->mixLabel, ui_->mixReverseLabel, ui_->mixLabelR, ui_->mixReverseLabelR}) {
        setTextColor(*label, getColor(false));
    }
    for (QLineEdit* field : {ui_->partTextField, ui_->mixTextField, ui_->mixReverseTextField}) {
        field->setEnabled(false);
    }
    data_ = nullptr;
    oldOPtion_ = 0;
    partLastValidInput_ = QStringLiteral("");
}

void MergeWindowController::selectMethod(const cacheData& entry) {
    const std::int32_t option = entry.mergeMethod();
    if (option >= 5) {
        assertionFailure("-[MergeWindowController selectMethod:]", "MergeWindowController", __LINE__, "option < 5");
    }
    RadioMatrix& options = *ui_->mergeMethodOption;
    options.selectRow(option);
    data_ = &entry;
    mergeMethodOptionOnClicked();
    data_ = nullptr;
    for (const int row : {2, 3, 1}) options.setRowEnabled(row, !entry.isImage());
    options.focusSelectedRow();
}

void MergeWindowController::mergeMethodOptionOnClicked() {
    resetMethodState(oldOPtion_);
    const int option = ui_->mergeMethodOption->selectedRow();
    if (option == MergeMethodPart) changeMethodPart(true);
    if (option == MergeMethodCross) changeMethodMix(true);
    if (option == MergeMethodCrossReverse) changeMethodMixReverse(true);
    oldOPtion_ = option;
}

void MergeWindowController::resetMethodState(int option) {
    if (option == MergeMethodPart) changeMethodPart(false);
    if (option == MergeMethodCross) changeMethodMix(false);
    if (option == MergeMethodCrossReverse) changeMethodMixReverse(false);
}

void MergeWindowController::changeMethodPart(bool enable) {
    ui_->partTextField->setEnabled(enable);
    setTextColor(*ui_->partLabel, getColor(enable));
    offerValue(*ui_->partTextField, data_ != nullptr && data_->mergeMethod() == MergeMethodPart);
}

void MergeWindowController::changeMethodMix(bool enable) {
    ui_->mixTextField->setEnabled(enable);
    for (QLabel* label : {ui_->mixLabel, ui_->mixLabelR}) setTextColor(*label, getColor(enable));
    offerValue(*ui_->mixTextField, isStepEntry());
}

void MergeWindowController::changeMethodMixReverse(bool enable) {
    ui_->mixReverseTextField->setEnabled(enable);
    for (QLabel* label : {ui_->mixReverseLabel, ui_->mixReverseLabelR}) setTextColor(*label, getColor(enable));
    offerValue(*ui_->mixReverseTextField, isStepEntry());
}

bool MergeWindowController::isStepEntry() const {
    return data_ != nullptr &&
           (data_->mergeMethod() == MergeMethodCross || data_->mergeMethod() == MergeMethodCrossReverse);
}

/// Accepted or not, the value is not offered again.
void MergeWindowController::offerValue(QLineEdit& field, bool isAccepted) {
    if (isAccepted && !data_->value().isNull()) field.setText(data_->value());
    data_ = nullptr;
}

QColor MergeWindowController::getColor(bool enabled) {
    return enabled ? controlTextColor() : disabledControlTextColor();
}

std::int32_t MergeWindowController::getMergeOption() const {
    return ui_->mergeMethodOption->selectedRow();
}

QString MergeWindowController::getMergeOptionValue() const {
    switch (getMergeOption()) {
        case MergeMethodPart:
            return ui_->partTextField->text();
        case MergeMethodCross:
            return ui_->mixTextField->text();
        case MergeMethodCrossReverse:
            return ui_->mixReverseTextField->text();
        default:
            return QStringLiteral("");
    }
}

bool MergeWindowController::validateInput() {
    switch (getMergeOption()) {
        case MergeMethodPart:
            return requireText(*ui_->partTextField, QStringLiteral("Error ! The Part Range MUST NOT BE empty !"));
        case MergeMethodCross:
            return requireText(*ui_->mixTextField, QStringLiteral("Error ! The page number MUST NOT BE empty !"));
        case MergeMethodCrossReverse:
            return requireText(*ui_->mixReverseTextField,
                               QStringLiteral("Error ! The page number MUST NOT BE empty !"));
        default:
            return true;
    }
}

bool MergeWindowController::requireText(const QLineEdit& field, const QString& message) {
    return !field.text().isEmpty() || showAlert(message);
}

bool MergeWindowController::showAlert(const QString& message) {
    Alert::beginSheet(message, QStringLiteral("Close"), QString(), window(),
                      [this](QWidget& alert) { alertDidEnd(alert); });
    return false;
}

void MergeWindowController::alertDidEnd(QWidget& alert) {
    alert.hide();
}

void MergeWindowController::applyOnClicked() {
    if (!validateInput()) return;
    doClose();
    window().endSheet(1);
}

void MergeWindowController::cancelOnClicked() {
    doClose();
    window().endSheet(0);
}

void MergeWindowController::doClose() {
    window().orderOut();
}

void MergeWindowController::controlTextDidChange(const QString& text) {
    if (std::all_of(text.begin(), text.end(), isRangeCharacter)) {
        partLastValidInput_ = text;
    } else {
        ui_->partTextField->setText(partLastValidInput_);
    }
}

}  // namespace quillon
