#pragma once

#include "app/MainWindowController.h"
#include "merge/cacheData.h"
#include "platform/store/UserDefaults.h"
#include "platform/ui/TableView.h"
#include "tests/support/PdfFixture.h"
#include "tests/support/TempDir.h"
#include "tests/support/ui/AnsweringPanels.h"
#include "tests/support/ui/RecordingWorkspace.h"
#include "tests/support/ui/Windows.h"

#include <QAction>
#include <QPushButton>
#include <gtest/gtest.h>

#include <string>

namespace quillon::test {

/// The program's window as a person has it, but that panels answer by themselves and nothing is opened in other
/// programs.
class MainWindowTest : public testing::Test {
protected:
    MainWindowTest();

    [[nodiscard]] QUrl urlOf(const std::string& path) const {
        return QUrl::fromLocalFile(QString::fromStdString(path));
    }
    /// Writes `name`.pdf with `pages` pages that are marked with the name and a number.
    [[nodiscard]] QUrl pdf(const std::string& name, int pages = 1) const;
    [[nodiscard]] QUrl target() const { return urlOf(dir_.file("out.pdf")); }

    /// Chooses the menu and toolbar command of this object name, which must be enabled, as a click does.
    void choose(const char* action);
    [[nodiscard]] QAction& action(const char* name) { return find_<QAction>(name); }

    /// Adds files by the command and its panel.
    void add(const QList<QUrl>& urls);
    /// Adds files with one page each, by their names.
    void addPdfs(const QStringList& names);
    void select(int row);
    [[nodiscard]] QStringList names();
    [[nodiscard]] cacheData& entry(int row) { return *list().cache()[static_cast<std::size_t>(row)]; }
    [[nodiscard]] TableViewDataSource& list() { return controller_.tableViewDataSource(); }
    [[nodiscard]] TableView& table() { return find_<TableView>("tableView"); }

    /// The sheet that was loaded from the interface file of this name, shown or not; null when there is none.
    [[nodiscard]] static SheetDialog* sheet(const char* name);
    [[nodiscard]] static SheetDialog* progressSheet() { return sheet("ProgressIndicator"); }
    /// Whether a merge was started and its sheet says that it has ended.
    [[nodiscard]] bool isFinished();
    /// Merges the list into the target by the command and its panel, and waits for the end.
    void merge();

    TempDir dir_;
    AnsweringPanels panels_;
    RecordingWorkspace workspace_;
    UserDefaults defaults_{QString::fromStdString(dir_.file("Quillon.conf"))};
    MainWindowController controller_{panels_, workspace_, defaults_};

private:
    template <typename Control>
    [[nodiscard]] Control& find_(const char* name) {
        auto* control = controller_.window().findChild<Control*>(QString::fromLatin1(name));
        if (control == nullptr) qFatal("no control %s", name);
        return *control;
    }
};

}  // namespace quillon::test
