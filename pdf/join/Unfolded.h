#pragma once

#include "pdf/join/SourceCopies.h"

#include <cstdint>
#include <string>
#include <unordered_map>

namespace quillon::pdf {

/// Tells whether values of several sources mean the same, whatever objects they are spread over.
class Unfolded {
public:
    /// `source` must outlive it.
    explicit Unfolded(const SourceCopies& source) : source_(source) {}

    /// A digest of the value with everything that it refers to, equal for equal values. Streams are those of the
    /// output, where equal ones are one. What is nested too deeply is equal to nothing of another source.
    [[nodiscard]] std::string of(const Object& value) { return digest(value, 0); }

private:
    [[nodiscard]] std::string digest(const Object& value, int depth);
    [[nodiscard]] std::string object(Reference reference, int depth);
    [[nodiscard]] std::string different() const;

    const SourceCopies& source_;
    std::unordered_map<std::uint32_t, std::string> known_;  // digests by object number
};

}  // namespace quillon::pdf
