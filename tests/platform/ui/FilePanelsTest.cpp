#include "platform/ui/FilePanels.h"
#include "tests/support/TempDir.h"
#include "tests/support/ui/Windows.h"

#include <QFileDialog>
#include <QLineEdit>
#include <QPushButton>
#include <QTimer>
#include <gtest/gtest.h>

#include <optional>

using namespace quillon;

namespace {

class Panel : public testing::Test {
protected:
    Panel() { window_.show(); }

    [[nodiscard]] QString path(const char* name) const { return QString::fromStdString(dir_.file(name)); }
    [[nodiscard]] QUrl url(const char* name) const { return QUrl::fromLocalFile(path(name)); }

    template <typename Dialog>
    [[nodiscard]] static Dialog* visible(const char* name) {
        const QWidgetList windows = QApplication::topLevelWidgets();
        for (QWidget* window : windows) {
            auto* dialog = qobject_cast<Dialog*>(window);
            if (dialog != nullptr && dialog->isVisible() && dialog->objectName() == QLatin1String(name)) return dialog;
        }
        return nullptr;
    }

    /// Types the text into the file dialog that is on the screen and presses Return.
    static void answer(const char* dialogName, const QString& text) {
        auto* dialog = visible<QFileDialog>(dialogName);
        ASSERT_NE(dialog, nullptr);
        test::find<QLineEdit>(*dialog, "fileNameEdit").setText(text);
        QMetaObject::invokeMethod(dialog, "accept", Qt::DirectConnection);
    }

    void save() {
        panels_.beginSavePanel({QStringLiteral("pdf")}, window_, [this](int result, const QUrl& chosen) {
            result_ = result;
            url_ = chosen;
        });
    }

    test::TempDir dir_;
    QWidget window_;
    FilePanels panels_;
    std::optional<int> result_;
    QUrl url_;
};

TEST_F(Panel, ASavePanelIsASheetThatNobodyWaitsFor) {
    save();
    auto* dialog = visible<QFileDialog>("savePanel");
    ASSERT_NE(dialog, nullptr);
    EXPECT_EQ(dialog->windowModality(), Qt::WindowModal);
    EXPECT_FALSE(result_.has_value());
    dialog->reject();
    EXPECT_EQ(result_, 0);
}

TEST_F(Panel, ASavePanelAppendsPdf) {
    save();
    answer("savePanel", path("merged"));
    EXPECT_EQ(result_, 1);
    EXPECT_EQ(url_, url("merged.pdf"));
}

TEST_F(Panel, ASavePanelKeepsAnEndingThatIsRight) {
    save();
    answer("savePanel", path("merged.PDF"));
    EXPECT_EQ(url_, url("merged.PDF"));
}

TEST_F(Panel, ANameWithADotIsNoEnding) {
    save();
    answer("savePanel", path("scan 2026.01"));
    EXPECT_EQ(url_, url("scan 2026.01.pdf"));
}

TEST_F(Panel, ReplacingTheFileOfTheNameWithItsEndingIsAskedFor) {
    (void)dir_.write("scan 2026.01.pdf", "old");
    save();
    answer("savePanel", path("scan 2026.01"));
    EXPECT_FALSE(result_.has_value());
    auto* question = visible<QMessageBox>("replaceQuestion");
    ASSERT_NE(question, nullptr);
    EXPECT_EQ(question->text(), QStringLiteral("\"scan 2026.01.pdf\" already exists. Do you want to replace it?"));
    question->button(QMessageBox::Cancel)->click();
    EXPECT_FALSE(result_.has_value());
    // The panel is back for another name.
    answer("savePanel", path("scan 2026.01"));
    question = visible<QMessageBox>("replaceQuestion");
    ASSERT_NE(question, nullptr);
    test::find<QPushButton>(*question, "replaceButton").click();
    EXPECT_EQ(result_, 1);
    EXPECT_EQ(url_, url("scan 2026.01.pdf"));
}

TEST_F(Panel, ReplacingAFileThatWasChosenIsAskedForByTheDialog) {
    (void)dir_.write("merged.pdf", "old");
    save();
    bool asked = false;
    QTimer::singleShot(0, qApp, [&asked] {
        auto* question = qobject_cast<QMessageBox*>(QApplication::activeModalWidget());
        ASSERT_NE(question, nullptr);
        asked = true;
        question->button(QMessageBox::Yes)->click();
    });
    answer("savePanel", path("merged"));
    EXPECT_TRUE(asked);
    EXPECT_EQ(url_, url("merged.pdf"));
}

TEST_F(Panel, AnOpenPanelGivesTheFiles) {
    (void)dir_.write("a.pdf", "a");
    (void)dir_.write("b.pdf", "b");
    OpenPanel panel;
    panel.allowsMultipleSelection = true;
    panel.allowedFileTypes = QStringList{QStringLiteral("pdf"), QStringLiteral("png")};
    QList<QUrl> urls;
    panels_.beginOpenPanel(panel, window_, [&](int result, const QList<QUrl>& chosen) {
        result_ = result;
        urls = chosen;
    });
    answer("openPanel", QStringLiteral("\"%1\" \"%2\"").arg(path("b.pdf"), path("a.pdf")));
    EXPECT_EQ(result_, 1);
    EXPECT_EQ(urls, (QList<QUrl>{url("b.pdf"), url("a.pdf")}));
}

TEST_F(Panel, AnOpenPanelForFoldersShowsOnlyThem) {
    OpenPanel panel;
    panel.canChooseFiles = false;
    panel.canChooseDirectories = true;
    panels_.beginOpenPanel(panel, window_, [this](int result, const QList<QUrl>& chosen) {
        result_ = result;
        EXPECT_TRUE(chosen.isEmpty());
    });
    auto* dialog = visible<QFileDialog>("openPanel");
    ASSERT_NE(dialog, nullptr);
    EXPECT_EQ(dialog->fileMode(), QFileDialog::Directory);
    EXPECT_TRUE(dialog->testOption(QFileDialog::ShowDirsOnly));
    dialog->reject();
    EXPECT_EQ(result_, 0);
}

TEST_F(Panel, AModalOpenPanelReturnsTheFile) {
    (void)dir_.write("a.pdf", "a");
    QTimer::singleShot(0, qApp, [this] { answer("openPanel", path("a.pdf")); });
    EXPECT_EQ(panels_.runOpenPanel(OpenPanel(), &window_), QList<QUrl>{url("a.pdf")});
}

TEST_F(Panel, AModalOpenPanelThatIsCancelledReturnsNothing) {
    QTimer::singleShot(0, qApp, [] { visible<QFileDialog>("openPanel")->reject(); });
    EXPECT_TRUE(panels_.runOpenPanel(OpenPanel(), &window_).isEmpty());
}

}  // namespace
