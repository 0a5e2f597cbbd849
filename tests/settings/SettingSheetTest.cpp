#include "tests/settings/SettingSheetTest.h"

#include "platform/ui/ColorWell.h"
#include "platform/ui/PopUpButton.h"
#include "platform/ui/RadioMatrix.h"
#include "platform/ui/TextColor.h"
#include "tests/support/ui/Windows.h"

#include <QAction>
#include <QCheckBox>
#include <QColorDialog>
#include <QComboBox>
#include <QFile>
#include <QFontDatabase>
#include <QLabel>
#include <QLineEdit>
#include <QMenu>
#include <QRadioButton>
#include <QTabWidget>

namespace quillon::test {

SettingSheet::SettingSheet() {
    window_.resize(900, 700);
    window_.show();
}

SettingSheet::~SettingSheet() = default;

void SettingSheet::store(const char* key, int value) {
    defaults_->setInteger(QString::fromLatin1(key), value);
}

void SettingSheet::store(const char* key, const QString& value) {
    defaults_->setString(QString::fromLatin1(key), value);
}

void SettingSheet::store(const char* key, const QByteArray& value) {
    defaults_->setData(QString::fromLatin1(key), value);
}

void SettingSheet::storeFile(const QByteArray& bytes) {
    defaults_.reset();
    QFile file(path_);
    ASSERT_TRUE(file.open(QIODevice::WriteOnly | QIODevice::Truncate));
    file.write(bytes);
    file.close();
    defaults_.emplace(path_);
}

void SettingSheet::storeGroupsOn() {
    for (const char* key :
         {"QUILLON_APPEND_PAGE", "QUILLON_ADD_WATERMARK", "QUILLON_ADD_BOOKMARK", "QUILLON_ADD_BOOKMARK_USE_FILENAME",
          "QUILLON_ADD_PAGE_NUMBER", "QUILLON_USER_PASSWORD_STATE", "QUILLON_OWNER_PASSWORD_STATE"}) {
        store(key, 1);
    }
}

SettingWindowController& SettingSheet::start() {
    static_cast<void>(defaults_->synchronize());
    controller_ = std::make_unique<SettingWindowController>(QStringLiteral("SettingWindow"), panels_, *defaults_);
    endCode_ = -1;
    controller_->window().beginSheet(window_, [this](SheetDialog& sheet, int returnCode) {
        endCode_ = returnCode;
        controller_->DidEndSheet(sheet, returnCode);
    });
    return *controller_;
}

SettingWindowController& SettingSheet::restart() {
    controller_.reset();
    defaults_.emplace(path_);
    return start();
}

QCheckBox& SettingSheet::check(const char* name) {
    return find<QCheckBox>(sheet(), name);
}

QLineEdit& SettingSheet::field(const char* name) {
    return find<QLineEdit>(sheet(), name);
}

QComboBox& SettingSheet::box(const char* name) {
    return find<QComboBox>(sheet(), name);
}

QLabel& SettingSheet::label(const char* name) {
    return find<QLabel>(sheet(), name);
}

RadioMatrix& SettingSheet::radio(const char* name) {
    return find<RadioMatrix>(sheet(), name);
}

ColorWell& SettingSheet::well() {
    return find<ColorWell>(sheet(), "colorWell");
}

QWidget& SettingSheet::control(const char* name) {
    return find<QWidget>(sheet(), name);
}

void SettingSheet::reveal(QWidget& control) {
    auto& tabs = find<QTabWidget>(sheet(), "tabs");
    for (int index = 0; index < tabs.count(); ++index) {
        if (tabs.widget(index)->isAncestorOf(&control)) tabs.setCurrentIndex(index);
    }
}

void SettingSheet::click(const char* button) {
    auto& target = find<QAbstractButton>(sheet(), button);
    reveal(target);
    QTest::mouseClick(&target, Qt::LeftButton, {}, QPoint(10, target.height() / 2));
}

void SettingSheet::clickRow(const char* matrix, int row) {
    QRadioButton* cell = radio(matrix).findChildren<QRadioButton*>().at(row);
    click(cell->objectName().toLatin1().constData());
}

void SettingSheet::type(const char* name, const QString& text) {
    reveal(field(name));
    QTest::keyClicks(&field(name), text);
}

void SettingSheet::retype(const char* name, const QString& text) {
    reveal(field(name));
    field(name).selectAll();
    QTest::keyClick(&field(name), Qt::Key_Delete);
    QTest::keyClicks(&field(name), text);
}

void SettingSheet::choose(const char* name, int index) {
    QComboBox& target = box(name);
    reveal(target);
    while (target.isEnabled() && target.currentIndex() != index) {
        QTest::keyClick(&target, target.currentIndex() < index ? Qt::Key_Down : Qt::Key_Up);
    }
}

void SettingSheet::chooseColor(const QColor& color) {
    click("colorWell");
    auto& panel = find<QColorDialog>(well(), "colorPanel");
    panel.setCurrentColor(color);
    panel.accept();
}

void SettingSheet::chooseMacro(const char* button, const QString& title) {
    auto& target = find<PopUpButton>(sheet(), button);
    reveal(target);
    const QList<QAction*> items = target.menu()->actions();
    for (QAction* item : items) {
        if (item->text() == title) item->trigger();
    }
}

QVariant SettingSheet::shown(const char* name) {
    QWidget* widget = &control(name);
    if (const auto* check = qobject_cast<QCheckBox*>(widget)) return check->isChecked();
    if (const auto* matrix = qobject_cast<RadioMatrix*>(widget)) return matrix->selectedRow();
    if (const auto* field = qobject_cast<QLineEdit*>(widget)) return field->text();
    if (const auto* well = qobject_cast<ColorWell*>(widget)) return well->color().name();
    const auto* box = qobject_cast<QComboBox*>(widget);
    if (box == nullptr) return {};
    const bool isPermission = box->objectName().startsWith(QLatin1String("ownerPassword"));
    return isPermission ? QVariant(box->currentIndex()) : QVariant(box->currentText());
}

bool SettingSheet::isCaptionNormal(const char* name) {
    const QColor color = textColor(control(name));
    const bool normal = color == controlTextColor();
    EXPECT_TRUE(normal || color == disabledControlTextColor()) << name << " has another colour";
    return normal;
}

QString secondFont() {
    return QFontDatabase::families().value(1);
}

}  // namespace quillon::test
