#include "benchmarks/DriverMerge.h"

#include "benchmarks/DriverArguments.h"
#include "benchmarks/DriverPaths.h"
#include "benchmarks/DriverSettings.h"
#include "merge/MergeOperation.h"
#include "merge/MergeOwner.h"
#include "merge/cacheData.h"
#include "platform/jobs/OperationQueue.h"
#include "platform/pdf/WriteOptions.h"

#include <QCoreApplication>
#include <QFileInfo>

#include <array>
#include <chrono>
#include <cstdio>
#include <memory>
#include <sys/resource.h>
#include <utility>

namespace quillon {
namespace {

/// Leaves the event loop when the job has ended.
class LoopOwner final : public MergeOwner {
public:
    void startHandling() override {}
    void stopHandling() override { QCoreApplication::quit(); }
};

/// Runs the job and takes its time, which leaves out how long the queue and the event loop take to start and to end.
class TimedJob final : public Operation {
public:
    explicit TimedJob(std::shared_ptr<MergeOperation> job) : job_(std::move(job)) {}

    void main() override {
        const auto start = std::chrono::steady_clock::now();
        job_->main();
        seconds_ = std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
    }

    [[nodiscard]] double seconds() const noexcept { return seconds_; }

private:
    std::shared_ptr<MergeOperation> job_;
    double seconds_ = 0;
};

/// Takes the entries, so that a list of thousands is not in memory twice.
std::vector<std::shared_ptr<cacheData>> makeEntries(std::vector<DriverEntry> entries) {
    std::vector<std::shared_ptr<cacheData>> result;
    result.reserve(entries.size());
    for (auto& listed : entries) {
        const DriverEntry entry = std::move(listed);
        auto record = std::make_shared<cacheData>(driverFileUrl(entry.file));
        record->setMergeMethod(entry.mergeMethod);
        record->setValue(entry.value);
        record->setPassword(entry.password);
        record->setIsImage(!beginsAsPdf(entry.file));
        result.push_back(std::move(record));
    }
    return result;
}

long peakKib() {
    rusage usage{};
    ::getrusage(RUSAGE_SELF, &usage);
    return usage.ru_maxrss;
}

}  // namespace

DriverReport runDriverMerge(DriverArguments arguments, DriverSettings& settings) {
    const QUrl target = driverFileUrl(arguments.target);
    const auto entries = makeEntries(std::move(arguments.entries));
    LoopOwner owner;
    const auto merge = std::make_shared<MergeOperation>(entries, target, settings, owner);
    if (arguments.withoutSync) merge->setOutputAttr(QVariantMap{{kWriteWithoutSync, true}});
    const auto job = std::make_shared<TimedJob>(merge);
    OperationQueue queue;
    queue.addOperation(job);
    QCoreApplication::exec();
    queue.waitUntilAllOperationsAreFinished();

    DriverReport report;
    report.peakKib = peakKib();
    report.written = merge->written();
    report.seconds = job->seconds();
    report.warnings = merge->warnings();
    if (report.written) {
        report.pages = merge->writtenPages();
        report.bytes = QFileInfo(target.toLocalFile()).size();
    }
    return report;
}

std::string DriverReport::line() const {
    std::array<char, 200> text{};
    std::snprintf(text.data(), text.size(), "pages=%lld bytes=%lld seconds=%.6f peak_kib=%ld warnings=%zu",
                  static_cast<long long>(pages), static_cast<long long>(bytes), seconds, peakKib, warnings.size());
    return text.data();
}

}  // namespace quillon
