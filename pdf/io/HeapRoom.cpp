#include "pdf/io/HeapRoom.h"

#include <cstddef>
#include <cstdlib>
#include <malloc.h>
#include <mutex>
#include <sys/mman.h>
#include <unistd.h>

namespace quillon::pdf {

namespace {

constexpr std::uint64_t largeInput = 4U << 20U;
// About what the busiest thread needs for some thousand pages. What is not used of it takes no memory.
constexpr std::size_t roomBytes = 12U << 20U;

std::mutex mutex;
int rooms = 0;  // guarded

/// From how many bytes on a block is no part of a heap, and as many free bytes at its end are given back.
void setThresholds(std::size_t bytes) {
    static_cast<void>(::mallopt(M_MMAP_THRESHOLD, static_cast<int>(bytes)));
    static_cast<void>(::mallopt(M_TRIM_THRESHOLD, static_cast<int>(bytes)));
}

/// The heap is made wide enough for a block of the room's size, which is not kept: its end stays where it is.
void widenHeap() {
    void* const room = std::malloc(roomBytes);
    if (!room) return;
    const auto page = static_cast<std::uintptr_t>(::sysconf(_SC_PAGESIZE));
    const auto begin = reinterpret_cast<std::uintptr_t>(room);
    const std::uintptr_t firstPage = (begin + page - 1) / page * page;
    static_cast<void>(::madvise(reinterpret_cast<void*>(firstPage), begin + roomBytes - firstPage, MADV_HUGEPAGE));
    std::free(room);
}

}  // namespace

HeapRoom::HeapRoom(std::uint64_t inputBytes) : isNeeded_(inputBytes >= largeInput) {
    if (!isNeeded_) return;
    {
        const std::lock_guard lock(mutex);
        if (rooms++ == 0) setThresholds(2 * roomBytes);
    }
    take();
}

HeapRoom::~HeapRoom() {
    constexpr std::size_t usual = 128U << 10U;
    if (!isNeeded_) return;
    const std::lock_guard lock(mutex);
    if (--rooms != 0) return;
    setThresholds(usual);
    static_cast<void>(::malloc_trim(0));
}

void HeapRoom::take() {
    {
        const std::lock_guard lock(mutex);
        if (rooms == 0) return;
    }
    widenHeap();
}

}  // namespace quillon::pdf
