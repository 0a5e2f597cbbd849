#include "pdf/join/JoinedNames.h"
#include "pdf/read/DestinationResolver.h"
#include "pdf/write/OutputFile.h"
#include "tests/pdf/EngineTest.h"

#include <algorithm>
#include <string>
#include <vector>

namespace quillon::pdf {
namespace {

TEST(JoinedNames, ANameThatIsTakenGetsTheOrdinal) {
    JoinedNames names;
    EXPECT_EQ(names.nameAt(names.reserve("a", 1)), "a");
    EXPECT_EQ(names.nameAt(names.reserve("a", 2)), "a-2");
    EXPECT_EQ(names.nameAt(names.reserve("a", 2)), "a-2-2");
    EXPECT_EQ(names.nameAt(names.reserve("a", 2)), "a-2-3");
    EXPECT_EQ(names.nameAt(names.reserve("a-2", 3)), "a-2-3-2");
    EXPECT_TRUE(names.contains("a-2-2"));
    EXPECT_FALSE(names.contains("b"));
}

TEST(JoinedNames, ToExpectNamesChangesNothing) {
    JoinedNames names;
    names.fetchPlaceOf("a");
    names.expect(0);
    EXPECT_EQ(names.nameAt(names.reserve("a", 1)), "a");
    names.expect(1000);
    names.fetchPlaceOf("a");
    names.fetchPlaceOf("b");
    EXPECT_EQ(names.nameAt(names.reserve("a", 2)), "a-2");
    EXPECT_FALSE(names.contains("b"));
}

TEST(JoinedNames, NamesOutliveTheTextsThatTheyWereGivenAs) {
    JoinedNames names;
    const auto first = names.reserve(std::string("a name that ends at once, and is long"), 1);
    for (int i = 0; i < 10'000; ++i) static_cast<void>(names.reserve("another " + std::to_string(i), 1));
    EXPECT_EQ(names.nameAt(first), "a name that ends at once, and is long");
}

TEST(JoinedNames, IsEmptyUntilANameHasAValue) {
    JoinedNames names;
    const auto place = names.reserve("a", 1);
    EXPECT_TRUE(names.empty());
    names.set(place, "1 0 R");
    EXPECT_FALSE(names.empty());
}

class WrittenNames : public EngineTest {
protected:
    /// The names of a file that has these and no other, in their order.
    std::vector<std::string> names(const JoinedNames& joined) const {
        const std::string target = dir.file("names.pdf");
        const auto file = OutputFile::create(target);
        static_cast<void>(file->write("%PDF-1.5\n"));
        ObjectOutput output(*file);
        const std::string root = std::to_string(joined.write(output));
        const std::string page = std::to_string(output.addObject("<</Type/Page>>"));
        const std::string pages = std::to_string(output.addObject("<</Type/Pages/Count 1/Kids[" + page + " 0 R]>>"));
        const std::string catalog = std::to_string(
            output.addObject("<</Type/Catalog/Pages " + pages + " 0 R/Names<</Dests " + root + " 0 R>>>>"));
        EXPECT_TRUE(output.finishObjects());
        EXPECT_TRUE(output.finish("/Root " + catalog + " 0 R", {}));
        EXPECT_TRUE(file->commit(false));
        const auto source = Source::open(target);
        SourceAccess access(*source);
        std::vector<std::string> found;
        for (const auto& [name, value] : readDestinationNames(*access.document()).tree) {
            EXPECT_EQ(value.string() ? *value.string() : "none", name);
            found.emplace_back(name);
        }
        return found;
    }
};

TEST_F(WrittenNames, StandInOrderHoweverManyThereAre) {
    for (const int count : {0, 1, 64, 65, 4095, 4096, 9999}) {
        JoinedNames joined;
        std::vector<std::string> expected;
        // Three runs that are in order, and some that are not.
        for (int i = 0; i < count; ++i) {
            const std::string name = i % 100 == 7 ? "z(" + std::to_string(i * 7919 % 10'000)
                                                  : "n" + std::to_string(1'000'000 + i * 3 % (count + 1));
            const auto place = joined.reserve(name, 1);
            expected.emplace_back(joined.nameAt(place));
            std::string value;
            writeString(value, expected.back());
            joined.set(place, value);
        }
        std::ranges::sort(expected);
        EXPECT_EQ(names(joined), expected) << count;
    }
}

}  // namespace
}  // namespace quillon::pdf
