#include "platform/AssertionFailure.h"

#include <gtest/gtest.h>

#include <csignal>

namespace quillon {
namespace {

TEST(AssertionFailureDeathTest, NamesThePlaceAndTheConditionAndAborts) {
    EXPECT_EXIT(assertionFailure("-[Thing do:]", "Thing", 12, "NO"), testing::KilledBySignal(SIGABRT),
                "^Thing:12: -\\[Thing do:\\]: Assertion `NO' failed\\.");
}

}  // namespace
}  // namespace quillon
