#include "filelist/NumberOnlyFormatter.h"

#include <QLocale>

#include <algorithm>

namespace quillon {

NumberOnlyFormatter::NumberOnlyFormatter(QObject* parent) : QDoubleValidator(parent) {
    setLocale(QLocale::c());
}

bool NumberOnlyFormatter::isPartialStringValid(const QString& partialString, QString* /*newEditingString*/,
                                               QString* /*errorDescription*/) const {
    if (partialString.isEmpty()) return true;
    if (!std::ranges::all_of(partialString, [](QChar c) { return c >= u'0' && c <= u'9'; })) return false;
    QString text = partialString;
    int position = 0;
    return QDoubleValidator::validate(text, position) != Invalid;
}

QValidator::State NumberOnlyFormatter::validate(QString& input, int& /*position*/) const {
    return isPartialStringValid(input) ? Acceptable : Invalid;
}

}  // namespace quillon
