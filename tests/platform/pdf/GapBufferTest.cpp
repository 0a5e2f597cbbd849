#include "platform/pdf/GapBuffer.h"

#include <gtest/gtest.h>

#include <memory>
#include <random>
#include <vector>

namespace quillon {
namespace {

template <class T>
std::vector<T> itemsOf(const GapBuffer<T>& buffer) {
    std::vector<T> items;
    for (std::size_t i = 0; i < buffer.size(); ++i) items.push_back(buffer[i]);
    return items;
}

TEST(GapBuffer, IsEmptyAtFirst) {
    EXPECT_EQ(GapBuffer<int>().size(), 0U);
}

TEST(GapBuffer, HoldsTheItemsThatItIsMadeOf) {
    EXPECT_EQ(itemsOf(GapBuffer<int>({1, 2, 3})), (std::vector<int>{1, 2, 3}));
}

TEST(GapBuffer, HoldsWhatAVectorHolds) {
    std::mt19937 random(71);
    std::vector<int> model{1, 2, 3};
    GapBuffer<int> buffer(model);
    for (int step = 0; step < 5000; ++step) {
        const bool growing = step % 2000 < 1200;  // long runs of growth and of decay
        if (model.empty() || random() % 4 < (growing ? 3U : 1U)) {
            const std::size_t at = random() % (model.size() + 1);
            model.insert(model.begin() + static_cast<std::ptrdiff_t>(at), step);
            buffer.insert(at, step);
        } else {
            const std::size_t at = random() % model.size();
            model.erase(model.begin() + static_cast<std::ptrdiff_t>(at));
            buffer.erase(at);
        }
        if (!model.empty()) {
            const std::size_t at = random() % model.size();
            buffer[at] = model[at] = step + 10'000;
        }
        ASSERT_EQ(buffer.size(), model.size());
        if (step % 50 == 0) {
            ASSERT_EQ(itemsOf(buffer), model) << step;
        }
    }
    EXPECT_EQ(itemsOf(buffer), model);
}

TEST(GapBuffer, LetsGoOfWhatIsErased) {
    auto item = std::make_shared<int>(1);
    GapBuffer<std::shared_ptr<int>> buffer({item, item});
    buffer.erase(0);
    EXPECT_EQ(item.use_count(), 2);
    buffer.insert(0, nullptr);
    buffer.erase(1);
    EXPECT_EQ(item.use_count(), 1);
}

}  // namespace
}  // namespace quillon
