#include "tests/support/ProtectedFile.h"

#include "tests/support/ExternalReader.h"

#include <stdexcept>

namespace quillon::test {
namespace {

bool succeeds(const QString& program, const QStringList& arguments) {
    return runProgram(program, arguments).exitCode == 0;
}

}  // namespace

void protectFile(const std::string& from, const std::string& to, const QString& user, const QString& owner,
                 const QStringList& options) {
    QStringList front{QStringLiteral("--allow-weak-crypto")};
    QStringList protection{QStringLiteral("--encrypt"), user, owner};
    for (const QString& option : options) {
        const bool isGeneral =
            option.startsWith(QLatin1String("--object-streams")) || option.startsWith(QLatin1String("--password-mode"));
        (isGeneral ? front : protection) << option;
    }
    if (options.contains(QStringLiteral("256"))) protection << QStringLiteral("--allow-insecure");
    const QStringList files{QStringLiteral("--"), QString::fromStdString(from), QString::fromStdString(to)};
    const auto made = runProgram(QStringLiteral("qpdf"), front + protection + files);
    if (made.exitCode != 0) throw std::runtime_error("qpdf cannot protect " + from + ": " + made.errors);
}

std::string encryptionOf(const std::string& file, const QString& password) {
    const auto shown = runProgram(
        QStringLiteral("qpdf"),
        {QStringLiteral("--password=") + password, QStringLiteral("--show-encryption"), QString::fromStdString(file)});
    return shown.exitCode == 0 ? shown.output : std::string();
}

bool opensInQpdf(const std::string& file, const QString& password) {
    return succeeds(QStringLiteral("qpdf"), {QStringLiteral("--password=") + password, QStringLiteral("--show-npages"),
                                             QString::fromStdString(file)});
}

bool opensInPoppler(const std::string& file, const QString& password) {
    const QString path = QString::fromStdString(file);
    return succeeds(QStringLiteral("pdfinfo"), {QStringLiteral("-upw"), password, path}) ||
           succeeds(QStringLiteral("pdfinfo"), {QStringLiteral("-opw"), password, path});
}

bool opensInMutool(const std::string& file, const QString& password) {
    return succeeds(QStringLiteral("mutool"),
                    {QStringLiteral("info"), QStringLiteral("-p"), password, QString::fromStdString(file)});
}

}  // namespace quillon::test
