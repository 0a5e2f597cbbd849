#include "tests/merge/MergeTest.h"

#include "platform/jobs/MainThread.h"
#include "platform/jobs/OperationQueue.h"
#include "tests/support/ExternalReader.h"

#include <QFile>

namespace quillon::test {

cacheData& MergeTest::add(const std::string& name, int count, std::int32_t method, const QString& value) {
    return addFile(write(name, PdfFixture(name, count)), method, value);
}

cacheData& MergeTest::addFile(const QUrl& url, std::int32_t method, const QString& value) {
    auto entry = std::make_shared<cacheData>(url);
    entry->setMergeMethod(method);
    entry->setValue(value);
    list_.push_back(entry);
    return *entry;
}

cacheData& MergeTest::addMissing(std::int32_t method, const QString& value) {
    return addFile(urlOf(dir_.file("missing.pdf")), method, value);
}

cacheData& MergeTest::addPicture(std::int32_t method) {
    std::string bytes = "P1\n10 10\n";
    for (int i = 0; i < 10; ++i) bytes += "1 0 1 0 1 0 1 0 1 0\n";
    auto& entry = addFile(urlOf(dir_.write("picture.pbm", bytes)), method);
    entry.setIsImage(true);
    return entry;
}

QUrl MergeTest::write(const std::string& name, const PdfFixture& fixture) const {
    return urlOf(dir_.write(name + ".pdf", fixture.bytes()));
}

MergeOperation& MergeTest::job() {
    if (!job_) job_ = std::make_shared<MergeOperation>(list_, urlOf(target()), settings_, owner_);
    return *job_;
}

void MergeTest::run() {
    (void)job();
    OperationQueue queue;
    queue.addOperation(job_);
    queue.waitUntilAllOperationsAreFinished();
}

void MergeTest::runHere(MergeOperation& job) {
    job.main();
    // The job posts its end, and is not shared, so it has to stay until that has been delivered.
    MainThread::waitUntil([] { return true; });
}

std::string MergeTest::pages() const {
    if (!QFile::exists(QString::fromStdString(target()))) return "no file";
    EXPECT_EQ(qpdfProblems(target()), "");
    std::string all;
    for (const auto& mark : pageMarks(target())) {
        if (!all.empty()) all += ' ';
        all += mark.empty() ? "-" : mark;
    }
    return all;
}

}  // namespace quillon::test
