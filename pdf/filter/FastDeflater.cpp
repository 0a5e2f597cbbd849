#include "pdf/filter/FastDeflater.h"

#include <algorithm>
#include <cstdint>
#include <isa-l/igzip_lib.h>
#include <stdexcept>

namespace quillon::pdf {

namespace {

// The interface is not const-correct; nothing is written to the input.
std::uint8_t* bytesOf(std::string_view data) {
    return const_cast<std::uint8_t*>(reinterpret_cast<const std::uint8_t*>(data.data()));
}

}  // namespace

DeflateCodes::DeflateCodes(std::string_view sample) : tables_(std::make_unique<isal_hufftables>()) {
    constexpr std::size_t enough = 1U << 20U;
    const auto histogram = std::make_unique<isal_huff_histogram>();
    isal_update_histogram(bytesOf(sample), static_cast<int>(std::min(sample.size(), enough)), histogram.get());
    // Every symbol gets a code, whether the sample has it or not.
    if (isal_create_hufftables(tables_.get(), histogram.get()) != 0) throw std::logic_error("no codes can be made");
}

DeflateCodes::~DeflateCodes() = default;

FastDeflater::FastDeflater() : stream_(std::make_unique<isal_zstream>()) {}

FastDeflater::~FastDeflater() = default;

void FastDeflater::deflate(std::string_view data, const DeflateCodes& codes, std::string& out) {
    run(data, codes);
    out.assign(room_.get(), stream_->total_out);
    constexpr std::size_t mostKept = 4U << 20U;
    if (roomBytes_ <= mostKept) return;
    room_.reset();
    roomBytes_ = 0;
}

/// Leaves what comes out in `room_`.
void FastDeflater::run(std::string_view data, const DeflateCodes& codes) {
    // The longest code has 15 bits; the rest is for the frame and for the codes themselves.
    const std::size_t bound = 2 * data.size() + 1024;
    if (bound > UINT32_MAX) throw std::length_error("too much to be deflated at one go");
    if (bound > roomBytes_) {
        room_ = std::make_unique_for_overwrite<char[]>(bound);
        roomBytes_ = bound;
    }
    isal_deflate_stateless_init(stream_.get());
    // Of its levels only this one gives the same result wherever in memory it runs.
    stream_->level = 0;
    isal_deflate_set_hufftables(stream_.get(), codes.tables_.get(), IGZIP_HUFFTABLE_CUSTOM);
    stream_->gzip_flag = IGZIP_ZLIB;
    stream_->flush = NO_FLUSH;
    stream_->end_of_stream = 1;
    stream_->next_in = bytesOf(data);
    stream_->avail_in = static_cast<std::uint32_t>(data.size());
    stream_->next_out = reinterpret_cast<std::uint8_t*>(room_.get());
    stream_->avail_out = static_cast<std::uint32_t>(bound);
    if (isal_deflate_stateless(stream_.get()) != COMP_OK) throw std::logic_error("deflated data outgrew its bound");
}

}  // namespace quillon::pdf
