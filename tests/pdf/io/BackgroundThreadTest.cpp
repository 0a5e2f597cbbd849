#include "pdf/io/BackgroundThread.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <sys/resource.h>
#include <thread>
#include <unistd.h>

namespace quillon::pdf {
namespace {

int niceness() {
    return ::getpriority(PRIO_PROCESS, static_cast<id_t>(::gettid()));
}

TEST(BackgroundThread, OnlyTheCallingThreadGivesWay) {
    const int before = niceness();
    int inThread = 0;
    std::thread([&] {
        giveWay(2);
        giveWay(1);
        inThread = niceness();
    }).join();
    EXPECT_EQ(inThread, std::min(before + 3, 19));
    EXPECT_EQ(niceness(), before);
}

}  // namespace
}  // namespace quillon::pdf
