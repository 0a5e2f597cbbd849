#include "platform/pdf/PDFPage.h"
#include "platform/pdf/PageList.h"

#include <gtest/gtest.h>

#include <vector>

namespace quillon {
namespace {

class PageListTest : public testing::Test {
protected:
    PageList listOf(std::size_t count) {
        return {count, [this](std::size_t index) {
                    made.push_back(index);
                    return std::make_shared<PDFPage>();
                }};
    }

    std::vector<std::size_t> made;  // pages in the order in which they were asked for
};

TEST_F(PageListTest, MakesAPageWhenItIsFirstAskedFor) {
    PageList list = listOf(5);
    EXPECT_TRUE(made.empty());
    const auto page = list.at(3);
    EXPECT_EQ(list.at(3), page);
    EXPECT_EQ(made, std::vector<std::size_t>{3});
}

TEST_F(PageListTest, KeepsThePagesThatWereMadeBeforeAnEdit) {
    PageList list = listOf(5);
    const auto third = list.at(3);
    list.remove(0);
    EXPECT_EQ(list.at(2), third);
    EXPECT_EQ(list.size(), 4U);
    (void)list.at(0);
    EXPECT_EQ(made, (std::vector<std::size_t>{3, 1}));
}

TEST_F(PageListTest, FindsAPageWhereverItHasGone) {
    PageList list = listOf(5);
    const auto page = list.at(1);
    list.exchange(1, 4);
    EXPECT_EQ(list.find(page.get()), 4U);
    list.insert(0, std::make_shared<PDFPage>());
    EXPECT_EQ(list.find(page.get()), 5U);
    list.remove(5);
    EXPECT_EQ(list.find(page.get()), list.size());
}

TEST_F(PageListTest, FindsTheFirstPlaceOfAPageThatStandsThereTwice) {
    PageList list = listOf(3);
    const auto page = list.at(2);
    EXPECT_EQ(list.find(page.get()), 2U);
    list.insert(1, page);
    EXPECT_EQ(list.find(page.get()), 1U);
}

}  // namespace
}  // namespace quillon
