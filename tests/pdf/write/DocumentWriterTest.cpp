#include "pdf/write/DocumentWriter.h"
#include "tests/pdf/EngineTest.h"
#include "tests/support/ExternalReader.h"
#include "tests/support/JudgedPdf.h"
#include "tests/support/PdfFixture.h"
#include "tests/support/Process.h"
#include "tests/support/RawPdf.h"

#include <QJsonArray>

#include <chrono>
#include <csignal>
#include <ctime>
#include <filesystem>
#include <random>
#include <sys/resource.h>
#include <unistd.h>

namespace quillon::pdf {
namespace {

using test::JudgedPdf;
using test::PdfFixture;
using test::RawPdf;

class DocumentWriting : public EngineTest {
protected:
    static QString text(const char* latin) { return QString::fromLatin1(latin); }
};

TEST_F(DocumentWriting, PagesComeInTheOrderOfThePlan) {
    const auto a = open(PdfFixture("A", 3).bytes(), "a.pdf");
    const auto b = open(PdfFixture("B", 2).bytes(), "b.pdf");
    DocumentPlan plan = planOf({a, b});
    std::ranges::reverse(plan.pages);
    std::swap(plan.pages[0], plan.pages[3]);
    EXPECT_EQ(test::pageMarks(write(plan)), (Strings{"A2", "B1", "A3", "B2", "A1"}));
}

TEST_F(DocumentWriting, ManyPagesOfManyFilesAreMerged) {
    std::vector<std::shared_ptr<Source>> sources;
    Strings expected;
    for (int i = 0; i < 300; ++i) {
        const std::string prefix = "F" + std::to_string(i) + "P";
        sources.push_back(open(PdfFixture(prefix, 3).link(0, 2).bytes(), prefix));
        for (int page = 1; page <= 3; ++page) expected.push_back(prefix + std::to_string(page));
    }
    EXPECT_EQ(test::pageMarks(write(planOf(sources))), expected);
}

TEST_F(DocumentWriting, TheFileHasObjectStreamsAndACrossReferenceStream) {
    const std::string bytes = contentOf(write(planOf({open(PdfFixture("A", 3).bytes())})));
    EXPECT_NE(bytes.find("/Type/ObjStm"), std::string::npos);
    EXPECT_NE(bytes.find("/Type/XRef"), std::string::npos);
    EXPECT_EQ(bytes.find("\nxref"), std::string::npos);
    EXPECT_EQ(bytes.find("trailer"), std::string::npos);
}

TEST_F(DocumentWriting, ALongObjectStandsOutsideOfObjectStreams) {
    const std::string secret(20U << 20U, 's');
    RawPdf pdf;
    pdf.catalogOf({3}).object(3, "<</Type/Page/Parent 2 0 R/MediaBox[0 0 9 9]/PieceInfo<</X 4 0 R/Y 5 0 R>>>>");
    pdf.object(4, "[3 0 R(" + secret + ")]").object(5, "(behind)");
    DocumentPlan plan = planOf({open(pdf.table().bytes())});
    const std::string once = contentOf(write(plan));
    EXPECT_NE(once.find(secret), std::string::npos);
    EXPECT_NE(contentOf(write(planOf({open(once)}))).find(secret), std::string::npos) << "read again";
    plan.protection = Protection{"user", "owner"};
    const WriteResult result = writeDocument(plan, dir.file("sealed.pdf"));
    ASSERT_TRUE(result.written);
    const std::string sealed = contentOf(dir.file("sealed.pdf"));
    EXPECT_EQ(sealed.find("ssssssss"), std::string::npos);
    const auto source = open(sealed);
    EXPECT_EQ(source->unlock("user"), Access::User);
    EXPECT_NE(contentOf(write(planOf({source}))).find(secret), std::string::npos) << "deciphered";
}

TEST_F(DocumentWriting, TheVersionIsTheHighestOfAllAndAtLeastThatOfObjectStreams) {
    const auto versioned = [this](const std::string& version) {
        return open(RawPdf("%PDF-" + version + "\n").catalogOf({3}).page(3, version).table().bytes(), version);
    };
    const auto header = [&](const std::vector<std::shared_ptr<Source>>& sources) {
        return contentOf(write(planOf(sources))).substr(0, 8);
    };
    EXPECT_EQ(header({versioned("1.3")}), "%PDF-1.5");
    EXPECT_EQ(header({versioned("1.3"), versioned("1.7"), versioned("1.4")}), "%PDF-1.7");
    EXPECT_EQ(header({versioned("2.0"), versioned("1.4")}), "%PDF-2.0");
}

TEST_F(DocumentWriting, TheCatalogOutlineAndInformationOfTheBaseAreKept) {
    const auto a =
        open(PdfFixture("A", 2).bookmark("mine", 1).info("Title", "My title").info("Author", "Me").bytes(), "a.pdf");
    const auto b =
        open(PdfFixture("B", 2).bookmark("other", 0).info("Title", "Other").info("Subject", "Others").bytes(), "b.pdf");
    const std::string path = write(planOf({a, b}));
    EXPECT_EQ(test::documentInfo(path, "Title"), "My title");
    EXPECT_EQ(test::documentInfo(path, "Author"), "Me");
    EXPECT_EQ(test::documentInfo(path, "Subject"), "");
    const auto outline = test::outlineLines(path);
    ASSERT_EQ(outline.size(), 1U);
    EXPECT_NE(outline[0].find("mine"), std::string::npos);
    EXPECT_NE(outline[0].find("page=2"), std::string::npos) << outline[0];
    EXPECT_EQ(JudgedPdf(path).having(text("/Type"), text("/Catalog")).size(), 1);
    EXPECT_EQ(JudgedPdf(path).having(text("/Type"), text("/Outlines")).size(), 1);
}

TEST_F(DocumentWriting, OtherEntriesOfTheCatalogTravel) {
    RawPdf pdf;
    pdf.object(1, "<</Type/Catalog/Pages 2 0 R/PageLayout/TwoColumnLeft/Version/1.4/Lang(de)/OpenAction[3 0 R/Fit]>>");
    pdf.object(2, "<</Type/Pages/Count 1/Kids[3 0 R]>>").page(3, "one");
    const JudgedPdf out(write(planOf({open(pdf.table().bytes())})));
    EXPECT_EQ(out.catalog()[text("/PageLayout")].toString(), text("/TwoColumnLeft"));
    EXPECT_EQ(out.catalog()[text("/Lang")].toString(), text("u:de"));
    EXPECT_EQ(out.catalog()[text("/OpenAction")].toArray().at(0).toString(), out.pages()[0]);
    EXPECT_FALSE(out.catalog().contains(text("/Version")));
}

TEST_F(DocumentWriting, TheOutlineCanBeLeftOut) {
    DocumentPlan plan = planOf({open(PdfFixture("A", 2).bookmark("mine", 1).bytes())});
    plan.keepOutline = false;
    EXPECT_TRUE(test::outlineLines(write(plan)).empty());
}

TEST_F(DocumentWriting, InformationIsReplacedRemovedAndAdded) {
    DocumentPlan plan =
        planOf({open(PdfFixture("A", 1).info("Title", "Old").info("Author", "Old").info("Custom", "Kept").bytes())});
    plan.information = {{"Title", "New (1) \\"}, {"Author", ""}, {"Subject", "Added"}};
    const std::string path = write(plan);
    EXPECT_EQ(test::documentInfo(path, "Title"), "New (1) \\");
    EXPECT_EQ(test::documentInfo(path, "Author"), "");
    EXPECT_EQ(test::documentInfo(path, "Subject"), "Added");
    const JudgedPdf out(path);
    EXPECT_EQ(out.dictionary(out.trailer()[text("/Info")])[text("/Custom")].toString(), text("u:Kept"));
}

TEST_F(DocumentWriting, WithoutABaseThereIsAPlainCatalog) {
    DocumentPlan plan = planOf({open(PdfFixture("A", 1).bookmark("b", 0).info("Title", "T").bytes())});
    plan.base = nullptr;
    const std::string path = write(plan);
    EXPECT_EQ(test::documentInfo(path, "Title"), "");
    EXPECT_TRUE(test::outlineLines(path).empty());
}

TEST_F(DocumentWriting, ABaseWithoutPagesOfItsOwnKeepsItsCatalog) {
    const auto a = open(PdfFixture("A", 1).info("Title", "T").bytes(), "a.pdf");
    DocumentPlan plan = planOf({a});
    plan.pages = pagesOf(open(PdfFixture("B", 1).bytes(), "b.pdf"));
    const std::string path = write(plan);
    EXPECT_EQ(test::documentInfo(path, "Title"), "T");
    EXPECT_EQ(test::pageMarks(path), Strings{"B1"});
    EXPECT_EQ(JudgedPdf(path).having(text("/Type"), text("/Page")).size(), 1);
}

TEST_F(DocumentWriting, BlankPagesHaveTheirBoxAndRotation) {
    DocumentPlan plan;
    OutputPage blank;
    blank.origin = std::make_shared<const BlankPage>(BlankPage{{0.5, 0, 200.25, 300}, 90});
    OutputPage plain;
    plain.origin = std::make_shared<const BlankPage>();
    plan.pages = {blank, plain};
    const JudgedPdf out(write(plan));
    EXPECT_EQ(out.dictionary(out.pages()[0])[text("/MediaBox")].toArray(), (QJsonArray{0.5, 0, 200.25, 300}));
    EXPECT_EQ(out.dictionary(out.pages()[0])[text("/Rotate")].toInt(), 90);
    EXPECT_EQ(out.dictionary(out.pages()[1])[text("/MediaBox")].toArray(), (QJsonArray{0, 0, 612, 792}));
}

TEST_F(DocumentWriting, TheSamePlanGivesTheSameBytes) {
    std::vector<std::shared_ptr<Source>> sources;
    for (int i = 0; i < 40; ++i) {
        sources.push_back(
            open(PdfFixture("F" + std::to_string(i) + "P", 30).link(0, 2).link(5, 29).bytes(), std::to_string(i)));
    }
    sources.push_back(sources[3]);
    const std::string first = contentOf(write(planOf(sources), "first.pdf"));
    for (int round = 0; round < 3; ++round) EXPECT_TRUE(contentOf(write(planOf(sources), "again.pdf")) == first);
}

TEST_F(DocumentWriting, DifferentDocumentsHaveDifferentIds) {
    const auto id = [this](const std::string& prefix) {
        const JudgedPdf out(write(planOf({open(PdfFixture(prefix, 1).bytes(), prefix)})));
        return out.trailer()[text("/ID")].toArray();
    };
    EXPECT_EQ(id("A").size(), 2);
    EXPECT_NE(id("A"), id("B"));
}

TEST_F(DocumentWriting, TheTargetMayBeAnInput) {
    const auto a = open(PdfFixture("A", 2).bytes(), "a.pdf");
    const auto b = open(PdfFixture("B", 2).bytes(), "b.pdf");
    EXPECT_EQ(test::pageMarks(write(planOf({a, b}), "a.pdf")), (Strings{"A1", "A2", "B1", "B2"}));
    EXPECT_EQ(filesInFolder(), 2);
}

TEST_F(DocumentWriting, ADocumentWithoutPagesIsNotWritten) {
    const std::string target = dir.write("out.pdf", "old");
    const WriteResult result = writeDocument(DocumentPlan(), target);
    EXPECT_FALSE(result.written);
    EXPECT_EQ(result.warnings.size(), 1U);
    EXPECT_EQ(contentOf(target), "old");
}

TEST_F(DocumentWriting, ATargetThatCannotBeWrittenIsReported) {
    const DocumentPlan plan = planOf({open(PdfFixture("A", 1).bytes())});
    for (const std::string& target :
         {dir.file("missing/out.pdf"), dir.path().string(), std::string("/dev/null"), std::string()}) {
        const WriteResult result = writeDocument(plan, target);
        EXPECT_FALSE(result.written) << target;
        EXPECT_FALSE(result.warnings.empty()) << target;
    }
    EXPECT_EQ(filesInFolder(), 1);
}

TEST_F(DocumentWriting, OnAFullDiskTheOldFileStaysAndNothingIsLeft) {
    std::string noise;
    for (std::mt19937 random(59); noise.size() < 200'000;) noise += static_cast<char>(random());
    const auto source = open(RawPdf()
                                 .catalogOf({3})
                                 .page(3, "one", "/Parent 2 0 R/MediaBox[0 0 9 9]/X 10 0 R")
                                 .stream(10, {}, noise)
                                 .table()
                                 .bytes());
    const std::string target = dir.write("out.pdf", "old");
    const auto writeUpTo = [&](rlim_t bytes) {
        return test::inChildProcess([&] {
            std::signal(SIGXFSZ, SIG_IGN);
            const rlimit limit{bytes, bytes};
            if (::setrlimit(RLIMIT_FSIZE, &limit) != 0) return 9;
            return writeDocument(planOf({source}), target).written ? 0 : 1;
        });
    };
    for (const rlim_t bytes : {rlim_t{0}, rlim_t{10}, rlim_t{1000}, rlim_t{150'000}, rlim_t{200'300}}) {
        EXPECT_EQ(writeUpTo(bytes), 1) << bytes;
        EXPECT_EQ(contentOf(target), "old") << bytes;
        EXPECT_EQ(filesInFolder(), 2) << bytes;
    }
    EXPECT_EQ(writeUpTo(300'000), 0);
    EXPECT_EQ(test::qpdfProblems(target), "");
}

TEST_F(DocumentWriting, AnInputCutShortAfterItWasOpenedIsSurvived) {
    const std::string bytes = PdfFixture("A", 30).link(0, 7).bytes();
    // A page cut off inside its dictionary is closed there; what comes behind was read when the file was opened.
    const std::size_t lastPage = bytes.rfind("/Type/Page/");
    ASSERT_NE(lastPage, std::string::npos);
    for (std::size_t length = 0; length < bytes.size(); length += 97) {
        const auto source = open(bytes, "a.pdf");
        const auto other = open(PdfFixture("B", 1).bytes(), "b.pdf");
        std::filesystem::resize_file(dir.file("a.pdf"), length);
        const WriteResult result = writeDocument(planOf({other, source}), dir.file("out.pdf"));
        EXPECT_TRUE(result.written) << length;
        if (length < lastPage) {
            EXPECT_FALSE(result.warnings.empty()) << length;
        }
        EXPECT_EQ(test::pageMarks(dir.file("out.pdf")).front(), "B1") << length;
    }
}

TEST_F(DocumentWriting, AnInputDeletedAfterItWasOpenedIsStillReadOrLeftOut) {
    const auto source = open(PdfFixture("A", 3).bytes(), "a.pdf");
    std::filesystem::remove(dir.file("a.pdf"));
    EXPECT_EQ(test::pageMarks(write(planOf({source}))), (Strings{"A1", "A2", "A3"})) << "its descriptor is open";

    const auto b = open(PdfFixture("B", 3).bytes(), "b.pdf");
    std::vector<std::shared_ptr<Source>> others{open(PdfFixture("C", 1).bytes(), "c0.pdf")};
    for (int i = 1; i < 50; ++i)
        others.push_back(open(PdfFixture("C", 1).info("Title", std::to_string(i)).bytes(), "c" + std::to_string(i)));
    std::filesystem::remove(dir.file("b.pdf"));
    SourceAccess(*b).release();
    const WriteResult result = writeDocument(planOf({others[0], b}), dir.file("out.pdf"));
    EXPECT_TRUE(result.written);
    EXPECT_EQ(test::pageMarks(dir.file("out.pdf")), Strings{"C1"});
    ASSERT_FALSE(result.warnings.empty());
    for (const auto& line : result.warnings) EXPECT_TRUE(line.starts_with(dir.file("b.pdf"))) << line;
}

TEST_F(DocumentWriting, AnInputReplacedAfterItWasOpenedIsNotMixedWithTheNewOne) {
    const auto source = open(PdfFixture("A", 3).bytes(), "a.pdf");
    std::filesystem::rename(dir.write("new.pdf", PdfFixture("N", 5).bytes()), dir.file("a.pdf"));
    for (const auto& mark : test::pageMarks(write(planOf({source})))) EXPECT_EQ(mark[0], 'A');
}

TEST_F(DocumentWriting, AllInputsGoneLeavesTheTargetAlone) {
    const auto source = open(PdfFixture("A", 3).bytes(), "a.pdf");
    const std::string target = dir.write("out.pdf", "old");
    std::filesystem::resize_file(dir.file("a.pdf"), 0);
    SourceAccess(*source).release();
    EXPECT_FALSE(writeDocument(planOf({source}), target).written);
    EXPECT_EQ(contentOf(target), "old");
}

/// The kernel ends this process then, wherever it is.
void killSelfAfter(std::chrono::microseconds time) {
    sigevent event{};
    event.sigev_notify = SIGEV_SIGNAL;
    event.sigev_signo = SIGKILL;
    timer_t timer{};
    itimerspec moment{};
    moment.it_value.tv_nsec = std::chrono::nanoseconds(time).count();
    if (::timer_create(CLOCK_MONOTONIC, &event, &timer) != 0 || ::timer_settime(timer, 0, &moment, nullptr) != 0)
        ::_exit(98);
}

TEST_F(DocumentWriting, KilledAtAnyMomentTheTargetIsTheOldOrTheNewFile) {
    std::string noise;
    for (std::mt19937 random(61); noise.size() < 3'000'000;) noise += static_cast<char>(random());
    dir.write("a.pdf", PdfFixture("A", 300).bytes());
    dir.write("b.pdf", RawPdf()
                           .catalogOf({3})
                           .page(3, "one")
                           .stream(10, {}, noise)
                           .page(3, "one", "/MediaBox[0 0 9 9]/X 10 0 R")
                           .table()
                           .bytes());
    const std::string target = dir.file("out.pdf");
    // The two documents that the child writes in turn, over and over.
    const auto writeOne = [&](const char* name) {
        const auto source = Source::open(dir.file(name));
        return source && writeDocument(planOf({source}), target).written;
    };
    ASSERT_TRUE(writeOne("a.pdf"));
    const std::string a = contentOf(target);
    ASSERT_TRUE(writeOne("b.pdf"));
    const std::string b = contentOf(target);
    std::mt19937 random(67);
    for (int round = 0; round < 20; ++round) {
        const int ended = test::inChildProcess([&] {
            killSelfAfter(std::chrono::microseconds(1 + random() % 60'000));
            while (writeOne("a.pdf") && writeOne("b.pdf")) {
            }
            return 1;
        });
        ASSERT_EQ(ended, 100 + SIGKILL) << "the child could not write";
        (void)random();  // the child's draw was from a copy
        const std::string now = contentOf(target);
        ASSERT_TRUE(now == a || now == b) << round;
    }
}

}  // namespace
}  // namespace quillon::pdf
