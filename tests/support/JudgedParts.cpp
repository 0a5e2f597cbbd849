#include "tests/support/JudgedParts.h"

#include "tests/support/ExternalReader.h"

#include <QJsonArray>

#include <map>

namespace quillon::test {

namespace {

using Lines = std::vector<std::string>;

QString key(const char* name) {
    return QString::fromLatin1(name);
}

/// A text without the mark that qpdf puts in front.
std::string plain(const QJsonValue& text) {
    return text.toString().mid(2).toStdString();
}

/// A list that may be a single value.
QJsonArray listOf(const JudgedPdf& pdf, const QJsonValue& value) {
    const QJsonValue resolved = pdf.resolve(value);
    if (resolved.isArray()) return resolved.toArray();
    return value.isUndefined() || value.isNull() ? QJsonArray() : QJsonArray{value};
}

std::string pageOf(const JudgedPdf& pdf, const QJsonValue& page) {
    const auto place = pdf.pages().indexOf(page.toString());
    return place < 0 ? "no page" : std::to_string(place + 1);
}

/// The page, counted from 1, that shows an annotation.
std::string pageShowing(const JudgedPdf& pdf, const QString& annotation) {
    std::string found;
    for (qsizetype i = 0; i < pdf.pages().size(); ++i) {
        const QJsonObject page = pdf.dictionary(pdf.pages()[i]);
        if (!listOf(pdf, page.value(key("/Annots"))).contains(annotation)) continue;
        found += (found.empty() ? "" : "and") + std::to_string(i + 1);
    }
    return found.empty() ? "no page" : found;
}

void addFields(const JudgedPdf& pdf, const QString& field, const QString& parent, std::string name, std::string value,
               Lines& lines) {
    const QJsonObject entries = pdf.dictionary(field);
    if (entries.value(key("/Parent")).toString() != parent) name += "!";
    if (entries.contains(key("/T"))) name += (name.empty() ? "" : ".") + plain(entries.value(key("/T")));
    if (entries.contains(key("/V"))) value = plain(pdf.resolve(entries.value(key("/V"))));
    const QJsonArray kids = listOf(pdf, entries.value(key("/Kids")));
    for (const QJsonValue& kid : kids) addFields(pdf, kid.toString(), field, name, value, lines);
    if (kids.isEmpty()) lines.push_back(name + '@' + pageShowing(pdf, field) + '=' + value);
}

/// The entries of a number or name tree.
void addLeaves(const JudgedPdf& pdf, const QJsonValue& node, const QString& leaves, QJsonArray& entries) {
    const QJsonObject dictionary = pdf.resolve(node).toObject();
    for (const QJsonValue& entry : listOf(pdf, dictionary.value(leaves))) entries.append(entry);
    for (const QJsonValue& kid : listOf(pdf, dictionary.value(key("/Kids")))) addLeaves(pdf, kid, leaves, entries);
}

/// Walks the structure tree of a file.
class TagReader {
public:
    explicit TagReader(const JudgedPdf& pdf) : pdf_(pdf) {
        const QJsonValue root = pdf.catalog().value(key("/StructTreeRoot"));
        const QJsonObject entries = pdf.dictionary(root);
        QJsonArray parents;
        addLeaves(pdf, entries.value(key("/ParentTree")), key("/Nums"), parents);
        for (qsizetype i = 0; i + 1 < parents.size(); i += 2) parents_[parents[i].toInt()] = parents[i + 1];
        for (const QJsonValue& kid : listOf(pdf, entries.value(key("/K")))) walk(kid, root.toString(), {}, {});
    }

    Lines lines;

private:
    void walk(const QJsonValue& element, const QString& above, const std::string& path, QJsonValue page) {
        const QJsonObject entries = pdf_.dictionary(element);
        std::string name = path + entries.value(key("/S")).toString().mid(1).toStdString();
        if (entries.value(key("/P")).toString() != above) name += "!";
        if (entries.contains(key("/Pg"))) page = entries.value(key("/Pg"));
        for (const QJsonValue& kid : listOf(pdf_, entries.value(key("/K")))) {
            const QJsonObject content = pdf_.resolve(kid).toObject();
            if (kid.isDouble() || content.contains(key("/MCID"))) {
                const QJsonValue own = content.contains(key("/Pg")) ? content.value(key("/Pg")) : page;
                const int id = kid.isDouble() ? kid.toInt() : content.value(key("/MCID")).toInt();
                const QJsonValue parents = parent(pdf_.dictionary(own).value(key("/StructParents")));
                add(name, pageOf(pdf_, own), pdf_.resolve(parents).toArray().at(id) == element);
            } else if (content.contains(key("/Obj"))) {
                const QJsonValue object = content.value(key("/Obj"));
                const QJsonValue owner = parent(pdf_.dictionary(object).value(key("/StructParent")));
                add(name, pageShowing(pdf_, object.toString()), owner == element);
            } else {
                walk(kid, element.toString(), name + '/', page);
            }
        }
    }

    [[nodiscard]] QJsonValue parent(const QJsonValue& index) const {
        const auto found = parents_.find(index.toInt(-1));
        return found == parents_.end() ? QJsonValue() : found->second;
    }

    void add(const std::string& name, const std::string& page, bool isSound) {
        lines.push_back(name + '@' + page + (isSound ? "" : "!"));
    }

