#include "pdf/join/SourceSurveyor.h"
#include "tests/pdf/EngineTest.h"
#include "tests/support/RawPdf.h"
#include "tests/support/RichPdf.h"

#include <algorithm>
#include <atomic>
#include <chrono>
#include <cstddef>
#include <filesystem>
#include <future>
#include <string>
#include <thread>
#include <vector>

namespace quillon::pdf {
namespace {

using test::beginPdf;
using test::RawPdf;

class Surveying : public EngineTest {
protected:
    /// Two pages, and destinations by name: an array, a dictionary, one that says more than a page, one without page.
    std::shared_ptr<Source> named(const std::string& file) const {
        RawPdf pdf;
        pdf.object(1, "<</Type/Catalog/Pages 2 0 R/AcroForm<</Fields[9 0 R]>>/Names<</Dests 3 0 R>>>>");
        pdf.object(2, "<</Type/Pages/Count 2/Kids[10 0 R 12 0 R]>>");
        pdf.object(3, "<</Names[(a)7 0 R(b)6 0 R(c)5 0 R(d)[10 0 R/Fit](e)8 0 R]>>");
        pdf.object(5, "<</D[10 0 R/Fit]/SD[4 0 R/Fit]>>").object(6, "<</D [ 12 0 R /FitH 5 ] >>");
        pdf.object(7, "[10 0 R/Fit]").object(8, "[1/Fit]").object(9, "<</FT/Tx/T(field)>>");
        pdf.page(10, "A", "/Parent 2 0 R/MediaBox[0 0 9 9]").page(12, "B");
        return open(pdf.table().bytes(), file);
    }

