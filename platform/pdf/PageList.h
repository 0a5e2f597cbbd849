#pragma once

#include "platform/pdf/GapBuffer.h"

#include <cstddef>
#include <functional>
#include <memory>
#include <unordered_map>

namespace quillon {

class PDFPage;

/// The pages of a document in order. Page objects of a file are made when they are first asked for; as long as nothing
/// is edited the list costs nothing, so a file may be opened again and again for one page.
class PageList {
public:
    /// Makes the page object for a zero-based page of the file.
    using Maker = std::function<std::shared_ptr<PDFPage>(std::size_t)>;

    PageList() = default;
    /// The list of a file with `count` pages.
    PageList(std::size_t count, Maker maker) : maker_(std::move(maker)), count_(count) {}

    [[nodiscard]] std::size_t size() const noexcept { return edited_ ? slots_.size() : count_; }
    /// `index` is less than size().
    [[nodiscard]] const std::shared_ptr<PDFPage>& at(std::size_t index);
    /// The first index of `page`, size() if it is not in the list.
    [[nodiscard]] std::size_t find(const PDFPage* page);

    void insert(std::size_t index, const std::shared_ptr<PDFPage>& page);
    void remove(std::size_t index);
    void exchange(std::size_t first, std::size_t second);

private:
    struct Slot {
        std::shared_ptr<PDFPage> page;  // null until asked for
        std::size_t origin = 0;         // page of the file
    };

    void edit();

    Maker maker_;
    std::size_t count_ = 0;
    std::unordered_map<std::size_t, std::shared_ptr<PDFPage>> made_;  // until edited
    GapBuffer<Slot> slots_;                                           // from then on
    bool edited_ = false;
    bool hasInserted_ = false;
    std::size_t lastFound_ = 0;
};

}  // namespace quillon
