#include "merge/Stack.h"
#include "merge/cacheData.h"

#include <gtest/gtest.h>

namespace quillon {
namespace {

std::shared_ptr<cacheData> entry() {
    return std::make_shared<cacheData>(QUrl());
}

TEST(Stack, ANewOneIsEmpty) {
    Stack stack;
    EXPECT_TRUE(stack.isEmpty());
    EXPECT_TRUE(stack.getBackup().empty());
    EXPECT_EQ(stack.top(), nullptr);
}

TEST(Stack, HandsOutItsElementsInTheOrderInWhichTheyWerePushed) {
    const auto first = entry();
    const auto second = entry();
    Stack stack;
    stack.push(first);
    stack.push(second);
    EXPECT_EQ(stack.top(), first);
    stack.pop();
    EXPECT_EQ(stack.top(), second);
}

TEST(Stack, PopRemovesNothing) {
    Stack stack;
    stack.push(entry());
    stack.pop();
    EXPECT_EQ(stack.getBackup().size(), 1U);
    EXPECT_TRUE(stack.isEmpty());
    EXPECT_EQ(stack.top(), nullptr);
}

TEST(Stack, GetBackupIsTheLiveArray) {
    Stack stack;
    stack.push(entry());
    stack.getBackup().clear();
    EXPECT_TRUE(stack.isEmpty());
}

TEST(Stack, RemoveAllLeavesTheReadPosition) {
    const auto second = entry();
    Stack stack;
    stack.push(entry());
    stack.pop();
    stack.removeAll();
    EXPECT_TRUE(stack.getBackup().empty());
    EXPECT_FALSE(stack.isEmpty());  // the position, 1, is not the count, 0
    stack.push(entry());
    EXPECT_TRUE(stack.isEmpty());
    stack.push(second);
    EXPECT_EQ(stack.top(), second);
}

}  // namespace
}  // namespace quillon
