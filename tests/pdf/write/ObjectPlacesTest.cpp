#include "pdf/filter/Flate.h"
#include "pdf/filter/Predictor.h"
#include "pdf/write/ObjectPlaces.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <string>

namespace quillon::pdf {
namespace {

/// The rows as a reader gets them.
std::string rows(const ObjectPlaces& places, unsigned width) {
    Dictionary parameters;
    parameters.append("Predictor", std::int64_t{12});
    parameters.append("Columns", static_cast<std::int64_t>(ObjectPlaces::rowBytes(width)));
    return undoPrediction(parameters, inflate(places.deflatedRows(width), 1U << 30U).value_or("cannot be inflated"));
}

std::string bytes(std::initializer_list<unsigned> values) {
    std::string text;
    for (const unsigned value : values) text += static_cast<char>(value);
    return text;
}

TEST(ObjectPlaces, NumbersFollowEachOther) {
    ObjectPlaces places;
    EXPECT_EQ(places.next(), 1U);
    EXPECT_EQ(places.reserve(), 1U);
    EXPECT_EQ(places.reserve(), 2U);
    EXPECT_EQ(places.next(), 3U);
}

TEST(ObjectPlaces, EachKindOfPlaceHasItsRow) {
    ObjectPlaces places;
    for (int i = 0; i < 3; ++i) places.reserve();
    places.setInFile(1, 0x123456);
    places.setInStream(2, 0x789, 0xABC);
    const std::string expected = bytes({0, 0, 0, 0, 0xFF, 0xFF})             // the head of the free objects
                                 + bytes({1, 0x12, 0x34, 0x56, 0, 0})        // in the file
                                 + bytes({2, 0x00, 0x07, 0x89, 0x0A, 0xBC})  // in an object stream
                                 + bytes({0, 0, 0, 0, 0, 0});                // nowhere
    EXPECT_EQ(rows(places, 3), expected);
}

TEST(ObjectPlaces, PlacesMayTakeEightBytes) {
    for (unsigned width = 1; width <= 8; ++width) {
        ObjectPlaces places;
        places.reserve();
        const std::uint64_t offset = 0x7123456789ABCDEFU >> (64 - 8 * width);
        places.setInFile(1, offset);
        std::string expected = bytes({0}) + std::string(width, '\0') + bytes({0xFF, 0xFF, 1});
        for (unsigned i = width; i > 0; --i) expected += static_cast<char>(offset >> (8 * (i - 1)) & 0xFFU);
        EXPECT_EQ(rows(places, width), expected + bytes({0, 0})) << width;
    }
}

TEST(ObjectPlaces, ManyRowsAreDeflatedAtOneGo) {
    for (const std::uint32_t count : {8190U, 8191U, 8192U, 16'383U, 100'000U}) {
        ObjectPlaces places;
        std::string expected = bytes({0, 0, 0, 0, 0xFF, 0xFF});
        for (std::uint32_t i = 1; i <= count; ++i) {
            places.setInFile(places.reserve(), i * 37);
            expected += bytes({1, i * 37 >> 16U & 0xFFU, i * 37 >> 8U & 0xFFU, i * 37 & 0xFFU, 0, 0});
        }
        EXPECT_TRUE(rows(places, 3) == expected) << count;
        EXPECT_LT(places.deflatedRows(3).size(), expected.size() / 4) << count;
        EXPECT_EQ(places.deflatedRows(3), places.deflatedRows(3)) << count;
        // Some readers lose their place at an empty stored block.
        EXPECT_EQ(places.deflatedRows(3).find(std::string("\0\0\xFF\xFF", 4)), std::string::npos) << count;
    }
}

}  // namespace
}  // namespace quillon::pdf
