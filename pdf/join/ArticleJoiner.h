#pragma once

#include "pdf/join/SourceCopies.h"
#include "pdf/write/ObjectOutput.h"

#include <cstdint>
#include <string>
#include <unordered_set>
#include <vector>

namespace quillon::pdf {

/// Joins the articles of all sources (ISO 32000-2, 12.4.3). An article goes on from bead to bead over the pages that
/// were taken; each group of copies of pages has articles of its own.
class ArticleJoiner {
public:
    explicit ArticleJoiner(ObjectOutput*& output) : output_(output) {}

    /// Before the pages of a source are copied, which must be announced.
    void begin(const SourceCopies& source);
    /// After they were copied.
    void end(const SourceCopies& source);
    /// The value of the catalog's `Threads`; empty when there is no article.
    [[nodiscard]] std::string text() const { return threads_.empty() ? std::string() : '[' + threads_ + ']'; }

private:
    struct Bead {
        Reference reference;
        std::uint32_t number;  // in the output
    };
    struct Thread {
        Reference reference;
        std::uint32_t number;
        std::uint32_t group;
        std::vector<Bead> beads;
    };

    /// Adds the beads to `seen`; each belongs to one thread.
    void takeThread(const SourceCopies& source, Reference thread, std::unordered_set<std::uint32_t>& seen);
    void writeThread(const SourceCopies& source, const Thread& thread);
    [[nodiscard]] static std::string entries(const SourceCopies& source, const Dictionary& dictionary,
                                             const Overlay* overlay, std::initializer_list<std::string_view> dropped);

    ObjectOutput*& output_;
    std::string threads_;          // references
    std::vector<Thread> current_;  // of the source being copied
    std::uint64_t visits_ = 0;     // beads looked at for copies of pages that were not asked for
};

}  // namespace quillon::pdf
