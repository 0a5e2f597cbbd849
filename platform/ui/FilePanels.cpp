#include "platform/ui/FilePanels.h"

#include <QFileDialog>
#include <QFileInfo>
#include <QMessageBox>
#include <QObject>
#include <QPushButton>

#include <utility>

namespace quillon {
namespace {

QString nameFilter(const QStringList& types) {
    QStringList patterns;
    // File names tell upper from lower case; cameras write `.JPG`.
    for (const QString& type : types) patterns << QStringLiteral("*.") + type << QStringLiteral("*.") + type.toUpper();
    return QStringLiteral("%1 (%2)").arg(types == QStringList{QStringLiteral("pdf")}
                                             ? QStringLiteral("PDF files")
                                             : QStringLiteral("PDF files and pictures"),
                                         patterns.join(QLatin1Char(' ')));
}

void configure(QFileDialog& dialog, const OpenPanel& panel) {
    dialog.setObjectName(QStringLiteral("openPanel"));
    dialog.setAcceptMode(QFileDialog::AcceptOpen);
    if (panel.canChooseDirectories && !panel.canChooseFiles) {
        dialog.setWindowTitle(QStringLiteral("Add Folder"));
        dialog.setFileMode(QFileDialog::Directory);
        dialog.setOption(QFileDialog::ShowDirsOnly);
        return;
    }
    dialog.setWindowTitle(panel.allowsMultipleSelection ? QStringLiteral("Add Files")
                                                        : QStringLiteral("Choose a File"));
    dialog.setFileMode(panel.allowsMultipleSelection ? QFileDialog::ExistingFiles : QFileDialog::ExistingFile);
    dialog.setOption(QFileDialog::HideNameFilterDetails);
    dialog.setSupportedSchemes({QStringLiteral("file")});
    if (!panel.allowedFileTypes.isEmpty()) dialog.setNameFilter(nameFilter(panel.allowedFileTypes));
}

/// The file with the ending that it must have.
QUrl withFileType(const QUrl& url, const QString& type) {
    const QString path = url.toLocalFile();
    const QString ending = QLatin1Char('.') + type;
    return path.endsWith(ending, Qt::CaseInsensitive) ? url : QUrl::fromLocalFile(path + ending);
}

void askToReplace(const QUrl& url, QWidget& modalForWindow, std::function<void(bool replace)> answer) {
    auto* box = new QMessageBox(&modalForWindow);
    box->setObjectName(QStringLiteral("replaceQuestion"));
    box->setIcon(QMessageBox::Question);
    box->setTextFormat(Qt::PlainText);
    box->setText(QStringLiteral("\"%1\" already exists. Do you want to replace it?").arg(url.fileName()));
    QPushButton* replace = box->addButton(QStringLiteral("&Replace"), QMessageBox::DestructiveRole);
    replace->setObjectName(QStringLiteral("replaceButton"));
    box->setDefaultButton(box->addButton(QMessageBox::Cancel));
    box->setWindowModality(Qt::WindowModal);
    box->setAttribute(Qt::WA_DeleteOnClose);
    QObject::connect(box, &QDialog::finished, box,
                     [box, replace, answer = std::move(answer)] { answer(box->clickedButton() == replace); });
    box->open();
}

}  // namespace

void FilePanels::beginOpenPanel(const OpenPanel& panel, QWidget& modalForWindow, OpenHandler completionHandler) {
    auto* dialog = new QFileDialog(&modalForWindow);
    configure(*dialog, panel);
    dialog->setWindowModality(Qt::WindowModal);
    QObject::connect(dialog, &QDialog::finished, dialog, [dialog, handler = std::move(completionHandler)](int result) {
        dialog->deleteLater();
        const bool chosen = result == QDialog::Accepted;
        handler(chosen ? okButton : 0, chosen ? dialog->selectedUrls() : QList<QUrl>());
    });
    dialog->open();
}

QList<QUrl> FilePanels::runOpenPanel(const OpenPanel& panel, QWidget* parent) {
    QFileDialog dialog(parent);
    configure(dialog, panel);
    dialog.setWindowModality(Qt::ApplicationModal);
    return dialog.exec() == QDialog::Accepted ? dialog.selectedUrls() : QList<QUrl>();
}

void FilePanels::beginSavePanel(const SavePanel& panel, QWidget& modalForWindow, SaveHandler completionHandler) {
    auto* dialog = new QFileDialog(&modalForWindow, QStringLiteral("Save Merged PDF"));
    dialog->setObjectName(QStringLiteral("savePanel"));
    dialog->setAcceptMode(QFileDialog::AcceptSave);
    dialog->setFileMode(QFileDialog::AnyFile);
    dialog->setOption(QFileDialog::HideNameFilterDetails);
    dialog->setNameFilter(nameFilter({panel.allowedFileType}));
    dialog->setSupportedSchemes({QStringLiteral("file")});
    dialog->setDefaultSuffix(panel.allowedFileType);
    dialog->setWindowModality(Qt::WindowModal);
    const auto finish = [this, dialog, panel, window = &modalForWindow,
                         handler = std::move(completionHandler)](int result) {
        dialog->deleteLater();
        if (result != QDialog::Accepted || dialog->selectedUrls().isEmpty() ||
            !dialog->selectedUrls().constFirst().isLocalFile()) {
            handler(0, QUrl());
            return;
        }
        const QUrl chosen = dialog->selectedUrls().constFirst();
        const QUrl url = withFileType(chosen, panel.allowedFileType);
        // The dialog asked about the name as it was typed. With an ending added it may be that of another file.
        if (url == chosen || !QFileInfo::exists(url.toLocalFile())) {
            handler(okButton, url);
            return;
        }
        askToReplace(url, *window, [this, panel, window, handler, url](bool replace) {
            if (replace) handler(okButton, url);
            if (!replace) beginSavePanel(panel, *window, handler);
        });
    };
    QObject::connect(dialog, &QDialog::finished, dialog, finish);
    dialog->open();
}

}  // namespace quillon