    const JudgedPdf& pdf_;
    std::map<int, QJsonValue> parents_;
};

}  // namespace

Lines fieldLines(const JudgedPdf& pdf) {
    Lines lines;
    const QJsonObject form = pdf.dictionary(pdf.catalog().value(key("/AcroForm")));
    for (const QJsonValue& field : listOf(pdf, form.value(key("/Fields")))) {
        addFields(pdf, field.toString(), {}, {}, {}, lines);
    }
    return lines;
}

Lines layerLines(const JudgedPdf& pdf) {
    Lines lines;
    const QJsonObject properties = pdf.dictionary(pdf.catalog().value(key("/OCProperties")));
    const QJsonObject configuration = pdf.dictionary(properties.value(key("/D")));
    const bool hidesAll = configuration.value(key("/BaseState")).toString() == key("/OFF");
    const QJsonArray exceptions = listOf(pdf, configuration.value(hidesAll ? key("/ON") : key("/OFF")));
    for (const QJsonValue& layer : listOf(pdf, properties.value(key("/OCGs")))) {
        const bool isHidden = exceptions.contains(layer) != hidesAll;
        lines.push_back(plain(pdf.dictionary(layer).value(key("/Name"))) + (isHidden ? '-' : '+'));
    }
    return lines;
}

Lines labelLines(const std::string& file) {
    Lines lines;
    for (const QJsonValue& range : qpdfJson(file).object().value(key("pagelabels")).toArray()) {
        const QJsonObject label = range.toObject().value(key("label")).toObject();
        lines.push_back(std::to_string(range.toObject().value(key("index")).toInt() + 1) + ' ' +
                        label.value(key("/S")).toString().mid(1).toStdString() + ' ' + plain(label.value(key("/P"))) +
                        std::to_string(label.value(key("/St")).toInt(1)));
    }
    return lines;
}

Lines articleLines(const JudgedPdf& pdf) {
    Lines lines;
    for (const QJsonValue& thread : listOf(pdf, pdf.catalog().value(key("/Threads")))) {
        const QJsonObject entries = pdf.dictionary(thread);
        std::string line = plain(pdf.dictionary(entries.value(key("/I"))).value(key("/Title")));
        const QString first = entries.value(key("/F")).toString();
        if (pdf.dictionary(first).value(key("/T")) != thread) line += '!';
        QString bead = first;
        int count = 0;
        do {
            const QJsonObject own = pdf.dictionary(bead);
            const QString page = own.value(key("/P")).toString();
            const QString next = own.value(key("/N")).toString();
            line += (count == 0 ? '@' : ',') + pageOf(pdf, page);
            if (!listOf(pdf, pdf.dictionary(page).value(key("/B"))).contains(bead)) line += '!';
            if (pdf.dictionary(next).value(key("/V")).toString() != bead) line += '!';
            bead = next;
        } while (bead != first && ++count < 100);
        lines.push_back(line);
    }
    return lines;
}

Lines tagLines(const JudgedPdf& pdf) {
    return TagReader(pdf).lines;
}

Lines linkLines(const JudgedPdf& pdf) {
    Lines lines;
    QJsonArray names;
    addLeaves(pdf, pdf.dictionary(pdf.catalog().value(key("/Names"))).value(key("/Dests")), key("/Names"), names);
    for (qsizetype page = 0; page < pdf.pages().size(); ++page) {
        for (const QJsonObject& annotation : pdf.annotations(page)) {
            if (annotation.value(key("/Subtype")).toString() != key("/Link")) continue;
            QJsonValue target = annotation.value(key("/Dest"));
            if (target.isUndefined()) target = pdf.dictionary(annotation.value(key("/A"))).value(key("/D"));
            for (qsizetype i = 0; target.isString() && i + 1 < names.size(); i += 2) {
                if (names[i] == target) target = pdf.resolve(names[i + 1]);
            }
            if (target.isObject()) target = target.toObject().value(key("/D"));
            const QJsonValue to = target.toArray().first();
            const auto place = to.isDouble() ? to.toInt() : pdf.pages().indexOf(to.toString());
            lines.push_back(std::to_string(page + 1) + '>' + (place < 0 ? "" : std::to_string(place + 1)));
        }
    }
    return lines;
}

Lines commentLines(const JudgedPdf& pdf) {
    Lines lines;
    for (qsizetype page = 0; page < pdf.pages().size(); ++page) {
        std::string line;
        const QJsonArray all = listOf(pdf, pdf.dictionary(pdf.pages()[page]).value(key("/Annots")));
        for (const QJsonValue& annotation : all) {
            const QJsonObject entries = pdf.dictionary(annotation);
            if (entries.contains(key("/Contents"))) line += ' ' + plain(entries.value(key("/Contents")));
            bool isSound = entries.value(key("/P")).toString() == pdf.pages()[page];
            for (const char* relative : {"/Popup", "/Parent", "/IRT"}) {
                const QJsonValue other = entries.value(key(relative));
                isSound = isSound && (other.isUndefined() || all.contains(other));
            }
            if (!isSound) line += '!';
        }
        if (!line.empty()) lines.push_back(std::to_string(page + 1) + ':' + line);
    }
    return lines;
}

Lines scriptLines(const JudgedPdf& pdf) {
    QJsonArray names;
    addLeaves(pdf, pdf.dictionary(pdf.catalog().value(key("/Names"))).value(key("/JavaScript")), key("/Names"), names);
    Lines lines;
    for (qsizetype i = 1; i < names.size(); i += 2) lines.push_back(plain(pdf.dictionary(names[i]).value(key("/JS"))));
    return lines;
}

Lines attachmentLines(const std::string& file) {
    const auto listed = runProgram(key("pdfdetach"), {key("-list"), QString::fromStdString(file)});
    Lines lines;
    for (const QString& line : QString::fromStdString(listed.output).split(QChar::fromLatin1('\n'))) {
        const auto colon = line.indexOf(key(": "));
        if (colon >= 0) lines.push_back(line.mid(colon + 2).toStdString());
    }
    return lines;
}

}  // namespace quillon::test
