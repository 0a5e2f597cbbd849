#include "platform/ui/Alert.h"

#include <QMessageBox>
#include <QObject>
#include <QPushButton>

#include <utility>

namespace quillon {
namespace {

void fill(QMessageBox& box, const QString& messageText, const QString& button) {
    box.setObjectName(QStringLiteral("alert"));
    box.setIcon(QMessageBox::Warning);
    // A message may hold any character that the user typed; it is never markup.
    box.setTextFormat(Qt::PlainText);
    box.setText(messageText);
    QPushButton* only = box.addButton(button, QMessageBox::AcceptRole);
    box.setDefaultButton(only);
    box.setEscapeButton(only);
}

}  // namespace

void Alert::beginSheet(const QString& messageText, const QString& defaultButton, const QString& informativeText,
                       QWidget& modalForWindow, DidEnd didEndSelector) {
    auto* box = new QMessageBox(&modalForWindow);
    fill(*box, messageText, defaultButton);
    box->setInformativeText(informativeText);
    box->setWindowModality(Qt::WindowModal);
    QObject::connect(box, &QDialog::finished, box, [box, didEnd = std::move(didEndSelector)] {
        didEnd(*box);
        box->deleteLater();
    });
    box->open();
}

void Alert::runModal(const QString& messageText, const QString& button) {
    QMessageBox box;
    fill(box, messageText, button);
    box.exec();
}

}  // namespace quillon
