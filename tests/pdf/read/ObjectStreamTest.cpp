#include "pdf/read/ObjectStream.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdint>
#include <memory>
#include <numeric>
#include <optional>
#include <random>
#include <string>
#include <vector>

namespace quillon::pdf {
namespace {

/// An object stream of objects with these numbers; the value of each is its place in the stream.
std::shared_ptr<const ObjectStream> streamOf(const std::vector<std::uint32_t>& numbers) {
    std::string index;
    std::string values;
    for (std::size_t place = 0; place < numbers.size(); ++place) {
        index += std::to_string(numbers[place]) + ' ' + std::to_string(values.size()) + ' ';
        values += std::to_string(place) + ' ';
    }
    StreamText stream;
    stream.dictionary.append("N", Object(static_cast<std::int64_t>(numbers.size())));
    stream.dictionary.append("First", Object(static_cast<std::int64_t>(index.size())));
    stream.data = index + values;
    return ObjectStream::decode(stream);
}

/// Short ones and long ones.
class ObjectStreamOfSize : public testing::TestWithParam<std::size_t> {
protected:
    /// Different numbers in no order.
    [[nodiscard]] static std::vector<std::uint32_t> numbers() {
        std::vector<std::uint32_t> result(GetParam());
        std::iota(result.begin(), result.end(), 100U);
        std::ranges::shuffle(result, std::mt19937(31));
        return result;
    }
};

INSTANTIATE_TEST_SUITE_P(All, ObjectStreamOfSize, testing::Values(1, 2, 255, 256, 257, 3000));

TEST_P(ObjectStreamOfSize, FindsEveryObjectWhateverTheHint) {
    const std::vector<std::uint32_t> all = numbers();
    const auto stream = streamOf(all);
    ASSERT_TRUE(stream);
    ASSERT_EQ(stream->count(), all.size());
    for (std::size_t place = 0; place < all.size(); ++place) {
        for (const std::size_t hint : {place, place + 1, std::size_t{0}, std::size_t{65535}}) {
            ASSERT_EQ(stream->find(all[place], hint), place);
        }
        ASSERT_EQ(stream->textAt(place).substr(0, std::to_string(place).size()), std::to_string(place));
    }
}

TEST_P(ObjectStreamOfSize, FindsObjectsThatStandInOrder) {
    std::vector<std::uint32_t> all = numbers();
    std::ranges::sort(all);
    const auto stream = streamOf(all);
    ASSERT_TRUE(stream);
    for (std::size_t place = 0; place < all.size(); ++place) ASSERT_EQ(stream->find(all[place], place + 1), place);
}

TEST_P(ObjectStreamOfSize, FindsNothingElse) {
    const auto stream = streamOf(numbers());
    ASSERT_TRUE(stream);
    for (const std::uint32_t absent : {std::uint32_t{0}, std::uint32_t{99}, UINT32_MAX}) {
        EXPECT_EQ(stream->find(absent, 0), std::nullopt);
    }
    EXPECT_EQ(stream->find(static_cast<std::uint32_t>(100 + GetParam()), 0), std::nullopt);
}

TEST_P(ObjectStreamOfSize, OfSeveralWithTheSameNumberTheFirstIsMeantUnlessTheHintSaysOtherwise) {
    std::vector<std::uint32_t> all = numbers();
    all.insert(all.end(), {7, 7});
    const auto stream = streamOf(all);
    ASSERT_TRUE(stream);
    EXPECT_EQ(stream->find(7, 65535), all.size() - 2);
    EXPECT_EQ(stream->find(7, all.size() - 1), all.size() - 1);
}

}  // namespace
}  // namespace quillon::pdf
