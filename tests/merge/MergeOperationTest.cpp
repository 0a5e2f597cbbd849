// The job as a whole: its steps, whole documents, pictures, cancellation and writing.

#include "decoration/MyPdfDocument.h"
#include "merge/MergeOperation.h"
#include "platform/jobs/MainThread.h"
#include "platform/jobs/OperationQueue.h"
#include "tests/merge/MergeTest.h"
#include "tests/support/ExternalReader.h"

#include <QFile>

#include <thread>

namespace quillon::test {
namespace {

using Calls = std::vector<std::string>;

class MergeOperationTest : public MergeTest {
protected:
    /// What was registered, without the resolve calls behind it.
    [[nodiscard]] QString registered() const { return settings_.calls.mid(0, 5).join(QLatin1Char(' ')); }

    static constexpr auto nothingRegistered = "title author subject keywords creator";
};

TEST_F(MergeOperationTest, StartsWithAnEmptyStateAndWhatItWasGiven) {
    EXPECT_EQ(job().targetURL(), urlOf(target()));
    EXPECT_EQ(job().outlineRoot(), nullptr);
    EXPECT_FALSE(job().outputAttr().has_value());
    EXPECT_FALSE(job().written());
    EXPECT_TRUE(job().warnings().empty());
}

TEST_F(MergeOperationTest, PropertiesCanBeSet) {
    job().setTargetURL(urlOf("/elsewhere.pdf"));
    EXPECT_EQ(job().targetURL(), urlOf("/elsewhere.pdf"));
    job().setOutputAttr(QVariantMap{{QStringLiteral("key"), 1}});
    EXPECT_EQ(job().outputAttr().value().value(QStringLiteral("key")).toInt(), 1);
    job().setOutputAttr(std::nullopt);
    EXPECT_FALSE(job().outputAttr().has_value());
}

TEST_F(MergeOperationTest, JoinsWholeDocumentsInTheirOrder) {
    add("A", 3);
    add("B", 1);
    add("C", 2);
    EXPECT_EQ(merged(), "A1 A2 A3 B1 C1 C2");
    EXPECT_TRUE(job().written());
}

TEST_F(MergeOperationTest, TheTargetMayBeSetLater) {
    add("A", 1);
    job().setTargetURL(urlOf(dir_.file("other.pdf")));
    run();
    EXPECT_EQ(pages(), "no file");
    EXPECT_EQ(pageMarks(dir_.file("other.pdf")), Calls{"A1"});
}

TEST_F(MergeOperationTest, AFileMayStandInTheListMoreThanOnce) {
    add("A", 2);
    list_.push_back(list_[0]);
    list_.push_back(std::make_shared<cacheData>(list_[0]->url()));
    EXPECT_EQ(merged(), "A1 A2 A1 A2 A1 A2");
}

TEST_F(MergeOperationTest, AnEmptyListWritesNothingButTellsItsOwner) {
    EXPECT_EQ(merged(), "no file");
    EXPECT_FALSE(job().written());
    EXPECT_EQ(owner_.calls, (Calls{"start", "stop"}));
    EXPECT_EQ(registered(), QLatin1String(nothingRegistered));
    EXPECT_TRUE(job().outputAttr().has_value());
}

TEST_F(MergeOperationTest, TellsItsOwnerOnTheMainThread) {
    add("A", 1);
    run();
    EXPECT_EQ(owner_.calls, (Calls{"start", "stop"}));
}

TEST_F(MergeOperationTest, WaitsForTheOwnersStart) {
    add("A", 1);
    bool startedAlone = false;
    owner_.onStart = [this, &startedAlone] { startedAlone = settings_.calls.isEmpty() && pages() == "no file"; };
    run();
    EXPECT_TRUE(startedAlone);
}

TEST_F(MergeOperationTest, TheFileStandsWhenTheOwnerIsToldOfTheEnd) {
    add("A", 1);
    std::string then;
    owner_.onStop = [this, &then] { then = pages(); };
    run();
    EXPECT_EQ(then, "A1");
}

TEST_F(MergeOperationTest, TheOwnerIsToldOfTheEndEvenIfNobodyHoldsTheJobAnyMore) {
    add("A", 1);
    {
        OperationQueue queue;
        queue.addOperation(std::make_shared<MergeOperation>(list_, urlOf(target()), settings_, owner_));
        queue.waitUntilAllOperationsAreFinished();
    }
    EXPECT_EQ(owner_.calls, (Calls{"start", "stop"}));
}

TEST_F(MergeOperationTest, RunsOnTheMainThreadToo) {
    add("A", 1);
    job().main();
    EXPECT_EQ(pages(), "A1");
    EXPECT_EQ(owner_.calls, Calls{"start"});
    // The end is posted, not called.
    MainThread::waitUntil([] { return true; });
    EXPECT_EQ(owner_.calls, (Calls{"start", "stop"}));
}

TEST_F(MergeOperationTest, RegistersTheInformationOfTheFirstInputInOrderBeforeItResolves) {
    addFile(write("A", PdfFixture("A", 1)
                           .info("Creator", "c")
                           .info("Keywords", "k l")
                           .info("Subject", "s")
                           .info("Author", "a")
                           .info("Title", "t")));
    addFile(write("B", PdfFixture("B", 1).info("Title", "other")));
    run();
    EXPECT_EQ(settings_.calls.join(QLatin1Char(' ')),
              QStringLiteral("title=t author=a subject=s keywords=[k l] creator=c "
                             "resolveKeywords resolveSubject resolveAuthor resolveTitle resolveCreator"));
}

TEST_F(MergeOperationTest, RegistersAMissingAttributeAsAbsent) {
    addFile(write("A", PdfFixture("A", 1).info("Author", "a")));
    run();
    EXPECT_EQ(registered(), QStringLiteral("title author=a subject keywords creator"));
}

TEST_F(MergeOperationTest, RegistersNothingOfARunThatStartsWithAPart) {
    addFile(write("A", PdfFixture("A", 1).info("Title", "t")), MergeMethodPart, QStringLiteral("1"));
    run();
    EXPECT_EQ(registered(), QLatin1String(nothingRegistered));
}

TEST_F(MergeOperationTest, RegistersNothingOfARunThatStartsWithACross) {
    addFile(write("A", PdfFixture("A", 1).info("Title", "t")), MergeMethodCross, QStringLiteral("1"));
    run();
    EXPECT_EQ(registered(), QLatin1String(nothingRegistered));
}

TEST_F(MergeOperationTest, RegistersNothingOfARunThatStartsWithAPicture) {
    addPicture();
    addFile(write("A", PdfFixture("A", 1).info("Title", "t")));
    run();
    EXPECT_EQ(registered(), QLatin1String(nothingRegistered));
}

TEST_F(MergeOperationTest, RegistersTheInformationOfARepeatThatComesFirst) {
    addFile(write("A", PdfFixture("A", 1).info("Title", "t")), MergeMethodRepeat);
    run();
    EXPECT_EQ(settings_.calls.value(0), QStringLiteral("title=t"));
}

TEST_F(MergeOperationTest, ARepeatThatComesFirstIsWhole) {
    add("R", 2, MergeMethodRepeat);
    add("A", 1);
    EXPECT_EQ(merged(), "R1 R2 A1");
}

TEST_F(MergeOperationTest, ARepeatBehindAWholeIsMergedOnce) {
    add("A", 2);
    add("R", 1, MergeMethodRepeat);
    add("B", 1);
    EXPECT_EQ(merged(), "A1 A2 R1 B1");
}

TEST_F(MergeOperationTest, ARepeatBehindAPartIsMergedOnce) {
    add("A", 2, MergeMethodPart, QStringLiteral("2"));
    add("R", 1, MergeMethodRepeat);
    EXPECT_EQ(merged(), "A2 R1");
}

TEST_F(MergeOperationTest, AFirstInputThatDoesNotOpenLeavesItsPlaceToTheNext) {
    addMissing();
    addFile(write("B", PdfFixture("B", 2).info("Title", "t")));
    EXPECT_EQ(merged(), "B1 B2");
    EXPECT_EQ(settings_.calls.value(0), QStringLiteral("title=t"));
}

TEST_F(MergeOperationTest, AnInputThatDoesNotOpenContributesNothing) {
    add("A", 1);
    addMissing();
    addFile(urlOf(dir_.path().string()));
    addFile(urlOf(dir_.write("text.pdf", "no PDF at all")));
    addFile(urlOf(dir_.write("empty.pdf", "")));
    add("B", 1);
    EXPECT_EQ(merged(), "A1 B1");
}

TEST_F(MergeOperationTest, OnlyInputsThatDoNotOpenWriteNothing) {
    addMissing();
    addMissing(MergeMethodRepeat);
    EXPECT_EQ(merged(), "no file");
    EXPECT_FALSE(job().written());
    EXPECT_EQ(owner_.calls, (Calls{"start", "stop"}));
}

TEST_F(MergeOperationTest, WhatStoodAtTheTargetStaysWhenThereIsNothingToWrite) {
    (void)dir_.write("out.pdf", "precious");
    addMissing();
    run();
    EXPECT_EQ(QFile(QString::fromStdString(target())).size(), 8);
}

TEST_F(MergeOperationTest, ATargetThatCannotBeWrittenIsSilent) {
    add("A", 1);
    job().setTargetURL(urlOf(dir_.file("missing folder/out.pdf")));
    run();
    EXPECT_FALSE(job().written());
    EXPECT_EQ(owner_.calls, (Calls{"start", "stop"}));
}

TEST_F(MergeOperationTest, TheTargetMayBeAnInput) {
    add("A", 2);
    add("B", 1);
    job().setTargetURL(list_[1]->url());
    run();
    EXPECT_TRUE(job().written());
    EXPECT_EQ(pageMarks(dir_.file("B.pdf")), (Calls{"A1", "A2", "B1"}));
}

TEST_F(MergeOperationTest, APictureIsOnePageOfItsSizeAtTheEnd) {
    add("A", 1);
    addPicture();
    add("B", 1);
    EXPECT_EQ(merged(), "A1 - B1");
    EXPECT_EQ(pageSizes(target()), (Calls{"612x792", "10x10", "612x792"}));
}

TEST_F(MergeOperationTest, APictureMayComeFirst) {
    addPicture();
    add("A", 1);
    EXPECT_EQ(merged(), "- A1");
}

TEST_F(MergeOperationTest, APictureIsOnePageWhateverItsMethod) {
    add("A", 1);
    addPicture(MergeMethodRepeat);
    EXPECT_EQ(merged(), "A1 -");
}

TEST_F(MergeOperationTest, APictureThatCannotBeReadContributesNothing) {
    add("A", 1);
    addFile(urlOf(dir_.write("broken.png", "no picture"))).setIsImage(true);
    addMissing().setIsImage(true);
    EXPECT_EQ(merged(), "A1");
}

TEST_F(MergeOperationTest, AJobThatWasCancelledBeforeItStartsDoesNothingAtAll) {
    add("A", 1);
    job().cancel();
    EXPECT_EQ(merged(), "no file");
    EXPECT_TRUE(owner_.calls.empty());
    EXPECT_TRUE(settings_.calls.isEmpty());
    EXPECT_FALSE(job().outputAttr().has_value());
}

TEST_F(MergeOperationTest, AStopBeforeTheFirstEntryStillFinishes) {
    add("A", 1);
    owner_.onStart = [this] { job().cancel(); };
    EXPECT_EQ(merged(), "no file");
    EXPECT_EQ(owner_.calls, (Calls{"start", "stop"}));
    EXPECT_EQ(registered(), QLatin1String(nothingRegistered));
}

TEST_F(MergeOperationTest, AStoppedJobWritesWhatItHasCollected) {
    // Stops when the second entry asks for padding.
    struct Stopping : PlainSettings {
        MergeOperation* job = nullptr;
        [[nodiscard]] bool isAddPage() const override {
            job->cancel();
            return false;
        }
    } settings;
    add("A", 2);
    add("B", 2);
    add("C", 2);
    MergeOperation stopped(list_, urlOf(target()), settings, owner_);
    settings.job = &stopped;
    runHere(stopped);
    EXPECT_EQ(pages(), "A1 A2");
    EXPECT_TRUE(stopped.written());
    EXPECT_EQ(settings.calls.size(), 10);
    EXPECT_EQ(owner_.calls, (Calls{"start", "stop"}));
}

TEST_F(MergeOperationTest, AStopDuringALargeDocumentKeepsThePagesTakenSoFar) {
    constexpr int count = 3000;
    add("A", 1);
    const auto url = write("B", PdfFixture("B", count));
    for (int i = 0; i < 20; ++i) addFile(url);
    std::thread stopper;
    owner_.onStart = [this, &stopper] { stopper = std::thread([this] { job().cancel(); }); };
    run();
    stopper.join();
    // The stop may come before the first entry; after it the pages are those of the list, up to some page.
    if (pages() == "no file") return;
    const auto marks = pageMarks(target());
    ASSERT_LE(marks.size(), 1U + 20U * count);
    EXPECT_EQ(marks[0], "A1");
    for (std::size_t i = 1; i < marks.size(); ++i) {
        ASSERT_EQ(marks[i], "B" + std::to_string((i - 1) % count + 1)) << i;
    }
}

TEST_F(MergeOperationTest, TheOlderPathWritesThePagesOfTheDocument) {
    const auto document = MyPdfDocument::initWithURL(write("A", PdfFixture("A", 3)));
    ASSERT_NE(document, nullptr);
    job().writePDF(document, {});
    EXPECT_EQ(pages(), "A1 A2 A3");
    EXPECT_TRUE(job().written());
}

TEST_F(MergeOperationTest, TheOlderPathOfAnAbsentDocumentWritesNoPages) {
    job().writePDF(nullptr, {});
    EXPECT_EQ(pages(), "no file");
    EXPECT_FALSE(job().written());
}

TEST_F(MergeOperationTest, InsertPdfKeepsTheOrderAtTheIndex) {
    add("A", 2);
    job().handleWhole(*list_[0]);
    job().insertPdf(MyPdfDocument::initWithURL(write("B", PdfFixture("B", 2))), 1);
    job().insertPdf(MyPdfDocument::initWithURL(write("C", PdfFixture("C", 2))), 99);
    job().insertPdf(MyPdfDocument::initWithURL(write("D", PdfFixture("D", 2))), -5);
    job().insertPdf(nullptr, 0);
    list_.clear();
    run();
    EXPECT_EQ(pages(), "D1 D2 A1 B1 B2 A2 C1 C2");
}

TEST_F(MergeOperationTest, AMethodAboveTheLastStopsTheProgram) {
    add("A", 1).setMergeMethod(5);
    EXPECT_DEATH(job().main(), "MergeOperation:777: -\\[MergeOperation main\\]: Assertion `NO' failed");
}

TEST_F(MergeOperationTest, ANegativeMethodStopsTheProgram) {
    add("A", 1).setMergeMethod(-1);
    EXPECT_DEATH(job().main(), "MergeOperation:777: -\\[MergeOperation main\\]: Assertion `NO' failed");
}

TEST_F(MergeOperationTest, AThousandInputsAreMerged) {
    const auto url = write("A", PdfFixture("A", 1));
    for (int i = 0; i < 1000; ++i) addFile(url);
    run();
    EXPECT_EQ(pageCount(target()), 1000);
}

}  // namespace
}  // namespace quillon::test
