#include "filelist/TableViewDataSource.h"
#include "platform/pdf/PDFDocument.h"
#include "tests/filelist/FileListTest.h"

#include <QDir>
#include <QElapsedTimer>
#include <QTest>

#include <sys/stat.h>

using namespace quillon;

namespace {

using FileList = test::FileListTest;

TEST_F(FileList, BeginsEmpty) {
    EXPECT_EQ(list_.numberOfRowsInTableView(), 0);
    EXPECT_EQ(list_.cachePDFDocument(), nullptr);
    EXPECT_TRUE(list_.isAllDecrypt());
}

TEST_F(FileList, FilesAreTakenInTheGivenOrder) {
    list_.addFiles({pdf("b.pdf"), picture("c.png"), pdf("a.pdf")});
    EXPECT_EQ(names(), (QStringList{QStringLiteral("b.pdf"), QStringLiteral("c.png"), QStringLiteral("a.pdf")}));
    EXPECT_EQ(table_.numberOfRows(), 3);
    EXPECT_FALSE(list_.isImage(0));
    EXPECT_TRUE(list_.isImage(1));
}

TEST_F(FileList, ANewEntryHasTheDefaults) {
    list_.addFiles({pdf("a.pdf")});
    EXPECT_EQ(entry(0).needPassword(), -1);
    EXPECT_EQ(entry(0).fileSize(), -1);
    EXPECT_EQ(entry(0).pageCount(), -1);
    EXPECT_EQ(entry(0).mergeMethod(), MergeMethodWhole);
    EXPECT_TRUE(entry(0).isDecrypted());
    EXPECT_TRUE(entry(0).password().isNull());
}

TEST_F(FileList, AnImageThatIsCalledPdfIsAddedAsAnImage) {
    list_.addFiles({picture("scan.pdf")});
    ASSERT_EQ(list_.numberOfRowsInTableView(), 1);
    EXPECT_TRUE(list_.isImage(0));
}

TEST_F(FileList, APdfThatIsCalledPngIsAddedAsAPdf) {
    list_.addFiles({pdf("a.png")});
    ASSERT_EQ(list_.numberOfRowsInTableView(), 1);
    EXPECT_FALSE(list_.isImage(0));
}

TEST_F(FileList, WhatIsNeitherIsSkippedSilently) {
    list_.addFiles({write("text.pdf", "hello"), urlOf(dir_.file("missing.pdf")), pdf("a.pdf"), write("empty.pdf", "")});
    EXPECT_EQ(names(), QStringList{QStringLiteral("a.pdf")});
}

TEST_F(FileList, TheSameFileTwiceGivesTwoRows) {
    const QUrl file = pdf("a.pdf");
    list_.addFiles({file});
    list_.addFiles({file});
    EXPECT_EQ(list_.numberOfRowsInTableView(), 2);
}

TEST_F(FileList, AFolderGivesItsFilesOneLevelDeep) {
    ASSERT_TRUE(QDir(QString::fromStdString(dir_.path().string())).mkpath(QStringLiteral("folder/inner")));
    (void)pdf("folder/a.pdf");
    (void)pdf("folder/inner/deep.pdf");
    (void)write("folder/note.txt", "hello");
    list_.addDirectory(urlOf(dir_.file("folder")));
    EXPECT_EQ(names(), QStringList{QStringLiteral("a.pdf")});
}

TEST_F(FileList, AFolderGivesItsHiddenFilesToo) {
    ASSERT_TRUE(QDir(QString::fromStdString(dir_.path().string())).mkpath(QStringLiteral("folder")));
    (void)pdf("folder/.hidden.pdf");
    list_.addDirectory(urlOf(dir_.file("folder")));
    EXPECT_EQ(names(), QStringList{QStringLiteral(".hidden.pdf")});
}

TEST_F(FileList, AFolderWithAFifoIsNotWaitedFor) {
    ASSERT_TRUE(QDir(QString::fromStdString(dir_.path().string())).mkpath(QStringLiteral("folder")));
    ASSERT_EQ(mkfifo(dir_.file("folder/fifo.pdf").c_str(), 0600), 0);
    (void)pdf("folder/a.pdf");
    list_.addDirectory(urlOf(dir_.file("folder")));
    EXPECT_EQ(names(), QStringList{QStringLiteral("a.pdf")});
}

TEST_F(FileList, AFolderThatCannotBeListedAddsNothing) {
    int changes = 0;
    const QObject listener;
    QObject::connect(&table_, &TableView::changed, &listener, [&changes] { ++changes; });
    list_.addDirectory(urlOf(dir_.file("missing")));
    list_.addDirectory(pdf("file.pdf"));
    EXPECT_EQ(list_.numberOfRowsInTableView(), 0);
    EXPECT_EQ(changes, 0);
}

TEST_F(FileList, FiveThousandFilesAreAddedInUnderThreeSeconds) {
    QList<QUrl> urls;
    const std::string bytes = test::PdfFixture("P", 1).bytes();
    for (int i = 0; i < 5000; ++i) urls.append(write(std::to_string(i) + ".pdf", bytes));
    QElapsedTimer timer;
    timer.start();
    list_.addFiles(urls);
    EXPECT_LT(timer.elapsed(), 3000);
    EXPECT_EQ(table_.numberOfRows(), 5000);
    // None of them was measured: none is on the screen.
    for (int row = 0; row < 5000; ++row) ASSERT_EQ(entry(row).pageCount(), -1);
}

TEST_F(FileList, AFolderOfFiftyThousandEntriesDoesNotHang) {
    const auto timeFor = [this](const std::string& name, int entries) {
        const QString folder = QString::fromStdString(dir_.file(name));
        QDir().mkpath(folder);
        for (int i = 0; i < entries; ++i) (void)dir_.write(name + '/' + std::to_string(i), "");
        (void)pdf(name + "/a.pdf");
        QElapsedTimer timer;
        timer.start();
        list_.addDirectory(QUrl::fromLocalFile(folder));
        return timer.elapsed() + 1;
    };
    const auto few = timeFor("few", 5'000);
    // Were each looked up among the others, it would take a hundred times as long.
    EXPECT_LT(timeFor("many", 50'000), 50 * few);
    EXPECT_EQ(names(), (QStringList{QStringLiteral("a.pdf"), QStringLiteral("a.pdf")}));
}

// Dropped files.

TEST_F(FileList, ADropOfAPdfOrAPictureIsTaken) {
    EXPECT_EQ(list_.tableViewValidateDrop({pdf("a.pdf")}, 0, DropOperation::On), DragOperation::Copy);
    EXPECT_EQ(list_.tableViewValidateDrop({picture("a.png")}, 0, DropOperation::On), DragOperation::Copy);
}

TEST_F(FileList, ADropOfAnythingElseIsRefused) {
    const QUrl text = write("text.pdf", "hello");
    EXPECT_EQ(list_.tableViewValidateDrop({text}, 0, DropOperation::On), DragOperation::None);
    EXPECT_EQ(list_.tableViewValidateDrop({urlOf(dir_.path().string())}, 0, DropOperation::On), DragOperation::None);
    EXPECT_EQ(list_.tableViewValidateDrop({QUrl(QStringLiteral("https://example.org/a.pdf"))}, 0, DropOperation::On),
              DragOperation::None);
}

TEST_F(FileList, OnlyTheFirstOfTheDraggedFilesIsLookedAt) {
    const QUrl text = write("text.txt", "hello");
    EXPECT_EQ(list_.tableViewValidateDrop({pdf("a.pdf"), text}, 0, DropOperation::On), DragOperation::Copy);
    EXPECT_EQ(list_.tableViewValidateDrop({text, pdf("a.pdf")}, 0, DropOperation::On), DragOperation::None);
}

TEST_F(FileList, ThreeDraggedFilesAddTheFirstAtTheEnd) {
    list_.addFiles({pdf("1.pdf"), pdf("2.pdf")});
    EXPECT_TRUE(list_.tableViewAcceptDrop({pdf("a.pdf"), pdf("b.pdf"), pdf("c.pdf")}, 0, DropOperation::Above));
    EXPECT_EQ(names(), (QStringList{QStringLiteral("1.pdf"), QStringLiteral("2.pdf"), QStringLiteral("a.pdf")}));
}

TEST_F(FileList, ADroppedFileThatDoesNotOpenAsAPdfIsAnImage) {
    list_.addFile(picture("a.png"));
    list_.addFile(pdf("b.pdf"));
    EXPECT_TRUE(list_.isImage(0));
    EXPECT_FALSE(list_.isImage(1));
}

// Removing and moving.

TEST_F(FileList, OneRowIsRemoved) {
    list_.addFiles({pdf("a.pdf"), pdf("b.pdf"), pdf("c.pdf")});
    list_.deleteRow(1);
    EXPECT_EQ(names(), (QStringList{QStringLiteral("a.pdf"), QStringLiteral("c.pdf")}));
    EXPECT_EQ(table_.numberOfRows(), 2);
}

TEST_F(FileList, RemovingOutsideTheListDoesNothing) {
    list_.addFiles({pdf("a.pdf")});
    list_.deleteRow(-1);
    list_.deleteRow(1);
    EXPECT_EQ(list_.numberOfRowsInTableView(), 1);
}

TEST_F(FileList, AllRowsAreRemoved) {
    list_.addFiles({pdf("a.pdf"), pdf("b.pdf")});
    list_.deleteAll();
    EXPECT_EQ(list_.numberOfRowsInTableView(), 0);
    EXPECT_EQ(table_.numberOfRows(), 0);
}

TEST_F(FileList, ExchangedEntriesSwapTheirContentsAndStayWhereTheyAre) {
    list_.addFiles({pdf("a.pdf"), picture("b.png")});
    const auto first = list_.cache()[0];
    list_.updateMethodColumn(0, MergeMethodPart, QStringLiteral("1-2"));
    list_.swapRow(0, 1);
    EXPECT_EQ(list_.cache()[0], first);
    EXPECT_EQ(names(), (QStringList{QStringLiteral("b.png"), QStringLiteral("a.pdf")}));
    EXPECT_TRUE(list_.isImage(0));
    EXPECT_EQ(entry(1).value(), QStringLiteral("1-2"));
    EXPECT_EQ(entry(1).mergeMethod(), MergeMethodPart);
}

TEST_F(FileList, TheTableIsEnabledAgainAfterEveryChangeOfLength) {
    list_.addFiles({pdf("a.pdf")});
    EXPECT_TRUE(table_.isEnabled());
    list_.addFile(pdf("b.pdf"));
    EXPECT_TRUE(table_.isEnabled());
    list_.deleteRow(0);
    EXPECT_TRUE(table_.isEnabled());
    list_.deleteAll();
    EXPECT_TRUE(table_.isEnabled());
}

TEST_F(FileList, AMethodIsRecorded) {
    list_.addFiles({pdf("a.pdf")});
    list_.updateMethodColumn(0, MergeMethodCross, QStringLiteral("2"));
    EXPECT_EQ(list_.getDataOfSelectedRow(0)->mergeMethod(), MergeMethodCross);
    EXPECT_EQ(list_.getDataOfSelectedRow(0)->value(), QStringLiteral("2"));
}

// Opening by a double click.

TEST_F(FileList, ADoubleClickOpensTheFileOfItsRow) {
    list_.addFiles({pdf("a.pdf"), pdf("b.pdf")});
    table_.resize(300, 200);
    table_.show();
    const QPoint point = table_.rectOfRow(1).center();
    QTest::mouseClick(table_.viewport(), Qt::LeftButton, {}, point);
    QTest::mouseDClick(table_.viewport(), Qt::LeftButton, {}, point);
    EXPECT_EQ(workspace_.files, QStringList{QString::fromStdString(dir_.file("b.pdf"))});
}

TEST_F(FileList, ADoubleClickBesideTheRowsOpensNothing) {
    list_.addFiles({pdf("a.pdf")});
    table_.resize(300, 200);
    table_.show();
    QTest::mouseDClick(table_.viewport(), Qt::LeftButton, {}, QPoint(10, 150));
    EXPECT_EQ(table_.clickedRow(), -1);
    EXPECT_TRUE(workspace_.files.isEmpty());
}

}  // namespace
