#pragma once

#include <cstdint>
#include <optional>

namespace quillon::pdf {

/// Makes memory cheap for a large merge, for as long as it lives.
///
/// The threads of a merge have heaps, which grow a few pages at a time and shrink when some are free, and a page that
/// is new costs the processor as much as copying it. While there is a HeapRoom, the heaps of the threads that have a
/// Share are wide from the beginning and hardly shrink. A hint: where the room is refused nothing happens. Any number
/// may live at a time, on any thread.
class HeapRoom {
public:
    /// Widens the heap of the thread that makes it, if there is a HeapRoom, and lets it shrink when the same thread
    /// ends it. For a thread that allocates much, from its beginning to its end.
    class Share {
    public:
        Share();
        Share(const Share&) = delete;
        Share& operator=(const Share&) = delete;
        ~Share();

    private:
        const bool isTaken_;
    };

    /// For a merge of inputs of so many bytes; a small one does without. The calling thread has a share.
    explicit HeapRoom(std::uint64_t inputBytes);
    HeapRoom(const HeapRoom&) = delete;
    HeapRoom& operator=(const HeapRoom&) = delete;
    /// On the same thread. With the last room what is free goes back to the system, and from then on heaps that have a
    /// MiB to spare shrink: the thresholds that glibc moves by itself before the first room stay where they are.
    ~HeapRoom();

private:
    const bool isNeeded_;
    std::optional<Share> share_;  // if needed
};

}  // namespace quillon::pdf
