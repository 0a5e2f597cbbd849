#include "pdf/filter/Flate.h"
#include "pdf/read/ObjectStreamPrefetcher.h"
#include "pdf/read/StreamText.h"
#include "tests/support/RawPdf.h"
#include "tests/support/TempDir.h"

#include <gtest/gtest.h>

#include <chrono>
#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <thread>
#include <vector>

namespace quillon::pdf {
namespace {

using test::RawPdf;
using namespace std::chrono_literals;
using Clock = std::chrono::steady_clock;

// The thread that reads may be kept waiting by others, but not for so long.
constexpr auto longest = 20s;

class ObjectStreamPrefetcherTest : public testing::Test {
protected:
    /// A file with object streams, each of one object: a string of `length` characters, which are all the last digit of
    /// the stream's number.
    void open(std::uint32_t count, std::size_t length) {
        RawPdf pdf;
        for (std::uint32_t number = 1; number <= count; ++number) {
            std::string data;
            const std::string value = '(' + std::string(length, static_cast<char>('0' + number % 10)) + ')';
            Deflater(1).deflate(std::to_string(1000 + number) + " 0 " + value, data);
            const std::string index = std::to_string(std::string_view("1000 0 ").size());
            wanted.push_back({number, pdf.size()});
            pdf.stream(static_cast<int>(number), "/Type/ObjStm/N 1/First " + index + "/Filter/FlateDecode", data);
        }
        file = InputFile::open(dir.write("in.pdf", pdf.bytes()));
    }

    /// What is wrong with a stream; empty if nothing is.
    static std::string faultOf(const ObjectStream& objects, std::uint32_t number, std::size_t length) {
        if (objects.count() != 1 || objects.numberAt(0) != 1000 + number) return "another index";
        const std::string value = '(' + std::string(length, static_cast<char>('0' + number % 10)) + ')';
        return objects.textAt(0) == value ? "" : "another text";
    }

    /// Asks for all streams and looks at those that are given. Returns how many that are.
    std::size_t takeAll(ObjectStreamPrefetcher& prefetcher, std::size_t length) const {
        std::size_t given = 0;
        for (const auto& [number, offset] : wanted) {
            const auto objects = prefetcher.take(*file, number);
            if (!objects) continue;
            ++given;
            EXPECT_EQ(faultOf(*objects, number, length), "") << number;
        }
        return given;
    }

    test::TempDir dir;
    std::shared_ptr<InputFile> file;
    std::vector<ObjectStreamPrefetcher::Wanted> wanted;
};

TEST_F(ObjectStreamPrefetcherTest, GivesEachStreamOnce) {
    constexpr std::size_t length = 1000;
    open(50, length);
    std::size_t given = 0;
    for (auto pause = 1ms; given == 0 && pause < longest; pause *= 2) {
        ObjectStreamPrefetcher prefetcher;
        prefetcher.expect(file, wanted);
        std::this_thread::sleep_for(pause);
        given = takeAll(prefetcher, length);
        EXPECT_EQ(takeAll(prefetcher, length), 0U);
    }
    EXPECT_GT(given, 0U);
}

TEST_F(ObjectStreamPrefetcherTest, AStreamIsTakenOrGivenUpAtAnyMoment) {
    constexpr std::size_t length = 300'000;
    open(9, length);
    std::size_t given = 0;
    const auto end = Clock::now() + longest;
    for (int round = 0; round < 200 || (given == 0 && Clock::now() < end); ++round) {
        ObjectStreamPrefetcher prefetcher;
        prefetcher.expect(file, wanted);
        std::this_thread::sleep_for(std::chrono::microseconds(10 * round));
        given += takeAll(prefetcher, length);
    }
    EXPECT_GT(given, 0U);
}

TEST_F(ObjectStreamPrefetcherTest, ALongStreamIsWaitedForOnceItsDataIsThere) {
    // Noise, which takes many times longer to inflate than the caller waits for others.
    constexpr std::size_t length = 16U << 20U;
    std::string noise(length, '\0');
    std::uint32_t state = 1;
    for (char& c : noise) c = static_cast<char>('A' + (state = state * 1664525 + 1013904223) / (UINT32_MAX / 32));
    std::string data;
    Deflater(1).deflate("7 0 (" + noise + ')', data);
    RawPdf pdf;
    wanted.push_back({1, pdf.size()});
    pdf.stream(1, "/Type/ObjStm/N 1/First 4/Filter/FlateDecode", data);
    file = InputFile::open(dir.write("in.pdf", pdf.bytes()));

    BlockCache cache(file);
    const auto begin = Clock::now();
    ASSERT_NE(ObjectStream::decode(*readStreamAt(cache, wanted.front().offset)), nullptr);
    const auto whole = Clock::now() - begin;
    // Asked for at moments all over the time that it takes to be read, until one hits that in which it is inflated.
    bool isWaitedFor = false;
    const auto end = Clock::now() + longest;
    for (int round = 0; !isWaitedFor && Clock::now() < end; ++round) {
        ObjectStreamPrefetcher prefetcher;
        prefetcher.expect(file, wanted);
        std::this_thread::sleep_for(whole * (round % 20) / 20);
        const auto asked = Clock::now();
        const auto objects = prefetcher.take(*file, 1);
        isWaitedFor = objects && Clock::now() > asked + whole / 8;
        if (objects) {
            ASSERT_TRUE(objects->textAt(0) == '(' + noise + ')');
        }
    }
    EXPECT_TRUE(isWaitedFor);
}

TEST_F(ObjectStreamPrefetcherTest, WhatIsForgottenIsNotGiven) {
    constexpr std::size_t length = 100'000;
    open(20, length);
    ObjectStreamPrefetcher prefetcher;
    // Far more than it reads ahead in all, so that what is forgotten must not count.
    for (int round = 0; round < 100; ++round) {
        prefetcher.expect(file, wanted);
        std::this_thread::sleep_for(std::chrono::microseconds(50 * round));
        static_cast<void>(prefetcher.take(*file, 1));
        prefetcher.forget(*file);
        EXPECT_EQ(takeAll(prefetcher, length), 0U);
    }
    std::size_t given = 0;
    for (auto pause = 1ms; given == 0 && pause < longest; pause *= 2) {
        prefetcher.expect(file, wanted);
        std::this_thread::sleep_for(pause);
        given = takeAll(prefetcher, length);
    }
    EXPECT_GT(given, 0U);
}

TEST_F(ObjectStreamPrefetcherTest, AStreamUnderAnotherNumberIsNotGiven) {
    open(3, 100);
    std::shared_ptr<const ObjectStream> last;
    for (auto pause = 1ms; !last && pause < longest; pause *= 2) {
        ObjectStreamPrefetcher prefetcher;
        prefetcher.expect(file, {{7, wanted[0].offset}, {8, wanted[1].offset + 1}, {9, file->size() + 10}, wanted[2]});
        std::this_thread::sleep_for(pause);
        // Once it has come to this, it has been at the others.
        last = prefetcher.take(*file, 3);
        for (const std::uint32_t number : {7U, 8U, 9U}) EXPECT_EQ(prefetcher.take(*file, number), nullptr) << number;
    }
    EXPECT_NE(last, nullptr);
}

}  // namespace
}  // namespace quillon::pdf
