#pragma once

#include <QString>

#include <cstdint>
#include <string>
#include <vector>

namespace quillon {

struct DriverArguments;
class DriverSettings;

/// What became of a merge.
struct DriverReport {
    bool written = false;
    std::int64_t pages = 0;  ///< of the written file, 0 if none
    std::int64_t bytes = 0;  ///< likewise
    double seconds = 0;      ///< wall time of the job alone
    long peakKib = 0;        ///< the most memory that the process had until the job ended, KiB
    std::vector<std::string> warnings;

    /// The one line that the driver prints, without its end.
    [[nodiscard]] std::string line() const;
};

/// Runs the merge on a queue of its own while the caller's thread, which must be the main thread of an application,
/// runs the event loop until the job has ended.
[[nodiscard]] DriverReport runDriverMerge(DriverArguments arguments, DriverSettings& settings);

}  // namespace quillon
