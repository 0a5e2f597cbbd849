#include "settings/NameResolver.h"

namespace quillon {

void NameResolver::registerKeywords(const std::optional<QStringList>& keywords) {
    // join would make an empty text of no texts; a first text that is empty is one, though.
    const bool none = !keywords || keywords->isEmpty();
    const QString joined = none ? QString() : keywords->join(QLatin1Char(' '));
    setKeywords(none || !joined.isNull() ? joined : QStringLiteral(""));
}

QString NameResolver::resolveTitle(const QString& text) {
    return resolve(text, QStringLiteral("%Original_Title%"), title_);
}

QString NameResolver::resolveAuthor(const QString& text) {
    return resolve(text, QStringLiteral("%Original_Author%"), author_);
}

QString NameResolver::resolveSubject(const QString& text) {
    return resolve(text, QStringLiteral("%Original_Subject%"), subject_);
}

QString NameResolver::resolveKeywords(const QString& text) {
    return resolve(text, QStringLiteral("%Original_Keywords%"), keywords_);
}

QString NameResolver::resolveCreator(const QString& /*ignored*/) const {
    return QStringLiteral("Quillon");
}

QString NameResolver::value(const QString& field) const {
    const std::lock_guard lock(mutex_);
    return field;
}

void NameResolver::set(QString& field, const QString& value) {
    const std::lock_guard lock(mutex_);
    field = value;
}

QString NameResolver::resolve(const QString& text, const QString& macro, QString& field) {
    const std::lock_guard lock(mutex_);
    if (text.isEmpty()) return field;
    if (field.isNull()) field = QStringLiteral("");
    QString resolved = text;
    resolved.replace(macro, field);
    // A present text stays present when nothing is left of it.
    return resolved.isNull() ? QStringLiteral("") : resolved;
}

}  // namespace quillon
