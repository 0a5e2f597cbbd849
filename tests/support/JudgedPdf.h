#pragma once

#include <QByteArray>
#include <QJsonObject>
#include <QJsonValue>
#include <QString>
#include <QStringList>

#include <cstdint>
#include <string>

namespace quillon::test {

/// A PDF file as qpdf sees it, object by object. Names are written `/Name`, references `5 0 R`, texts `u:text`.
class JudgedPdf {
public:
    enum class Widgets : std::uint8_t { OfTheForm, Any };
    /// Throws std::runtime_error with what qpdf said when it cannot read the file, or unless `widgets` is Any when a
    /// widget on a page does not belong to the form.
    explicit JudgedPdf(const std::string& file, Widgets widgets = Widgets::OfTheForm);

    /// References of the pages in order.
    [[nodiscard]] const QStringList& pages() const noexcept { return pages_; }
    [[nodiscard]] int objectCount() const { return static_cast<int>(objects_.size()); }
    [[nodiscard]] QStringList references() const;
    /// References of the objects whose dictionary has the entry `key` with the value `value`.
    [[nodiscard]] QStringList having(const QString& key, const QString& value) const;

    /// A value with references followed, once.
    [[nodiscard]] QJsonValue resolve(const QJsonValue& value) const;
    /// The dictionary of an object, that of a stream as well; empty for any other.
    [[nodiscard]] QJsonObject dictionary(const QJsonValue& reference) const;
    /// The bytes of a stream as they stand in the file.
    [[nodiscard]] QByteArray rawStream(const QJsonValue& reference) const;
    [[nodiscard]] QJsonObject trailer() const { return dictionary(QStringLiteral("trailer")); }
    [[nodiscard]] QJsonObject catalog() const { return dictionary(trailer().value(QStringLiteral("/Root"))); }
    /// The annotations of a page, counted from 0.
    [[nodiscard]] QList<QJsonObject> annotations(qsizetype page) const;

private:
    QJsonObject objects_;
    QStringList pages_;
};

}  // namespace quillon::test
