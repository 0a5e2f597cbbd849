#include "pdf/filter/Flate.h"
#include "pdf/object/Parser.h"
#include "pdf/security/FileKey.h"
#include "pdf/write/OutputPipeline.h"
#include "tests/support/Process.h"
#include "tests/support/Sanitizer.h"
#include "tests/support/TempDir.h"

#include <gtest/gtest.h>

#include <chrono>
#include <csignal>
#include <cstdint>
#include <fstream>
#include <iterator>
#include <map>
#include <memory>
#include <random>
#include <string>
#include <sys/resource.h>
#include <thread>
#include <unistd.h>
#include <utility>

namespace quillon::pdf {
namespace {

std::string contentOf(const std::string& path) {
    std::ifstream stream(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(stream), {}};
}

std::string noise(std::mt19937& random, std::size_t length) {
    std::string text(length, '\0');
    for (char& c : text) c = static_cast<char>('a' + random() % 8);
    return text;
}

class OutputPipelineTest : public testing::Test {
protected:
    /// Writes many things of every kind, some megabytes in all, and returns the file.
    std::string writeMany(const std::string& name) {
        std::mt19937 random(47);
        const auto file = OutputFile::create(dir.file(name));
        const auto input = InputFile::open(dir.write("input", noise(random, 300'000)));
        OutputPipeline pipeline(*file);
        const auto codes = std::make_shared<const DeflateCodes>("an object");
        for (std::uint32_t i = 1; i <= 400; ++i) {
            const std::string label = std::to_string(i) + " 0 obj";
            if (i % 3 == 0) {
                pipeline.writeObjectStream(i, "/Number " + std::to_string(i), noise(random, 60'000), {{i, 0}}, codes);
            } else if (i % 7 == 0) {
                pipeline.copy(input, {{i, 100'000}, {5, 10}});
            } else {
                pipeline.write("--" + label + noise(random, 1000), {{i, 2}});
            }
        }
        EXPECT_TRUE(pipeline.finish());
        digest = pipeline.digest();
        places.clear();
        for (const auto& placed : pipeline.places()) places[placed.number] = placed.offset;
        EXPECT_TRUE(file->commit(false));
        return contentOf(dir.file(name));
    }

    test::TempDir dir;
    std::map<std::uint32_t, std::uint64_t> places;
    XXH128_hash_t digest{};
};

TEST_F(OutputPipelineTest, WritesInTheOrderOfTheCalls) {
    const std::string text = writeMany("a");
    std::uint64_t last = 0;
    for (const auto& [number, offset] : places) {
        EXPECT_GE(offset, last);
        last = offset;
    }
    EXPECT_EQ(places.size(), 400U - 400 / 7 + 400 / 21);
}

TEST_F(OutputPipelineTest, SaysWhereEachObjectIs) {
    const std::string text = writeMany("a");
    for (const auto& [number, offset] : places) {
        EXPECT_TRUE(text.substr(offset).starts_with(std::to_string(number) + " 0 obj")) << number;
    }
}

TEST_F(OutputPipelineTest, GivesTheSameBytesAndDigestEveryTime) {
    const std::string first = writeMany("a");
    const XXH128_hash_t firstDigest = digest;
    for (int round = 0; round < 3; ++round) {
        EXPECT_TRUE(writeMany("b") == first);
        EXPECT_TRUE(XXH128_isEqual(digest, firstDigest));
    }
}

TEST_F(OutputPipelineTest, WritesTheIndexOfAnObjectStream) {
    const auto file = OutputFile::create(dir.file("out"));
    OutputPipeline pipeline(*file);
    const auto codes = std::make_shared<const DeflateCodes>("an object");
    pipeline.writeObjectStream(1, "/N 2", std::string(2 * indexBytesOfObject, ' ') + "true\nfalse\n", {{17, 0}, {4, 5}},
                               codes);
    EXPECT_TRUE(pipeline.finish());
    EXPECT_TRUE(file->commit(false));
    const std::string text = contentOf(dir.file("out"));
    const std::size_t data = text.find("stream\n") + std::string_view("stream\n").size();
    EXPECT_EQ(inflate(std::string_view(text).substr(data), 1000), "17 0 4 5" + std::string(36, ' ') + "true\nfalse\n");
}

TEST_F(OutputPipelineTest, CopiesRangesOfAFile) {
    const auto file = OutputFile::create(dir.file("out"));
    const auto input = InputFile::open(dir.write("input", "0123456789"));
    OutputPipeline pipeline(*file);
    pipeline.write("<", {});
    pipeline.copy(input, {{2, 3}, {0, 2}, {9, 1}});
    pipeline.write(">", {});
    EXPECT_TRUE(pipeline.finish());
    EXPECT_TRUE(pipeline.shortened().empty());
    EXPECT_TRUE(file->commit(false));
    EXPECT_EQ(contentOf(dir.file("out")), "<234019>");
}

TEST_F(OutputPipelineTest, WritesALittleWithoutBeingAskedFor) {
    using namespace std::chrono_literals;
    const auto file = OutputFile::create(dir.file("out"));
    auto input = InputFile::open(dir.write("input", "a few bytes"));
    const std::weak_ptr<InputFile> copied = input;
    OutputPipeline pipeline(*file);
    std::this_thread::sleep_for(50ms);  // the writer waits by now
    pipeline.copy(std::move(input), {{0, 11}});
    for (int i = 0; i < 1000 && !copied.expired(); ++i) std::this_thread::sleep_for(10ms);
    EXPECT_TRUE(copied.expired());  // what is written is not kept
    EXPECT_TRUE(pipeline.finish());
}

TEST_F(OutputPipelineTest, MakesUpWhatIsMissingOfAFileThatBecameShorter) {
    const auto file = OutputFile::create(dir.file("out"));
    const std::string path = dir.write("input", "0123456789");
    const auto input = InputFile::open(path);
    std::filesystem::resize_file(path, 4);
    OutputPipeline pipeline(*file);
    pipeline.copy(input, {{2, 6}, {8, 2}});
    EXPECT_TRUE(pipeline.finish());
    EXPECT_EQ(pipeline.shortened(), std::vector<std::string>{path});
    EXPECT_TRUE(file->commit(false));
    EXPECT_EQ(contentOf(dir.file("out")), std::string("23\0\0\0\0\0\0", 8));
}

TEST_F(OutputPipelineTest, EnciphersCopiedDataAsAWhole) {
    std::mt19937 random(47);
    const std::string text = noise(random, 1'000'000);
    const auto input = InputFile::open(dir.write("input", text));
    const auto file = OutputFile::create(dir.file("out"));
    const Encryptor encryptor({"u", {}});
    OutputPipeline pipeline(*file, &encryptor);
    const std::vector<std::pair<std::uint64_t, std::uint64_t>> copies{{0, 1'000'000}, {7, 700'001}, {3, 16}};
    for (const auto& [offset, length] : copies)
        pipeline.copy(input, {{offset, length / 2}, {offset + length / 2, length - length / 2}});
    EXPECT_TRUE(pipeline.finish());
    EXPECT_TRUE(file->commit(false));
    const std::string sealed = contentOf(dir.file("out"));
    const auto dictionary = EncryptionDictionary::read(*Parser(encryptor.dictionary()).parse().dictionary(), {});
    const auto key = openWithPassword(dictionary, "u");
    std::size_t at = 0;
    for (const auto& [offset, length] : copies) {
        std::string data = sealed.substr(at, Encryptor::lengthOf(length));
        at += data.size();
        decryptStream({Cipher::Aes256, key.value().key}, data);
        EXPECT_TRUE(data == text.substr(offset, length)) << offset;
    }
    EXPECT_EQ(at, sealed.size());
}

TEST_F(OutputPipelineTest, SaysThatWritingFailed) {
    for (const std::size_t length : {100'000U, 10U}) {
        const int result = test::inChildProcess([this, length] {
            std::signal(SIGXFSZ, SIG_IGN);
            const rlimit limit{1000, 1000};
            if (::setrlimit(RLIMIT_FSIZE, &limit) != 0) return 9;
            const auto file = OutputFile::create(dir.file("out"));
            OutputPipeline pipeline(*file);
            for (int i = 0; i < 200; ++i) pipeline.write(std::string(length, 'x'), {});
            if (pipeline.finish()) return 8;
            return pipeline.finish() ? 7 : 0;
        });
        EXPECT_EQ(result, 0) << length;
    }
}

/// Leaves this process no more than `bytes` of memory to take.
bool limitMemory(std::uint64_t bytes) {
    std::uint64_t pages = 0;
    std::ifstream("/proc/self/statm") >> pages;
    const rlim_t most = pages * static_cast<std::uint64_t>(::sysconf(_SC_PAGESIZE)) + bytes;
    const rlimit limit{most, most};
    return ::setrlimit(RLIMIT_AS, &limit) == 0;
}

TEST_F(OutputPipelineTest, SaysThatMemoryWasNotEnough) {
    if (test::isSanitized) GTEST_SKIP() << "the sanitizer takes all addresses for itself";
    const auto input = InputFile::open(dir.write("input", std::string(10'000'000, 'x')));
    const int result = test::inChildProcess([&] {
        const auto file = OutputFile::create(dir.file("out"));
        std::string body(100 << 20, 'x');
        const auto codes = std::make_shared<const DeflateCodes>("an object");
        OutputPipeline pipeline(*file);
        if (!limitMemory(20 << 20)) return 9;
        pipeline.writeObjectStream(1, "/Number 1", std::move(body), {{1, 0}}, codes);
        pipeline.copy(input, {{0, 10'000'000}});
        return pipeline.finish() ? 8 : 0;
    });
    EXPECT_EQ(result, 0);
}

}  // namespace
}  // namespace quillon::pdf
