#include "pdf/write/ObjectStreamIndex.h"

#include <gtest/gtest.h>

#include <array>
#include <string>

namespace quillon::pdf {
namespace {

TEST(ObjectStreamIndex, StandsInFrontOfTheObjects) {
    std::string body = std::string(66, ' ') + "null";
    const std::array<PackedObject, 3> objects{{{7, 0}, {4294967295U, 12}, {0, 4294967295U}}};
    writeObjectStreamIndex(objects, body);
    const std::string index = "7 0 4294967295 12 0 4294967295";
    EXPECT_EQ(body, index + std::string(66 - index.size(), ' ') + "null");
}

TEST(ObjectStreamIndex, FillsItsRoomWithTheHighestNumbers) {
    std::string body = std::string(22, ' ') + "null";
    const std::array<PackedObject, 1> objects{{{4294967295U, 4294967295U}}};
    writeObjectStreamIndex(objects, body);
    EXPECT_EQ(body, "4294967295 4294967295 null");
}

TEST(ObjectStreamIndex, LeavesTheBodyOfNoObjectsAsItIs) {
    std::string body = "  ";
    writeObjectStreamIndex({}, body);
    EXPECT_EQ(body, "  ");
}

}  // namespace
}  // namespace quillon::pdf
