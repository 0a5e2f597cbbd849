#pragma once

#include <cstddef>
#include <future>

namespace quillon::pdf {

/// Does `work` from 0 to `size`, given as [begin, end), in two parts at a time if it is no less than `worthSharing`.
/// For the end of a merge, when the other work is done and a processor is idle. The second part begins at a multiple of
/// `unit`.
template <class Work>
void inHalves(std::size_t size, std::size_t unit, std::size_t worthSharing, const Work& work) {
    const std::size_t half = size < worthSharing ? size : size / 2 / unit * unit;
    std::future<void> other;
    // Where no thread can be had, the second part is done when it is asked for.
    if (half < size) other = std::async(std::launch::async | std::launch::deferred, work, half, size);
    work(0, half);
    if (other.valid()) other.get();
}

}  // namespace quillon::pdf
