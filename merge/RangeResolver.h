#pragma once

#include <QChar>
#include <QSet>
#include <QString>
#include <QStringList>

#include <cstdint>

namespace quillon {

/// Walks a page range text such as `1-3,5` part by part. Page numbers in the text count from 1, those that are returned
/// from 0. There are no errors: every text yields some sequence, possibly an empty one.
///
///     while (resolver.next()) {
///         if (resolver.isRange()) { … resolver.getStart() to and including resolver.getEnd() … }
///         else { … resolver.getValue() … }
///     }
class RangeResolver {
public:
    /// `maxValue` is the page count of the document. A null string has no parts, an empty one has one empty part.
    RangeResolver(const QString& string, std::int32_t maxValue);

    /// Moves on to the next part that is not empty. Once false, false for ever.
    bool next();

    /// Whether the current part is a range `a-b`, divided at its first `-`. Sets what getStart and getEnd return.
    bool isRange();

    /// The ends of the current range, raised to 0 and lowered to the last page. A start behind the end is an empty
    /// range.
    [[nodiscard]] std::int32_t getStart() const;
    [[nodiscard]] std::int32_t getEnd() const;

    /// The page of a part that is no range, lowered to the last page but deliberately not raised to 0: -1 for the part
    /// `0` and for one that does not begin with a number.
    [[nodiscard]] std::int32_t getValue() const;

    /// Counts empty parts as well.
    [[nodiscard]] std::int32_t getNumberOfParts() const noexcept { return max_; }

    [[nodiscard]] const QStringList& cache() const noexcept { return cache_; }
    void setCache(const QStringList& cache) { cache_ = cache; }

    /// The characters that divide the two ends of a range.
    [[nodiscard]] const QSet<QChar>& divider() const noexcept { return divider_; }
    void setDivider(const QSet<QChar>& divider) { divider_ = divider; }

private:
    [[nodiscard]] QString part() const;
    [[nodiscard]] std::int32_t clamped(std::int32_t index) const noexcept;

    QStringList cache_;
    QSet<QChar> divider_;
    std::int32_t index_ = -1;
    std::int32_t max_;
    std::int32_t maxValue_;  // the last page counted from 0: -1 for a document without pages
    std::int32_t cache_start_ = 0;
    std::int32_t cache_end_ = 0;
};

}  // namespace quillon
