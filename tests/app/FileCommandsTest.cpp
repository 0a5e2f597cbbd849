#include "tests/app/MainWindowTest.h"

#include <QDir>
#include <QElapsedTimer>
#include <QScrollBar>
#include <QTest>

using namespace quillon;

namespace {

using FileCommands = test::MainWindowTest;

QStringList texts(std::initializer_list<const char*> names) {
    QStringList result;
    for (const char* name : names) result.append(QString::fromLatin1(name));
    return result;
}

TEST_F(FileCommands, AddFileOffersTheEightTypes) {
    choose("actionAddFile");
    ASSERT_EQ(panels_.openPanels.size(), 1U);
    const OpenPanel& panel = panels_.openPanels.front();
    EXPECT_TRUE(panel.canChooseFiles);
    EXPECT_FALSE(panel.canChooseDirectories);
    EXPECT_TRUE(panel.allowsMultipleSelection);
    EXPECT_EQ(panel.allowedFileTypes, texts({"pdf", "tiff", "tif", "gif", "png", "bmp", "jpg", "jpeg"}));
}

TEST_F(FileCommands, AddFolderChoosesOneFolder) {
    choose("actionAddFolder");
    ASSERT_EQ(panels_.openPanels.size(), 1U);
    const OpenPanel& panel = panels_.openPanels.front();
    EXPECT_FALSE(panel.canChooseFiles);
    EXPECT_TRUE(panel.canChooseDirectories);
    EXPECT_FALSE(panel.allowsMultipleSelection);
    EXPECT_TRUE(panel.allowedFileTypes.isEmpty());
}

TEST_F(FileCommands, ChosenFilesAreAddedInTheOrderOfThePanel) {
    addPdfs(texts({"b", "a"}));
    EXPECT_EQ(names(), texts({"b", "a"}));
}

TEST_F(FileCommands, AChosenFolderIsAdded) {
    ASSERT_TRUE(QDir(QString::fromStdString(dir_.path().string())).mkdir(QStringLiteral("folder")));
    (void)pdf("folder/a");
    panels_.answerNext({urlOf(dir_.file("folder"))});
    choose("actionAddFolder");
    EXPECT_EQ(names(), texts({"a"}));
}

TEST_F(FileCommands, ACancelledPanelChangesNothing) {
    choose("actionAddFile");
    choose("actionAddFolder");
    EXPECT_EQ(table().numberOfRows(), 0);
}

TEST_F(FileCommands, RemoveFileWithoutASelectionDoesNothing) {
    addPdfs(texts({"a", "b"}));
    choose("actionRemoveFile");
    EXPECT_EQ(names(), texts({"a", "b"}));
}

TEST_F(FileCommands, RemoveFileRemovesTheSelectedRow) {
    addPdfs(texts({"a", "b", "c"}));
    select(1);
    choose("actionRemoveFile");
    EXPECT_EQ(names(), texts({"a", "c"}));
}

TEST_F(FileCommands, TheDeleteKeyRemovesRowAfterRow) {
    addPdfs(texts({"a", "b", "c"}));
    select(2);
    QTest::keyClick(&table(), Qt::Key_Delete);
    EXPECT_EQ(names(), texts({"a", "b"}));
    EXPECT_TRUE(table().hasFocus());
    QTest::keyClick(&table(), Qt::Key_Delete);
    EXPECT_EQ(names(), texts({"a"}));
}

TEST_F(FileCommands, RemoveAllEmptiesTheListWithoutAsking) {
    addPdfs(texts({"a", "b"}));
    choose("actionRemoveAll");
    EXPECT_TRUE(names().isEmpty());
    EXPECT_EQ(test::visibleAlert(), nullptr);
}

TEST_F(FileCommands, AMovedRowIsTheOnlyOneSelectedAtItsNewPlace) {
    addPdfs(texts({"a", "b", "c"}));
    select(2);
    choose("actionMoveUp");
    EXPECT_EQ(names(), texts({"a", "c", "b"}));
    EXPECT_EQ(table().selectedRow(), 1);
    EXPECT_EQ(table().numberOfSelectedRows(), 1);
    choose("actionMoveUp");
    EXPECT_EQ(names(), texts({"c", "a", "b"}));
    EXPECT_EQ(table().selectedRow(), 0);
    choose("actionMoveDown");
    EXPECT_EQ(names(), texts({"a", "c", "b"}));
    EXPECT_EQ(table().selectedRow(), 1);
}

TEST_F(FileCommands, HelpOpensTheProgramsOwnPage) {
    choose("actionHelp");
    ASSERT_EQ(workspace_.urls.size(), 1);
    EXPECT_TRUE(workspace_.urls.constFirst().isLocalFile());
    EXPECT_TRUE(workspace_.urls.constFirst().path().endsWith(QStringLiteral("/share/quillon/help/index.html")));
}

TEST_F(FileCommands, EveryCommandHasItsKeys) {
    const std::vector<std::pair<const char*, const char*>> keys{
        {"actionAddFile", "Ctrl+O"},     {"actionAddFolder", "Ctrl+Shift+O"},
        {"actionRemoveFile", "Del"},     {"actionRemoveAll", "Ctrl+Shift+Del"},
        {"actionMergeMethod", "Ctrl+M"}, {"actionDecrypt", "Ctrl+D"},
        {"actionMoveUp", "Ctrl+Up"},     {"actionMoveDown", "Ctrl+Down"},
        {"actionMerge", "Ctrl+Return"},  {"actionHelp", "F1"},
        {"actionQuit", "Ctrl+Q"},        {"actionClose", "Ctrl+W"},
        {"actionSettings", "Ctrl+,"}};
    for (const auto& [object, shortcut] : keys) {
        EXPECT_EQ(action(object).shortcut(), QKeySequence(QString::fromLatin1(shortcut))) << object;
    }
}

TEST_F(FileCommands, AListOfFiveThousandFilesScrollsToItsEndWithinASecond) {
    QList<QUrl> urls;
    for (int i = 0; i < 5000; ++i) urls.append(pdf(std::to_string(i)));
    add(urls);
    QElapsedTimer timer;
    timer.start();
    table().verticalScrollBar()->setValue(table().verticalScrollBar()->maximum());
    ASSERT_TRUE(test::waitFor([this] { return entry(4999).pageCount() == 1; }));
    EXPECT_LT(timer.elapsed(), 1000);
    EXPECT_EQ(entry(2500).pageCount(), -1);
}

}  // namespace
