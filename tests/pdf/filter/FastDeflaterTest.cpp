#include "pdf/filter/FastDeflater.h"
#include "pdf/filter/Flate.h"

#include <gtest/gtest.h>

#include <random>
#include <string>
#include <thread>
#include <vector>

namespace quillon::pdf {
namespace {

std::string numbers(int count) {
    std::string text;
    for (int i = 0; i < count; ++i) text += std::to_string(i) + " 0 R ";
    return text;
}

std::string noise(std::size_t bytes) {
    std::mt19937 random(5);
    std::string text(bytes, '\0');
    for (char& c : text) c = static_cast<char>(random());
    return text;
}

std::string deflated(std::string_view data, const DeflateCodes& codes) {
    std::string out = "what was there";
    FastDeflater().deflate(data, codes, out);
    return out;
}

TEST(FastDeflater, GivesBackWhatWasDeflated) {
    const DeflateCodes codes(numbers(1000));
    for (const std::string& text : {std::string(), std::string("a"), numbers(1000), numbers(200'000)}) {
        const std::string data = deflated(text, codes);
        EXPECT_EQ(inflate(data, 10'000'000), text);
        if (text.size() > 1000) {
            EXPECT_LT(data.size(), text.size() / 2);
        }
    }
}

TEST(FastDeflater, WhatDoesNotResembleTheSampleIsDeflatedAllTheSame) {
    for (const std::string& sample : {std::string(), numbers(1000), noise(1000)}) {
        const DeflateCodes codes(sample);
        for (const std::size_t bytes : {std::size_t{1}, std::size_t{300}, std::size_t{100'000}}) {
            const std::string data = deflated(noise(bytes), codes);
            EXPECT_EQ(inflate(data, 1'000'000), noise(bytes));
            EXPECT_LT(data.size(), bytes + bytes / 50 + 400);
        }
    }
}

TEST(FastDeflater, TheResultDependsOnNothingElse) {
    const DeflateCodes codes(numbers(1000));
    const std::string expected = deflated(numbers(5000), codes);
    FastDeflater used;
    std::string out;
    for (int round = 0; round < 3; ++round) {
        used.deflate(noise(70'000), DeflateCodes(noise(100)), out);
        used.deflate(numbers(5000), DeflateCodes(numbers(1000)), out);
        EXPECT_EQ(out, expected);
    }
    std::string elsewhere;
    std::thread([&] { elsewhere = deflated(numbers(5000), codes); }).join();
    EXPECT_EQ(elsewhere, expected);
}

}  // namespace
}  // namespace quillon::pdf
