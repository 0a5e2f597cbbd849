#include "tests/support/JudgedPdf.h"

#include "tests/support/ExternalReader.h"

#include <QJsonArray>
#include <QJsonDocument>

#include <stdexcept>

namespace quillon::test {

JudgedPdf::JudgedPdf(const std::string& file, Widgets widgets) {
    QStringList arguments{QStringLiteral("--json=2"), QStringLiteral("--json-stream-data=inline"),
                          QStringLiteral("--decode-level=none"), QString::fromStdString(file)};
    if (widgets == Widgets::Any) arguments += {QStringLiteral("--json-key=pages"), QStringLiteral("--json-key=qpdf")};
    const auto result = runProgram(QStringLiteral("qpdf"), arguments);
    if (result.exitCode != 0) throw std::runtime_error("qpdf cannot read " + file + ": " + result.errors);
    const QJsonObject whole = QJsonDocument::fromJson(QByteArray::fromStdString(result.output)).object();
    const QJsonObject objects = whole.value(QStringLiteral("qpdf")).toArray().at(1).toObject();
    for (auto at = objects.begin(); at != objects.end(); ++at) {
        QString key = at.key();
        if (key.startsWith(QStringLiteral("obj:"))) key.remove(0, 4);
        objects_.insert(key, at.value());
    }
    for (const QJsonValue& page : whole.value(QStringLiteral("pages")).toArray()) {
        pages_.append(page.toObject().value(QStringLiteral("object")).toString());
    }
}

QStringList JudgedPdf::references() const {
    return objects_.keys();
}

QStringList JudgedPdf::having(const QString& key, const QString& value) const {
    QStringList found;
    for (const QString& reference : objects_.keys()) {
        if (dictionary(reference).value(key).toString() == value) found.append(reference);
    }
    return found;
}

QJsonValue JudgedPdf::resolve(const QJsonValue& value) const {
    const QJsonObject object = objects_.value(value.toString()).toObject();
    if (!value.isString() || object.isEmpty()) return value;
    if (object.contains(QStringLiteral("stream"))) {
        return object.value(QStringLiteral("stream")).toObject().value(QStringLiteral("dict"));
    }
    return object.value(QStringLiteral("value"));
}

QJsonObject JudgedPdf::dictionary(const QJsonValue& reference) const {
    return resolve(reference).toObject();
}

QByteArray JudgedPdf::rawStream(const QJsonValue& reference) const {
    const QJsonObject stream =
        objects_.value(reference.toString()).toObject().value(QStringLiteral("stream")).toObject();
    return QByteArray::fromBase64(stream.value(QStringLiteral("data")).toString().toLatin1());
}

QList<QJsonObject> JudgedPdf::annotations(qsizetype page) const {
    QList<QJsonObject> found;
    const QJsonValue list = resolve(dictionary(pages_.at(page)).value(QStringLiteral("/Annots")));
    for (const QJsonValue& annotation : list.toArray()) found.append(dictionary(annotation));
    return found;
}

}  // namespace quillon::test
