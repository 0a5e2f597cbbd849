#include "pdf/io/HeapRoom.h"

#include <cstddef>
#include <cstdlib>
#include <malloc.h>
#include <mutex>

namespace quillon::pdf {

namespace {

constexpr std::uint64_t largeInput = 4U << 20U;
// About what the busiest thread needs for some thousand pages. Untouched it takes no memory.
constexpr std::size_t roomBytes = 12U << 20U;
// More than the room, which would be given back otherwise; glibc takes 32 MiB at most.
constexpr std::size_t roomThreshold = 2 * roomBytes;
constexpr std::size_t usualThreshold = 1U << 20U;

std::mutex roomsMutex;
int rooms = 0;  // guarded

/// From how many bytes on a block is no part of a heap, and as many free bytes at the end of a heap are given back.
void setThresholds(std::size_t bytes) {
    static_cast<void>(::mallopt(M_MMAP_THRESHOLD, static_cast<int>(bytes)));
    static_cast<void>(::mallopt(M_TRIM_THRESHOLD, static_cast<int>(bytes)));
}

bool hasRoom() {
    const std::lock_guard lock(roomsMutex);
    return rooms != 0;
}

/// A block of the room's size widens the heap, which does not shrink when the block is freed.
void widenHeap() {
    void* const volatile room = std::malloc(roomBytes);  // which no compiler leaves out
    std::free(room);
}

/// The freeing of a block so large that, with it, the threshold is reached makes the heap shrink.
void narrowHeap() {
    constexpr std::size_t largestBlock = roomThreshold - 32;  // that is a part of a heap
    void* const volatile block = std::malloc(largestBlock);   // likewise
    std::free(block);
}

}  // namespace

HeapRoom::Share::Share() : isTaken_(hasRoom()) {
    if (isTaken_) widenHeap();
}

HeapRoom::Share::~Share() {
    if (isTaken_) narrowHeap();
}

HeapRoom::HeapRoom(std::uint64_t inputBytes) : isNeeded_(inputBytes >= largeInput) {
    if (!isNeeded_) return;
    {
        const std::lock_guard lock(roomsMutex);
        if (rooms++ == 0) setThresholds(roomThreshold);
    }
    share_.emplace();
}

HeapRoom::~HeapRoom() {
    if (!isNeeded_) return;
    share_.reset();
    const std::lock_guard lock(roomsMutex);
    if (--rooms != 0) return;
    setThresholds(usualThreshold);
    static_cast<void>(::malloc_trim(0));
}

}  // namespace quillon::pdf
