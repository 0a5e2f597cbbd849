#include "app/MainWindowController.h"

#include "app/HelpPage.h"
#include "filelist/ImageCell.h"
#include "platform/ui/Alert.h"
#include "platform/ui/Panels.h"
#include "platform/ui/SymbolIcon.h"
#include "platform/ui/TableView.h"
#include "platform/ui/Workspace.h"
#include "ui_MainWindow.h"

#include <QMessageBox>

/// A static library's resources are linked only when they are asked for, and this may not be done in a namespace.
static void initResources() {
    Q_INIT_RESOURCE(quillon);
}

namespace quillon {
namespace {

const QString fileNameColumn = QStringLiteral("FileName");

QIcon icon(const char* name) {
    return symbolIcon(QStringLiteral(":/resources/icons/%1.svg").arg(QLatin1String(name)));
}

}  // namespace

MainWindowController::MainWindowController(Panels& panels, Workspace& workspace, UserDefaults& defaults)
    : panels_(panels),
      workspace_(workspace),
      ui_(std::make_unique<Ui::MainWindow>()),
      window_(std::make_unique<QMainWindow>()) {
    initResources();
    init(defaults);
    loadWindow();
    awakeFromNib();
}

MainWindowController::~MainWindowController() {
    // The view outlives the model and must not ask it again.
    tableView_->setDataSource(nullptr);
    tableView_->setDelegate(nullptr);
}

void MainWindowController::init(UserDefaults& defaults) {
    settingWindow_ = std::make_unique<SettingWindowController>(QStringLiteral("SettingWindow"), panels_, defaults);
    // Loading a window puts the stored settings in force, or just takes its time where nobody waits for it.
    static_cast<void>(settingWindow_->window());
    decryptWindow_ = std::make_unique<DecryptWindowController>(QStringLiteral("DecryptWindow"));
    static_cast<void>(decryptWindow_->window());
    mergeMethodWindow_ = std::make_unique<MergeWindowController>(QStringLiteral("MergeMethodWindow"));
    progressIndicator_ =
        std::make_unique<ProgressWindowController>(QStringLiteral("ProgressIndicator"), *this, *window_, workspace_);
    loadRowIcons();
}

void MainWindowController::loadWindow() {
    ui_->setupUi(window_.get());
    tableView_ = ui_->tableView;
    tableView_->setColumns({{fileNameColumn, QStringLiteral("File Name"), 320, Qt::AlignLeft},
                            {QStringLiteral("Size"), QStringLiteral("Size (KiB)"), 100, Qt::AlignRight},
                            {QStringLiteral("MergeMethod"), QStringLiteral("Merge Method"), 220, Qt::AlignLeft},
                            {QStringLiteral("Pages"), QStringLiteral("Pages"), 80, Qt::AlignRight},
                            {QStringLiteral("Password"), QStringLiteral("Password"), 100, Qt::AlignLeft}});
    tableView_->setPlaceholder(icon("DropFiles"), QStringLiteral("Add files, or drop them here"),
                               QStringLiteral("PDF files and pictures are joined in the order of this list"));
    connectActions();
}

void MainWindowController::connectActions() {
    const auto command = [this](QAction* action, const char* drawing, auto operation) {
        if (drawing != nullptr) action->setIcon(icon(drawing));
        // A key may come before the rules were asked again about what the one in front of it has done.
        connect(action, &QAction::triggered, this, [this, action, operation] {
            ui_->toolbar->validateItems();
            if (action->isEnabled()) (this->*operation)();
        });
    };
    command(ui_->actionAddFile, "AddFile", &MainWindowController::addFileOnClicked);
    command(ui_->actionAddFolder, "AddFolder", &MainWindowController::addDirectoryOnClicked);
    command(ui_->actionRemoveFile, "RemoveFile", &MainWindowController::removeFileOnClicked);
    command(ui_->actionRemoveAll, "RemoveAll", &MainWindowController::removeAllOnClicked);
    command(ui_->actionMoveUp, "MoveUp", &MainWindowController::moveUpOnClicked);
    command(ui_->actionMoveDown, "MoveDown", &MainWindowController::moveDownOnClicked);
    command(ui_->actionHelp, "Help", &MainWindowController::helpOnClicked);
    command(ui_->actionMerge, "Merge", &MainWindowController::mergeOnClicked);
    command(ui_->actionAbout, nullptr, &MainWindowController::aboutOnClicked);
    command(ui_->actionMergeMethod, "MergeMethod", &MainWindowController::mergeMethodOnClicked);
    command(ui_->actionDecrypt, "Decrypt", &MainWindowController::decryptOnClicked);
    command(ui_->actionSettings, "Settings", &MainWindowController::settingOnClicked);
    command(ui_->actionQuit, nullptr, &MainWindowController::quit);
    // A window that a sheet blocks takes no shortcuts, but Quit must work during a merge.
    progressIndicator_->window().addAction(ui_->actionQuit);
    connect(ui_->actionClose, &QAction::triggered, window_.get(), &QWidget::close);

    ui_->toolbar->setValidator([this](const QString& label) {
        return (areCommandsEnabled_ || label == QLatin1String("Help")) && validateToolbarItem(label);
    });
    // Queued: a cell that is being drawn may just have found out that its file needs a password.
    connect(tableView_, &TableView::changed, ui_->toolbar, &Toolbar::validateItems, Qt::QueuedConnection);
}

void MainWindowController::awakeFromNib() {
    tableViewDataSource_ = std::make_unique<TableViewDataSource>(*tableView_, workspace_);
    tableView_->setDataSource(tableViewDataSource_.get());
    tableView_->setDelegate(this);
    tableView_->registerForDraggedTypes({QStringLiteral("text/uri-list")});
    static_cast<void>(mergeMethodWindow_->window());
    tableView_->setFocus();
    ui_->toolbar->validateItems();
}

void MainWindowController::settingOnClicked() {
    settingWindow_->window().beginSheet(*window_,
                                        [this](SheetDialog& sheet, int returnCode) { DidEndSheet(sheet, returnCode); });
}

void MainWindowController::DidEndSheet(SheetDialog& sheet, int /*returnCode*/) {
    sheet.orderOut();
}

void MainWindowController::decryptOnClicked() {
    decryptWindow_->window().beginSheet(
        *window_, [this](SheetDialog& sheet, int returnCode) { decryptDidEndSheet(sheet, returnCode); });
}

void MainWindowController::decryptDidEndSheet(SheetDialog& sheet, int returnCode) {
    sheet.orderOut();
    if (returnCode != 1) return;
    if (!tableViewDataSource_->decryptInRow(tableView_->selectedRow(), decryptWindow_->getPassword())) {
        decryptOnClicked();
    }
}

void MainWindowController::mergeMethodOnClicked() {
    mergeMethodWindow_->selectMethod(*tableViewDataSource_->getDataOfSelectedRow(tableView_->selectedRow()));
    mergeMethodWindow_->window().beginSheet(
        *window_, [this](SheetDialog& /*sheet*/, int returnCode) { mergeMethodDidEndSheet(returnCode); });
}

void MainWindowController::mergeMethodDidEndSheet(int returnCode) {
    if (returnCode != 1) return;
    tableViewDataSource_->updateMethodColumn(tableView_->selectedRow(), mergeMethodWindow_->getMergeOption(),
                                             mergeMethodWindow_->getMergeOptionValue());
}

void MainWindowController::helpOnClicked() {
    workspace_.openURL(helpPage());
}

void MainWindowController::aboutOnClicked() {
    auto* box = new QMessageBox(QMessageBox::NoIcon, QStringLiteral("About Quillon"),
                                QStringLiteral("<h3>Quillon %1</h3><p>Joins PDF files and pictures into one PDF.</p>"
                                               "<p>Licensed under the Apache License 2.0.</p>")
                                    .arg(QStringLiteral(QUILLON_VERSION)),
                                QMessageBox::Close, window_.get());
    box->setAttribute(Qt::WA_DeleteOnClose);
    box->open();
}

void MainWindowController::addFileOnClicked() {
    OpenPanel panel;
    panel.allowsMultipleSelection = true;
    for (const char* type : {"pdf", "tiff", "tif", "gif", "png", "bmp", "jpg", "jpeg"}) {
        panel.allowedFileTypes.append(QString::fromLatin1(type));
    }
    panels_.beginOpenPanel(panel, *window_, [this](int result, const QList<QUrl>& urls) {
        if (result == Panels::okButton) tableViewDataSource_->addFiles(urls);
    });
}

void MainWindowController::addDirectoryOnClicked() {
    OpenPanel panel;
    panel.canChooseFiles = false;
    panel.canChooseDirectories = true;
    panels_.beginOpenPanel(panel, *window_, [this](int result, const QList<QUrl>& urls) {
        if (result == Panels::okButton && !urls.isEmpty()) tableViewDataSource_->addDirectory(urls.constFirst());
    });
}

void MainWindowController::removeFileOnClicked() {
    tableViewDataSource_->deleteRow(tableView_->selectedRow());
}

void MainWindowController::removeAllOnClicked() {
    tableViewDataSource_->deleteAll();
}

void MainWindowController::moveUpOnClicked() {
    moveSelectedRow(-1);
}

void MainWindowController::moveDownOnClicked() {
    moveSelectedRow(1);
}

void MainWindowController::moveSelectedRow(int distance) {
    const int row = tableView_->selectedRow();
    tableViewDataSource_->swapRow(row, row + distance);
    tableView_->deselectRow(row);
    tableView_->selectRowIndexes({row + distance}, true);
}

bool MainWindowController::validateToolbarItem(const QString& label) const {
    const int rows = tableView_->numberOfRows();
    const int selected = tableView_->selectedRow();
    const bool isSelected = tableView_->numberOfSelectedRows() > 0;
    if (label == QLatin1String("Remove File") || label == QLatin1String("Remove All") ||
        label == QLatin1String("Merge")) {
        return rows > 0;
    }
    if (label == QLatin1String("Decrypt")) return isSelected && tableViewDataSource_->isEncrypt(selected);
    if (label == QLatin1String("Merge Method")) return isSelected;
    if (label == QLatin1String("Move Up")) return isSelected && selected != 0;
    if (label == QLatin1String("Move Down")) return isSelected && selected < rows - 1;
    return true;
}

bool MainWindowController::showAlert(const QString& message) {
    Alert::beginSheet(message, QStringLiteral("Close"), QString(), *window_,
                      [this](QWidget& alert) { alertDidEnd(alert); });
    return false;
}

void MainWindowController::alertDidEnd(QWidget& alert) {
    alert.hide();
}

void MainWindowController::loadRowIcons() {
    imagePic_ = QIcon(QStringLiteral(":/resources/ImagePic.png"));
    filePic_ = QIcon(QStringLiteral(":/resources/ImagePdf.png"));
}

bool MainWindowController::tableViewShouldEditTableColumn(const QString& /*column*/, int /*row*/) {
    return false;
}

std::unique_ptr<TextFieldCell> MainWindowController::tableViewDataCellForTableColumn(const QString& column,
                                                                                     int /*row*/) {
    if (column != fileNameColumn) return nullptr;
    return std::make_unique<ImageCell>();
}

void MainWindowController::tableViewWillDisplayCell(TextFieldCell& cell, const QString& forTableColumn, int row) {
    if (forTableColumn != fileNameColumn) return;
    loadRowIcons();
    static_cast<ImageCell&>(cell).setMyImage(tableViewDataSource_->isImage(row) ? &imagePic_ : &filePic_);
}

}  // namespace quillon
