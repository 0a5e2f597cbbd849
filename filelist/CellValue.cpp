#include "filelist/CellValue.h"

#include "merge/cacheData.h"
#include "platform/pdf/PDFDocument.h"

#include <QFileInfo>

#include <optional>

namespace quillon {
namespace {

/// A leading dot makes a file hidden and begins no ending.
QString fileName(const cacheData& entry) {
    const QString name = QFileInfo(entry.url().toLocalFile()).fileName();
    const qsizetype dot = name.lastIndexOf(QLatin1Char('.'));
    return dot > 0 ? name.left(dot) : name;
}

QVariant size(cacheData& entry) {
    if (entry.fileSize() != -1) return entry.fileSize();
    // 0 for a file that is not there.
    const auto kibibytes = static_cast<quint64>(QFileInfo(entry.url().toLocalFile()).size()) >> 10U;
    entry.setFileSize(static_cast<std::int32_t>(kibibytes));
    return kibibytes;
}

/// Nothing for a code that there is not.
std::optional<QString> mergeMethod(const cacheData& entry) {
    switch (entry.mergeMethod()) {
        case MergeMethodWhole:
            return QStringLiteral("Whole");
        case MergeMethodPart:
            return QStringLiteral("Part : ") + entry.value();
        case MergeMethodCross:
            return QStringLiteral("Cross with steps: ") + entry.value();
        case MergeMethodCrossReverse:
            return QStringLiteral("Cross reverse with steps: ") + entry.value();
        case MergeMethodRepeat:
            return QStringLiteral("Repeat");
        default:
            return std::nullopt;
    }
}

QVariant pages(cacheData& entry) {
    if (entry.pageCount() != -1) return entry.pageCount();
    const std::shared_ptr<PDFDocument> document = PDFDocument::initWithURL(entry.url());
    entry.setPageCount(document ? document->pageCount() : 0);
    return QString::number(static_cast<quint32>(entry.pageCount()));
}

QString password(cacheData& entry) {
    if (entry.needPassword() != 0 && entry.needPassword() != 1) {
        const std::shared_ptr<PDFDocument> document = PDFDocument::initWithURL(entry.url());
        const bool isNeeded = document && (document->isEncrypted() || document->isLocked());
        entry.setNeedPassword(isNeeded ? 1 : 0);
        if (isNeeded) entry.setIsDecrypted(false);
    }
    return entry.needPassword() == 1 && !entry.isDecrypted() ? QStringLiteral("Need") : QStringLiteral("None");
}

}  // namespace

QVariant cellValue(cacheData& entry, const QString& column) {
    if (column == QLatin1String("FileName")) return fileName(entry);
    if (column == QLatin1String("Size")) return size(entry);
    if (column == QLatin1String("MergeMethod")) {
        if (const std::optional<QString> method = mergeMethod(entry)) return *method;
    }
    if (entry.isImage()) return QStringLiteral("None");
    if (column == QLatin1String("Pages")) return pages(entry);
    if (column == QLatin1String("Password")) return password(entry);
    return QString();
}

}  // namespace quillon
