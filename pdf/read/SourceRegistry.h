#pragma once

#include "pdf/io/FileIdentity.h"

#include <cstddef>
#include <cstdint>
#include <memory>
#include <mutex>
#include <unordered_map>
#include <vector>

namespace quillon::pdf {

class Source;

/// Knows the sources that are alive, so that a file opened again is found, and decides which of them may keep their
/// structure in memory. Thread-safe.
class SourceRegistry {
public:
    /// Bytes of structure that all sources together keep between uses.
    static constexpr std::size_t mostKept = 16U << 20U;
    /// The file of a structure that may be kept is larger by this much: a small one is read again quickly.
    static constexpr std::size_t leastRatio = 8;

    [[nodiscard]] static SourceRegistry& instance();

    /// Null when no source of that identity is alive.
    [[nodiscard]] std::shared_ptr<Source> find(const FileIdentity& identity);
    /// Takes in a source just loaded; returns it, or the one that another thread was quicker to add.
    [[nodiscard]] std::shared_ptr<Source> add(const std::shared_ptr<Source>& source);
    void remove(Source& source);

    /// Whether `source` may keep its structure of `bytes` bytes. The first to ask have the room: inputs are opened in a
    /// row and then copied in a row, so making room by dropping the oldest would drop each just before it is needed.
    [[nodiscard]] bool keep(const Source& source, std::size_t bytes);
    /// `source` has dropped its structure.
    void drop(const Source& source);

private:
    std::shared_ptr<Source> findLocked(const FileIdentity& identity);
    [[nodiscard]] Source*& bucketOf(std::uint64_t inode) noexcept;
    void addBuckets();
    void forget(const Source& source);

    std::mutex mutex_;
    // A hash table by inode whose chains run through the sources: of these there are thousands.
    std::vector<Source*> buckets_;
    std::size_t count_ = 0;
    std::unordered_map<const Source*, std::size_t> kept_;
    std::size_t keptBytes_ = 0;
};

}  // namespace quillon::pdf
