#include "benchmarks/DriverArguments.h"

#include "benchmarks/DriverSettings.h"
#include "merge/cacheData.h"

#include <QFile>

#include <array>

namespace quillon {
namespace {

struct Method {
    const char* name;  // a method with a value ends in =
    std::int32_t code;
};

constexpr std::array methods{
    Method{"part=", MergeMethodPart},
    Method{"cross=", MergeMethodCross},
    Method{"cross-reverse=", MergeMethodCrossReverse},
    Method{"repeat", MergeMethodRepeat},
};

/// An empty text that was given is not an absent one.
QString present(const QString& text) {
    return text.isNull() ? QStringLiteral("") : text;
}

/// Takes the method from the text behind the `@`. False when it names none.
bool readMethod(const QString& suffix, DriverEntry& entry) {
    for (const auto& method : methods) {
        const QString name = QString::fromLatin1(method.name);
        const bool hasValue = name.endsWith(QLatin1Char('='));
        if (hasValue ? !suffix.startsWith(name) : suffix != name) continue;
        entry.mergeMethod = method.code;
        if (hasValue) entry.value = present(suffix.mid(name.size()));
        return true;
    }
    return false;
}

/// Goes through the arguments once.
class Reader {
public:
    explicit Reader(const QStringList& arguments) : arguments_(arguments) {}

    std::variant<DriverArguments, QString> read() {
        result_.entries.reserve(static_cast<std::size_t>(arguments_.size()));
        while (at_ < arguments_.size() && error_.isNull() && !result_.wantsHelp) readOne(arguments_[at_++]);
        if (error_.isNull() && !result_.wantsHelp) checkEnd();
        if (!error_.isNull()) return error_;
        return std::move(result_);
    }

private:
    void readOne(const QString& argument) {
        if (onlyNames_ || !argument.startsWith(QLatin1String("--"))) {
            readName(argument);
        } else if (argument == QLatin1String("--")) {
            onlyNames_ = true;
        } else if (argument == QLatin1String("--help")) {
            result_.wantsHelp = true;
        } else if (argument == QLatin1String("--no-sync")) {
            result_.withoutSync = true;
        } else if (argument == QLatin1String("--setting")) {
            readSetting(valueOf(argument));
        } else if (argument == QLatin1String("--password")) {
            if (!password_.isNull()) error_ = QStringLiteral("two passwords for one entry");
            password_ = valueOf(argument);
        } else {
            error_ = QStringLiteral("unknown option %1").arg(argument);
        }
    }

    /// Never null, so that an empty password counts as given.
    QString valueOf(const QString& option) {
        if (at_ < arguments_.size()) return present(arguments_[at_++]);
        error_ = QStringLiteral("%1 needs a value").arg(option);
        return QStringLiteral("");
    }

    void readSetting(const QString& text) {
        if (!error_.isNull()) return;
        const auto equals = text.indexOf(QLatin1Char('='));
        if (equals <= 0) {
            error_ = QStringLiteral("--setting needs NAME=VALUE, not '%1'").arg(text);
            return;
        }
        result_.settings.emplace_back(text.left(equals), text.mid(equals + 1));
    }

    void readName(const QString& name) {
        if (result_.target.isNull()) {
            if (!password_.isNull()) {
                error_ = QStringLiteral("--password stands in front of an entry, not of the output");
                return;
            }
            result_.target = present(name);
            return;
        }
        DriverEntry entry = parseDriverEntry(name);
        entry.password = std::exchange(password_, QString());
        result_.entries.push_back(std::move(entry));
    }

    void checkEnd() {
        if (result_.target.isEmpty()) {
            error_ = QStringLiteral("no output file");
        } else if (!password_.isNull()) {
            error_ = QStringLiteral("--password without an entry behind it");
        } else if (result_.entries.empty()) {
            error_ = QStringLiteral("no entries");
        }
    }

    const QStringList& arguments_;
    qsizetype at_ = 0;
    bool onlyNames_ = false;
    QString password_;  // for the next entry
    QString error_;
    DriverArguments result_;
};

}  // namespace

std::variant<DriverArguments, QString> DriverArguments::parse(const QStringList& arguments) {
    return Reader(arguments).read();
}

DriverEntry parseDriverEntry(const QString& name) {
    DriverEntry entry;
    entry.file = name;
    const auto at = name.lastIndexOf(QLatin1Char('@'));
    if (at < 0 || QFile::exists(name)) return entry;
    if (readMethod(name.mid(at + 1), entry)) entry.file = name.left(at);
    return entry;
}

QString DriverArguments::usage() {
    return QStringLiteral(
               "Usage: merge_driver [--setting NAME=VALUE]... [--no-sync] OUT ENTRY...\n"
               "Merges PDF files and pictures into the file OUT, as the program does, without windows.\n"
               "\n"
               "ENTRY is one of\n"
               "  FILE                  every page\n"
               "  FILE@part=1-3,5       the pages of a range text\n"
               "  FILE@cross=N          every N-th page, woven page by page with the Cross entries behind it\n"
               "  FILE@cross-reverse=N  the same from the last page\n"
               "  FILE@repeat           every page, again in every round of the Cross entry in front of it\n"
               "If a file has the whole name, with what looks like a method, that file is meant.\n"
               "A file that does not begin with %PDF is taken for a picture.\n"
               "\n"
               "Options\n"
               "  --setting NAME=VALUE  answer VALUE to the job's question NAME; all others are answered no, empty or "
               "0\n"
               "  --password PW         the password of the next entry\n"
               "  --no-sync             do not force the finished file to the disk\n"
               "  --                    what follows are names, even if they begin with --\n"
               "  --help                print this text\n"
               "\n"
               "Names of settings\n"
               "  switches (0 or 1): %1\n"
               "  numbers: %2\n"
               "  texts: %3\n"
               "  a path: addedPageUrl\n"
               "  text attributes (font=FAMILY,size=POINTS,color=#RRGGBB): getStringAttr\n"
               "\n"
               "Prints pages and bytes of the written file, the seconds of the merge, the peak of the program's memory "
               "in\n"
               "KiB and the number of warnings, which go to standard error.\n"
               "Exit status: 0 the file was written, 1 it was not, 2 the command line is wrong.\n")
        .arg(DriverSettings::names(DriverSettings::Kind::Switch).join(QLatin1Char(' ')),
             DriverSettings::names(DriverSettings::Kind::Number).join(QLatin1Char(' ')),
             DriverSettings::names(DriverSettings::Kind::Text).join(QLatin1Char(' ')));
}

}  // namespace quillon
