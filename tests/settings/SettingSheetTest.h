#pragma once

#include "platform/store/UserDefaults.h"
#include "settings/SettingWindowController.h"
#include "tests/support/TempDir.h"
#include "tests/support/ui/AnsweringPanels.h"

#include <QVariant>
#include <QWidget>
#include <gtest/gtest.h>

#include <memory>
#include <optional>

class QCheckBox;
class QComboBox;
class QLabel;
class QLineEdit;

namespace quillon {
class ColorWell;
class RadioMatrix;
}  // namespace quillon

namespace quillon::test {

/// The settings sheet on the screen, with a store of its own. Controls are found by their names and used as a person
/// would: a tab is turned to before anything on it is clicked or typed into.
class SettingSheet : public testing::Test {
protected:
    SettingSheet();
    ~SettingSheet() override;

    /// Before start(): what the store holds.
    void store(const char* key, int value);
    void store(const char* key, const QString& value);
    void store(const char* key, const QByteArray& value);
    /// The same for what the settings file says, to the letter.
    void storeFile(const QByteArray& bytes);
    /// Switches every group on in the store, with no details.
    void storeGroupsOn();

    /// Loads the sheet and begins it on a window.
    SettingWindowController& start();
    /// Ends the program and starts it again with the same store.
    SettingWindowController& restart();

    SettingWindowController& controller() { return *controller_; }
    SheetDialog& sheet() { return controller_->window(); }
    [[nodiscard]] bool isOpen() { return sheet().isRunning() || sheet().isVisible(); }
    /// The code with which the sheet ended; -1 while it runs.
    [[nodiscard]] int endCode() const { return endCode_; }

    QCheckBox& check(const char* name);
    QLineEdit& field(const char* name);
    QComboBox& box(const char* name);
    QLabel& label(const char* name);
    RadioMatrix& radio(const char* name);
    ColorWell& well();
    QWidget& control(const char* name);

    void click(const char* button);
    void clickRow(const char* matrix, int row);
    void type(const char* field, const QString& text);
    /// Replaces what the field shows, by keys.
    void retype(const char* field, const QString& text);
    /// Moves to the item by the arrow keys.
    void choose(const char* box, int index);
    void chooseColor(const QColor& color);
    void chooseMacro(const char* button, const QString& title);
    void apply() { click("applyButton"); }
    void cancel() { click("cancelButton"); }

    /// What the control shows: a state, row or text, an index of the permission menus, a colour.
    [[nodiscard]] QVariant shown(const char* name);
    [[nodiscard]] bool isEnabled(const char* name) { return control(name).isEnabled(); }
    /// Whether the text of the caption has the colour of an enabled control; fails for any other than the two colours.
    [[nodiscard]] bool isCaptionNormal(const char* name);

    /// What the store holds on the disk.
    [[nodiscard]] bool isStored(const char* key) { return UserDefaults(path_).contains(QString::fromLatin1(key)); }
    [[nodiscard]] int storedInteger(const char* key) {
        return UserDefaults(path_).integerForKey(QString::fromLatin1(key));
    }
    [[nodiscard]] QString storedText(const char* key) {
        return UserDefaults(path_).stringForKey(QString::fromLatin1(key));
    }

    TempDir folder_;
    QString path_ = QString::fromStdString(folder_.file("Quillon.conf"));
    AnsweringPanels panels_;

private:
    void reveal(QWidget& control);

    std::optional<UserDefaults> defaults_{std::in_place, path_};
    QWidget window_;
    std::unique_ptr<SettingWindowController> controller_;
    int endCode_ = -1;
};

/// A family that is installed and not the first of the list.
[[nodiscard]] QString secondFont();

}  // namespace quillon::test
