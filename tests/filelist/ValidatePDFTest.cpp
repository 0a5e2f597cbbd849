#include "filelist/ValidatePDF.h"
#include "tests/support/TempDir.h"

#include <gtest/gtest.h>

#include <string>
#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/un.h>
#include <unistd.h>

using namespace quillon;

namespace {

class HeaderCheck : public testing::Test {
protected:
    [[nodiscard]] bool passes(const std::string& bytes) const {
        return ValidatePDF::isPDFValidate(dir_.write("file", bytes).c_str());
    }

    test::TempDir dir_;
};

TEST_F(HeaderCheck, TheFirstFourBytesDecide) {
    EXPECT_TRUE(passes("%PDF-1.7\n"));
    EXPECT_TRUE(passes("%PDFanything"));
    EXPECT_TRUE(passes("%PDF"));
}

TEST_F(HeaderCheck, AThreeByteFileFails) {
    EXPECT_FALSE(passes("%PD"));
}

TEST_F(HeaderCheck, AnEmptyFileFails) {
    EXPECT_FALSE(passes(""));
}

TEST_F(HeaderCheck, OtherFirstBytesFail) {
    EXPECT_FALSE(passes("%pdf-1.7"));
    EXPECT_FALSE(passes("\n%PDF-1.7"));
    EXPECT_FALSE(passes("\x89PNG\r\n"));
}

TEST_F(HeaderCheck, ANulAmongTheFirstBytesFails) {
    EXPECT_FALSE(passes(std::string("%PD\0F", 5)));
    EXPECT_FALSE(passes(std::string("\0%PDF", 5)));
}

TEST_F(HeaderCheck, WhatCannotBeReadFails) {
    EXPECT_FALSE(ValidatePDF::isPDFValidate(dir_.file("missing").c_str()));
    EXPECT_FALSE(ValidatePDF::isPDFValidate(dir_.path().c_str()));
    EXPECT_FALSE(ValidatePDF::isPDFValidate(""));
}

TEST_F(HeaderCheck, AFifoIsNotWaitedFor) {
    const std::string path = dir_.file("fifo");
    ASSERT_EQ(mkfifo(path.c_str(), 0600), 0);
    EXPECT_FALSE(ValidatePDF::isPDFValidate(path.c_str()));
}

TEST_F(HeaderCheck, ASocketFails) {
    const std::string path = dir_.file("socket");
    sockaddr_un address{};
    address.sun_family = AF_UNIX;
    ASSERT_LT(path.size(), sizeof address.sun_path);
    path.copy(address.sun_path, path.size());
    const int socket = ::socket(AF_UNIX, SOCK_STREAM, 0);
    ASSERT_EQ(bind(socket, reinterpret_cast<const sockaddr*>(&address), sizeof address), 0);
    EXPECT_FALSE(ValidatePDF::isPDFValidate(path.c_str()));
    close(socket);
}

}  // namespace
