#include "pdf/filter/Flate.h"

#include <gtest/gtest.h>

#include <random>
#include <string>

namespace quillon::pdf {
namespace {

std::string deflated(std::string_view data) {
    std::string out;
    Deflater(6).deflate(data, out);
    return out;
}

std::string numbers(int count) {
    std::string text;
    for (int i = 0; i < count; ++i) text += std::to_string(i) + ' ';
    return text;
}

TEST(Flate, GivesBackWhatWasDeflated) {
    for (const int count : {0, 1, 100, 300'000}) {
        const std::string text = numbers(count);
        EXPECT_EQ(inflate(deflated(text), 10'000'000), text);
    }
}

TEST(Flate, AWrongChecksumDoesNotMatter) {
    std::string data = deflated(numbers(1000));
    data.back() = static_cast<char>(data.back() ^ 1);
    EXPECT_EQ(inflate(data, 100'000), numbers(1000));
}

TEST(Flate, DataThatBreaksOffGivesWhatComesBefore) {
    const std::string text = numbers(10'000);
    const std::string data = deflated(text);
    for (const std::size_t length :
         {data.size() - 1, data.size() - 5, data.size() / 2, std::size_t{10}, std::size_t{0}}) {
        const auto out = inflate(std::string_view(data).substr(0, length), 1'000'000);
        ASSERT_TRUE(out) << length;
        EXPECT_TRUE(text.starts_with(*out)) << length;
        if (length > data.size() / 3) {
            EXPECT_GT(out->size(), text.size() / 4) << length;
        }
    }
}

TEST(Flate, DamageInTheMiddleGivesWhatComesBefore) {
    const std::string text = numbers(50'000);
    std::string data = deflated(text);
    const std::size_t middle = data.size() / 2;
    for (std::size_t i = 0; i < 64; ++i) data[middle + i] = '\xff';
    const auto out = inflate(data, 1'000'000);
    ASSERT_TRUE(out);
    EXPECT_GT(out->size(), text.size() / 4);
    EXPECT_EQ(out->substr(0, text.size() / 4), text.substr(0, text.size() / 4));
}

TEST(Flate, BytesBehindTheDataDoNotMatter) {
    EXPECT_EQ(inflate(deflated("abc") + "\r\n  ", 100), "abc");
}

TEST(Flate, MoreThanTheLimitIsRefused) {
    const std::string data = deflated(std::string(1000, 'x'));
    EXPECT_EQ(inflate(data, 1000), std::string(1000, 'x'));
    EXPECT_FALSE(inflate(data, 999));
    EXPECT_FALSE(inflate(data.substr(0, data.size() - 4), 10));  // damaged as well
}

TEST(Flate, ABombIsRefused) {
    const std::string bomb = deflated(std::string(64U << 20U, '\0'));
    EXPECT_LT(bomb.size(), 100'000U);
    EXPECT_FALSE(inflate(bomb, 1U << 20U));
}

TEST(Flate, RandomBytesDoNoHarm) {
    std::mt19937 random(23);
    for (int round = 0; round < 500; ++round) {
        std::string data = "\x78\x9c";
        for (auto n = random() % 200; n > 0; --n) data += static_cast<char>(random());
        const auto out = inflate(data, 100'000);
        EXPECT_LE(out.value_or("").size(), 100'000U);
    }
}

}  // namespace
}  // namespace quillon::pdf
