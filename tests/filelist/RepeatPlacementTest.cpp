#include "tests/filelist/FileListTest.h"

#include <vector>

using namespace quillon;

namespace {

constexpr std::int32_t whole = MergeMethodWhole;
constexpr std::int32_t part = MergeMethodPart;
constexpr std::int32_t cross = MergeMethodCross;
constexpr std::int32_t crossReverse = MergeMethodCrossReverse;
constexpr std::int32_t repeat = MergeMethodRepeat;

class RepeatPlacement : public test::FileListTest {
protected:
    [[nodiscard]] bool makesSense(const std::vector<std::int32_t>& methods) {
        const QUrl file = pdf("a.pdf");
        for (std::size_t i = 0; i < methods.size(); ++i) {
            list_.addFiles({file});
            list_.updateMethodColumn(static_cast<int>(i), methods[i], QStringLiteral("1"));
        }
        return list_.isOrderMakeSense();
    }
};

TEST_F(RepeatPlacement, AnEmptyListMakesSense) {
    EXPECT_TRUE(makesSense({}));
}
TEST_F(RepeatPlacement, AListWithoutRepeatMakesSense) {
    EXPECT_TRUE(makesSense({whole}));
}
TEST_F(RepeatPlacement, ARepeatInTheTopRowDoesNot) {
    EXPECT_FALSE(makesSense({repeat}));
}
TEST_F(RepeatPlacement, ARepeatBehindCrossDoes) {
    EXPECT_TRUE(makesSense({cross, repeat}));
}
TEST_F(RepeatPlacement, ARepeatBehindWholeDoesNot) {
    EXPECT_FALSE(makesSense({cross, whole, repeat}));
}
TEST_F(RepeatPlacement, ARepeatBehindPartDoesNot) {
    EXPECT_FALSE(makesSense({cross, part, repeat}));
}
TEST_F(RepeatPlacement, RepeatsMayFollowEachOther) {
    EXPECT_TRUE(makesSense({crossReverse, repeat, repeat}));
}
TEST_F(RepeatPlacement, OnlyTheFirstRepeatIsJudged) {
    EXPECT_TRUE(makesSense({cross, repeat, whole, repeat}));
}

}  // namespace
