#include "platform/pdf/PageList.h"

#include <utility>

namespace quillon {

const std::shared_ptr<PDFPage>& PageList::at(std::size_t index) {
    std::shared_ptr<PDFPage>& page = edited_ ? slots_[index].page : made_[index];
    if (!page) page = maker_(edited_ ? slots_[index].origin : index);
    return page;
}

std::size_t PageList::find(const PDFPage* page) {
    edit();
    const std::size_t count = slots_.size();
    // Pages are mostly looked up one after the other. A page that was inserted may stand in several places; without
    // one, every page stands in one place, and the search may begin anywhere.
    const std::size_t from = hasInserted_ || lastFound_ >= count ? 0 : lastFound_;
    for (std::size_t step = 0; step < count; ++step) {
        const std::size_t index = from + step < count ? from + step : from + step - count;
        if (slots_[index].page.get() == page) return lastFound_ = index;
    }
    return count;
}

void PageList::insert(std::size_t index, const std::shared_ptr<PDFPage>& page) {
    edit();
    hasInserted_ = true;
    slots_.insert(index, {page, 0});
}

void PageList::remove(std::size_t index) {
    edit();
    slots_.erase(index);
}

void PageList::exchange(std::size_t first, std::size_t second) {
    edit();
    std::swap(slots_[first], slots_[second]);
}

void PageList::edit() {
    if (edited_) return;
    std::vector<Slot> slots(count_);
    for (std::size_t i = 0; i < count_; ++i) slots[i].origin = i;
    for (auto& [index, page] : made_) slots[index].page = std::move(page);
    made_.clear();
    slots_ = GapBuffer<Slot>(std::move(slots));
    edited_ = true;
}

}  // namespace quillon