    /// Surveys the sources of a plan, each with everything.
    static std::vector<SourceSurvey> survey(const DocumentPlan& plan) {
        const SourcePlans sources(plan);
        ObjectStreamPrefetcher prefetcher;
        SourceSurveyor surveyor(sources, prefetcher,
                                [](std::size_t) { return SourceSurvey::Wishes{.destinations = true, .fields = true}; });
        std::vector<SourceSurvey> surveys;
        for (std::size_t i = 0; i < sources.size(); ++i) surveys.push_back(surveyor.take(i));
        return surveys;
    }
};

TEST_F(Surveying, FindsWhatIsAskedForInTheOrderOfTheSources) {
    std::vector<std::shared_ptr<Source>> sources;
    for (int i = 0; i < 20; ++i) sources.push_back(named("f" + std::to_string(i)));
    sources[7] = open(RawPdf().catalogOf({3}).page(3, "one").table().bytes(), "plain");
    const auto surveys = survey(planOf(sources));
    ASSERT_EQ(surveys.size(), sources.size());
    for (std::size_t i = 0; i < surveys.size(); ++i) {
        EXPECT_TRUE(surveys[i].isWhole);
        EXPECT_EQ(surveys[i].destinations.size(), i == 7 ? 0U : 5U);
        EXPECT_EQ(surveys[i].fields.nodes().size(), i == 7 ? 0U : 1U);
    }
}

TEST_F(Surveying, ReadsTheShortDestinationsThatNameAPage) {
    auto surveys = survey(planOf({named("a"), named("b")}));
    EXPECT_FALSE(surveys[0].explicitDestination(0)) << "the first source is read when its turn comes";
    const SourceSurvey& second = surveys[1];
    ASSERT_TRUE(second.explicitDestination(0));
    EXPECT_EQ(second.explicitDestination(0)->page, (Reference{10, 0}));
    EXPECT_EQ(second.explicitDestination(0)->behind, "/Fit]");
    ASSERT_TRUE(second.explicitDestination(1));
    EXPECT_EQ(second.explicitDestination(1)->page, (Reference{12, 0}));
    EXPECT_EQ(second.explicitDestination(1)->behind, " /FitH 5 ]");
    for (const std::size_t other : {2U, 3U, 4U, 5U}) EXPECT_FALSE(second.explicitDestination(other)) << other;
}

TEST(ExplicitDestinations, AreThoseThatNameAPageAndNothingElse) {
    for (const char* text : {"[3 1 R/XYZ 0 10.5 null]", " [ 3 1 R/Fit ] ", "<</D[3 1 R/FitR 1 2 3 4]>>"}) {
        const auto found = explicitDestination(text);
        ASSERT_TRUE(found) << text;
        EXPECT_EQ(found->page, (Reference{3, 1}));
        EXPECT_TRUE(found->behind.ends_with(']'));
    }
    EXPECT_EQ(explicitDestination("[3 0 R]")->behind, "]");
    const std::string tooLong = "[3 0 R/XYZ " + std::string(200, '1') + "]";
    for (const std::string& text : {std::string(),
                                    std::string("["),
                                    std::string("[]"),
                                    std::string("[3]"),
                                    std::string("[3 0]"),
                                    std::string("[3 0 R"),
                                    std::string("[3 0 Rx/Fit]"),
                                    std::string("[3 0 R/XYZ 4 0 R 5]"),
                                    std::string("[3 0 %]R]"),
                                    std::string("[3 0 %]"),
                                    std::string("[3 %]0 R]"),
                                    std::string("[3 0 R/Fit endobj 8 0 obj ]"),
                                    std::string("[3 0 R true]"),
                                    std::string("[3 0 R(text)]"),
                                    std::string("[3 0 R[1]]"),
                                    std::string("[3 0 R % comment\n]"),
                                    std::string("[99999999999 0 R/Fit]"),
                                    std::string("(name)"),
                                    std::string("3 0 R"),
                                    std::string("<</S/GoTo/D[3 0 R/Fit]>>"),
                                    std::string("<</D[3 0 R/Fit]/SD[4 0 R]>>"),
                                    tooLong}) {
        EXPECT_FALSE(explicitDestination(text)) << text;
    }
}

TEST_F(Surveying, FindsTheFieldsOfEachPage) {
    RawPdf pdf;
    pdf.object(1, "<</Type/Catalog/Pages 2 0 R/AcroForm<</Fields[9 0 R 8 0 R]>>>>");
    pdf.object(2, "<</Type/Pages/Count 4/Kids[10 0 R 12 0 R 14 0 R 16 0 R]>>");
    pdf.object(8, "<</FT/Tx/T(b)/Subtype/Widget>>").object(9, "<</FT/Tx/T(a)/Subtype/Widget>>");
    pdf.object(7, "[9 0 R 6 0 R]").object(6, "<</Subtype/Link>>");
    pdf.page(10, "A", "/Parent 2 0 R/MediaBox[0 0 9 9]/Annots 7 0 R").page(12, "B", "/Parent 2 0 R/Annots 7 0 R");
    pdf.page(14, "C", "/Parent 2 0 R/Annots[6 0 R]").page(16, "D", "/Parent 2 0 R/Annots[8 0 R]");
    const auto surveys = survey(planOf({open(pdf.table().bytes(), "form")}));
    const PageFields& fields = surveys[0].pageFields;
    ASSERT_TRUE(fields.on(0));
    EXPECT_EQ(*fields.on(0), PageFields::Fields{surveys[0].fields.find(9)});
    EXPECT_EQ(fields.on(1), fields.on(0)) << "the pages share their list";
    EXPECT_FALSE(fields.on(2));
    ASSERT_TRUE(fields.on(3));
    EXPECT_EQ(*fields.on(3), PageFields::Fields{surveys[0].fields.find(8)});
    EXPECT_FALSE(fields.on(4));
}

TEST_F(Surveying, WhileASourceIsReadTheCallerReadsTheNext) {
    std::vector<std::shared_ptr<Source>> files;
    for (int i = 0; i < 5; ++i) files.push_back(named("f" + std::to_string(i)));
    const DocumentPlan plan = planOf(files);
    const SourcePlans sources(plan);
    const std::thread::id caller = std::this_thread::get_id();
    std::promise<void> begun;
    std::promise<void> helped;
    std::atomic<bool> inTime = false;
    ObjectStreamPrefetcher prefetcher;
    SourceSurveyor surveyor(sources, prefetcher, [&](std::size_t index) {
        // The caller stays with the first source until the thread has begun with the second, and the thread with that
        // until the caller has begun with the third.
        if (index == 0) begun.get_future().wait();
        if (index == 1 && std::this_thread::get_id() != caller) {
            begun.set_value();
            inTime = helped.get_future().wait_for(std::chrono::seconds(20)) == std::future_status::ready;
        }
        if (index == 2 && std::this_thread::get_id() == caller) helped.set_value();
        return SourceSurvey::Wishes{.destinations = true, .fields = true};
    });
    for (std::size_t i = 0; i < sources.size(); ++i) {
        const SourceSurvey survey = surveyor.take(i);
        EXPECT_EQ(survey.destinations.size(), 5U) << i;
        EXPECT_EQ(survey.explicitDestination(0).has_value(), i != 0) << i;
        SourceAccess access(*files[i]);
        surveyor.discard(access.detach());
    }
    EXPECT_TRUE(inTime);
}

/// A large source of so many pages.
class SurveyingALargeOne : public Surveying, public testing::WithParamInterface<std::size_t> {
protected:
    [[nodiscard]] std::shared_ptr<Source> largeOne() const {
        RawPdf pdf = beginPdf("", std::vector<std::string>(GetParam()));
        pdf.object(9000, '(' + std::string(512U << 10U, 'x') + ')');
        return open(pdf.table().bytes(), "large");
    }
};

INSTANTIATE_TEST_SUITE_P(Pages, SurveyingALargeOne, testing::Values(1, 16, 17, 100));

TEST_P(SurveyingALargeOne, IsLeftToTheThreadIfManyPagesAreTaken) {
    const DocumentPlan plan = planOf({named("f0"), named("f1"), largeOne(), named("f3")});
    const SourcePlans sources(plan);
    std::promise<void> begun;
    std::promise<void> ahead;
    std::atomic<bool> isReading = false;
    std::atomic<bool> wasAhead = false;
    const std::thread::id caller = std::this_thread::get_id();
    ObjectStreamPrefetcher prefetcher;
    SourceSurveyor surveyor(sources, prefetcher, [&](std::size_t index) {
        const bool isCaller = std::this_thread::get_id() == caller;
        // The thread stays with the second source for a while, in which the caller asks for that and may begin with the
        // third.
        if (index == 0) begun.get_future().wait();
        if (index == 1 && !isCaller) {
            isReading = true;
            begun.set_value();
            static_cast<void>(ahead.get_future().wait_for(std::chrono::milliseconds(500)));
            isReading = false;
        }
        if (index == 2 && isCaller && isReading && !wasAhead.exchange(true)) ahead.set_value();
        return SourceSurvey::Wishes{.destinations = true, .fields = true};
    });
    for (std::size_t i = 0; i < sources.size(); ++i) static_cast<void>(surveyor.take(i));
    EXPECT_EQ(wasAhead, GetParam() <= 16);
}

TEST_F(Surveying, StructuresThatWereDiscardedDoNotPileUp) {
    std::string manyEntries =
        "%PDF-1.4\n1 0 obj<</Type/Catalog/Pages 2 0 R>>endobj\n2 0 obj<</Type/Pages/Count 0/Kids[]>>endobj\n";
    const std::string place = std::to_string(manyEntries.size());
    manyEntries += "xref\n0 130000\n0000000000 65535 f \n0000000009 00000 n \n0000000052 00000 n \n";
    for (int i = 3; i < 130'000; ++i) manyEntries += "0000000000 65535 f \n";
    manyEntries += "trailer<</Size 130000/Root 1 0 R>>\nstartxref\n" + place + "\n%%EOF\n";
    std::vector<std::shared_ptr<Source>> files;
    for (int i = 0; i < 12; ++i) files.push_back(open(manyEntries, "many" + std::to_string(i)));
    // What is read of a source refers to its file.
    const auto held = [&] {
        return std::ranges::count_if(files, [](auto& file) { return file->file().use_count() > 1; });
    };

    const DocumentPlan plan = planOf({named("a"), named("b")});
    const SourcePlans sources(plan);
    std::promise<void> begun;
    std::promise<void> goesOn;
    ObjectStreamPrefetcher prefetcher;
    SourceSurveyor surveyor(sources, prefetcher, [&](std::size_t index) {
        if (index == 1) {
            begun.set_value();
            goesOn.get_future().wait();
        }
        return SourceSurvey::Wishes();
    });
    static_cast<void>(surveyor.take(0));
    begun.get_future().wait();
    for (const auto& file : files) surveyor.discard(SourceAccess(*file).detach());
    EXPECT_GT(held(), 0) << "the thread, which is busy, has not come to them";
    EXPECT_LT(held(), 9) << "the others were freed at once";
    goesOn.set_value();
    static_cast<void>(surveyor.take(1));
    for (int wait = 0; held() > 0 && wait < 2000; ++wait) std::this_thread::sleep_for(std::chrono::milliseconds(10));
    EXPECT_EQ(held(), 0);
}

TEST_F(Surveying, ASourceOfWhichPagesAreLeftOutIsNotWhole) {
    const auto source = named("a");
    DocumentPlan plan = planOf({named("first"), source});
    plan.pages.pop_back();
    const auto surveys = survey(plan);
    EXPECT_TRUE(surveys[0].isWhole);
    EXPECT_FALSE(surveys[1].isWhole);
    EXPECT_FALSE(surveys[1].explicitDestination(0));
}

TEST_F(Surveying, ASourceThatHasGoneGivesNothing) {
    const auto source = named("gone");
    {
        SourceAccess access(*source);
        access.release();
    }
    std::filesystem::resize_file(source->path(), 10);
    const auto surveys = survey(planOf({named("first"), source, named("last")}));
    EXPECT_EQ(surveys[1].destinations.size(), 0U);
    EXPECT_EQ(surveys[2].destinations.size(), 5U);
}

TEST_F(Surveying, CanBeLeftAtAnyTime) {
    std::vector<std::shared_ptr<Source>> files;
    for (int i = 0; i < 30; ++i) files.push_back(named("f" + std::to_string(i)));
    const DocumentPlan plan = planOf(files);
    const SourcePlans sources(plan);
    for (const std::size_t taken : {0U, 1U, 2U, 9U}) {
        ObjectStreamPrefetcher prefetcher;
        SourceSurveyor surveyor(sources, prefetcher, [](std::size_t) { return SourceSurvey::Wishes{true, true}; });
        for (std::size_t i = 0; i < taken; ++i) EXPECT_TRUE(surveyor.take(i).isWhole);
    }
}

}  // namespace
}  // namespace quillon::pdf
