#include "platform/store/ColorArchive.h"

#include <gtest/gtest.h>

using namespace quillon;

namespace {

TEST(ColorArchive, GivesBackTheColourWithItsOpacity) {
    for (const QColor& color : {QColor(Qt::black), QColor(1, 2, 3), QColor(250, 128, 0, 77), QColor(0, 0, 0, 0)}) {
        EXPECT_EQ(ColorArchive::unarchiveObjectWithData(ColorArchive::archivedDataWithRootObject(color)), color);
    }
}

TEST(ColorArchive, OtherBytesAreNoColour) {
    for (const char* bytes : {"", "red", "#fff", "#12345g78", "#ffffffff0", "\xff\xff\xff\xff\xff\xff\xff\xff\xff"}) {
        EXPECT_FALSE(ColorArchive::unarchiveObjectWithData(bytes).isValid()) << bytes;
    }
    EXPECT_FALSE(ColorArchive::unarchiveObjectWithData(QByteArray(9, '\0')).isValid());
}

}  // namespace
