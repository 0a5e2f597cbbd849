#include "pdf/object/ObjectMap.h"

#include <gtest/gtest.h>

#include <map>
#include <random>

namespace quillon::pdf {
namespace {

TEST(ObjectMap, AValueThatWasNotSetIsTheDefault) {
    const ObjectMap<int> map;
    EXPECT_EQ(map.get(0), 0);
    EXPECT_EQ(map.get(UINT32_MAX), 0);
}

TEST(ObjectMap, AHugeNumberCostsLittle) {
    ObjectMap<std::uint64_t> map(1000);
    map.at(2'000'000'000) = 7;
    map.at(UINT32_MAX) = 8;
    EXPECT_EQ(map.get(2'000'000'000), 7U);
    EXPECT_EQ(map.get(UINT32_MAX), 8U);
    EXPECT_LT(map.memory(), 10'000U);
}

TEST(ObjectMap, RoomThatTheFileCannotNeedIsNotMade) {
    ObjectMap<std::uint64_t> map(1000);
    map.expect(2'000'000'000);
    EXPECT_LT(map.memory(), 10'000U);
    map.expect(100);
    EXPECT_EQ(map.denseSize(), 100U);
}

TEST(ObjectMap, HoldsWhatAMapHolds) {
    std::mt19937 random(3);
    ObjectMap<std::uint32_t> map(50'000);
    std::map<std::uint32_t, std::uint32_t> model;
    for (int i = 0; i < 5000; ++i) {
        const auto number = static_cast<std::uint32_t>(random() % 40'000);  // on both sides of the array's limit
        model[number] = map.at(number) = static_cast<std::uint32_t>(random()) | 1U;
    }
    std::map<std::uint32_t, std::uint32_t> visited;
    map.forEach([&](std::uint32_t number, std::uint32_t value) {
        if (value != 0) visited[number] = value;
    });
    EXPECT_EQ(visited, model);
    for (const auto& [number, value] : model) EXPECT_EQ(map.get(number), value);
}

}  // namespace
}  // namespace quillon::pdf
