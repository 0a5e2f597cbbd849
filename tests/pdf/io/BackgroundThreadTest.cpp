#include "pdf/io/BackgroundThread.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <sys/resource.h>
#include <thread>
#include <unistd.h>
#include <vector>

namespace quillon::pdf {
namespace {

int niceness() {
    return ::getpriority(PRIO_PROCESS, static_cast<id_t>(::gettid()));
}

TEST(BackgroundThread, OnlyTheCallingThreadAndThoseThatItStartsGiveWay) {
    const int before = niceness();
    std::vector<int> inThreads;
    std::thread([&] {
        giveWay(2);
        inThreads.push_back(niceness());
        giveWay(1);
        inThreads.push_back(niceness());
        std::thread([&] {
            giveWay(3);
            inThreads.push_back(niceness());
        }).join();
    }).join();
    const auto below = [&](int steps) { return std::min(before + steps, 19); };
    EXPECT_EQ(inThreads, (std::vector<int>{below(2), below(2), below(3)}));
    EXPECT_EQ(niceness(), before);
}

}  // namespace
}  // namespace quillon::pdf
