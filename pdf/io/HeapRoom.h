#pragma once

#include <cstdint>

namespace quillon::pdf {

/// Makes memory cheap for a large merge, for as long as it lives.
///
/// Each thread has a heap of its own, which grows a few pages at a time and shrinks when some are free, and a page that
/// is new costs the processor as much as copying it. While there is a HeapRoom, the heaps of the threads that `take`
/// part are widened at one go, get large pages where the system has them, and do not shrink. A hint: where memory is
/// short nothing happens. Any number may live at a time, on any thread.
class HeapRoom {
public:
    /// For a merge of inputs of so many bytes; a small one does without. The calling thread takes part.
    explicit HeapRoom(std::uint64_t inputBytes);
    HeapRoom(const HeapRoom&) = delete;
    HeapRoom& operator=(const HeapRoom&) = delete;
    /// With the last one heaps shrink to what is used, and shrink again from then on.
    ~HeapRoom();

    /// For a thread that allocates much, when it begins. Does nothing while there is no room to take.
    static void take();

private:
    const bool isNeeded_;
};

}  // namespace quillon::pdf
