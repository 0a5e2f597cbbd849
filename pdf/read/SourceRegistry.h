#pragma once

#include <cstddef>
#include <list>
#include <map>
#include <memory>
#include <mutex>

#include "pdf/io/FileIdentity.h"

namespace quillon::pdf {

class Source;

/// Knows the sources that are alive, so that a file opened again is found, and which of them were used last, so that only
/// those keep their structure in memory. Thread-safe.
class SourceRegistry {
public:
    /// Sources whose structure stays in memory.
    static constexpr std::size_t mostLoaded = 8;

    [[nodiscard]] static SourceRegistry& instance();

    /// Null when no source of that identity is alive.
    [[nodiscard]] std::shared_ptr<Source> find(const FileIdentity& identity);
    /// Takes in a source just loaded; returns it, or the one that another thread was quicker to add.
    [[nodiscard]] std::shared_ptr<Source> add(const std::shared_ptr<Source>& source);
    void remove(Source& source);
    /// Notes that the structure of `source`, which the caller has locked, is in memory and in use.
    void used(Source& source);

private:
    void dropOldest();

    std::mutex mutex_;
    std::map<FileIdentity, std::weak_ptr<Source>> sources_;
    std::list<Source*> loaded_;  // used last first
};

}  // namespace quillon::pdf
