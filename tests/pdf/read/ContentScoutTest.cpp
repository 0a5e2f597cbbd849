#include "pdf/read/ContentScout.h"
#include "pdf/read/Source.h"
#include "tests/pdf/EngineTest.h"
#include "tests/support/RawPdf.h"

#include <limits>
#include <optional>
#include <string>
#include <thread>

namespace quillon::pdf {
namespace {

class ContentScoutTest : public EngineTest {
protected:
    static constexpr int contentNumber = 11;

    /// A document of one page, whose content is object 11.
    [[nodiscard]] static std::string pageWith(const std::string& contentObject, const char* contents = "11 0 R") {
        test::RawPdf pdf;
        pdf.catalogOf({10});
        pdf.object(10, std::string("<</Type/Page/Parent 2 0 R/MediaBox[0 0 9 9]/Contents ") + contents + ">>");
        pdf.object(contentNumber, contentObject);
        pdf.object(12, "3");
        return pdf.table().bytes();
    }
    [[nodiscard]] static std::string stream(const std::string& data, const std::string& length) {
        return "<</Length " + length + ">>\nstream\n" + data + "\nendstream";
    }
    /// What the scout makes of the page, asked until it has looked, `most` times at the most; asking it too early makes
    /// it forget the page.
    std::optional<bool> seen(const std::string& bytes, long most) {
        const auto source = open(bytes);
        SourceAccess access(*source);
        SourceDocument& document = *access.document();
        ContentScout scout;
        std::optional<bool> answer;
        for (long i = 0; i < most && !answer; ++i) {
            scout.expect(document, document.pages().pages().front());
            std::this_thread::yield();
            answer = scout.take(document, contentNumber);
        }
        return answer;
    }
    /// For pages that it can answer for.
    std::optional<bool> seen(const std::string& bytes) { return seen(bytes, std::numeric_limits<long>::max()); }
};

TEST_F(ContentScoutTest, SeesWhetherContentIsBalanced) {
    EXPECT_EQ(seen(pageWith(stream("q Q", "3"))), true);
    EXPECT_EQ(seen(pageWith(stream("q q", "3"))), false);
    EXPECT_EQ(seen(pageWith(stream("q q", "3"), "[11 0 R]")), false);
}

TEST_F(ContentScoutTest, LeavesToOthersWhatItCannotReadApartFromTheFile) {
    constexpr long tries = 300;
    EXPECT_EQ(seen(pageWith(stream("q q", "12 0 R")), tries), std::nullopt) << "the length is another object";
    EXPECT_EQ(seen(pageWith(stream("q q", "2")), tries), std::nullopt) << "the length is wrong";
    EXPECT_EQ(seen(pageWith("<</Length 3/Filter 12 0 R>>\nstream\nq q\nendstream"), tries), std::nullopt);
    EXPECT_EQ(seen(pageWith("<</Length 3/Filter/DCTDecode>>\nstream\nq q\nendstream"), tries), std::nullopt);
    EXPECT_EQ(seen(pageWith(stream("q q", "3"), "[11 0 R 12 0 R]"), tries), std::nullopt) << "two streams";
    EXPECT_EQ(seen(pageWith("[1 2]"), tries), std::nullopt) << "no stream";
    EXPECT_EQ(seen(pageWith("null", "(nothing)"), tries), std::nullopt);
}

TEST_F(ContentScoutTest, KnowsNothingOfPagesThatWereNotAnnounced) {
    const auto source = open(pageWith(stream("q Q", "3")));
    SourceAccess access(*source);
    EXPECT_EQ(ContentScout().take(*access.document(), contentNumber), std::nullopt);
}

}  // namespace
}  // namespace quillon::pdf
