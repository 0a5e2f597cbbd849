#include "tests/support/ExternalReader.h"

#include <QProcess>

#include <sstream>
#include <stdexcept>

namespace quillon::test {
namespace {

QString named(const std::string& file) {
    return QString::fromStdString(file);
}

/// The output of a program that has to succeed.
std::string outputOf(const QString& program, const QStringList& arguments) {
    const ProgramResult result = runProgram(program, arguments);
    if (result.exitCode != 0) {
        throw std::runtime_error(program.toStdString() + " " + arguments.join(QLatin1Char(' ')).toStdString() +
                                 " failed: " + result.errors + result.output);
    }
    return result.output;
}

std::string trimmed(const std::string& text) {
    return QString::fromStdString(text).trimmed().toStdString();
}

std::vector<std::string> linesOf(const std::string& text) {
    std::vector<std::string> lines;
    std::istringstream stream(text);
    for (std::string line; std::getline(stream, line);) lines.push_back(line);
    return lines;
}

QStringList passwordOption(const QString& option, const QString& password) {
    return password.isNull() ? QStringList() : QStringList{option + password};
}

}  // namespace

ProgramResult runProgram(const QString& program, const QStringList& arguments, int timeoutSeconds) {
    QProcess process;
    process.start(program, arguments, QIODevice::ReadOnly);
    ProgramResult result;
    if (!process.waitForStarted(timeoutSeconds * 1000)) {
        result.errors = process.errorString().toStdString();
        return result;
    }
    const bool ended = process.waitForFinished(timeoutSeconds * 1000);
    if (!ended) {
        process.kill();
        process.waitForFinished();
    }
    result.output = process.readAllStandardOutput().toStdString();
    result.errors = process.readAllStandardError().toStdString();
    if (ended && process.exitStatus() == QProcess::NormalExit) result.exitCode = process.exitCode();
    return result;
}

std::vector<std::string> pageMarks(const std::string& file, const QString& password) {
    QStringList arguments{QStringLiteral("-enc"), QStringLiteral("UTF-8")};
    if (!password.isNull()) arguments += {QStringLiteral("-upw"), password};
    const std::string text =
        outputOf(QStringLiteral("pdftotext"), arguments + QStringList{named(file), QStringLiteral("-")});
    std::vector<std::string> marks;
    // Every page ends in a form feed, the last one too.
    for (std::size_t start = 0, end = 0; (end = text.find('\f', start)) != std::string::npos; start = end + 1) {
        marks.push_back(trimmed(text.substr(start, end - start)));
    }
    return marks;
}

int pageCount(const std::string& file) {
    return std::stoi(documentInfo(file, "Pages"));
}

std::string documentInfo(const std::string& file, const std::string& key) {
    for (const auto& line : linesOf(outputOf(QStringLiteral("pdfinfo"), {named(file)}))) {
        if (line.rfind(key + ":", 0) == 0) return trimmed(line.substr(key.size() + 1));
    }
    return {};
}

std::vector<std::string> pageSizes(const std::string& file) {
    const QStringList arguments{QStringLiteral("-f"), QStringLiteral("1"), QStringLiteral("-l"), QStringLiteral("-1"),
                                named(file)};
    std::vector<std::string> sizes;
    for (const auto& line : linesOf(outputOf(QStringLiteral("pdfinfo"), arguments))) {
        // For instance `Page    1 size: 612 x 792 pts (letter)`.
        const auto words = QString::fromStdString(line).simplified().split(QLatin1Char(' '));
        if (words.size() < 6 || words[0] != QLatin1String("Page") || words[2] != QLatin1String("size:")) continue;
        sizes.push_back((words[3] + QLatin1Char('x') + words[5]).toStdString());
    }
    return sizes;
}

std::string qpdfProblems(const std::string& file, const QString& password) {
    const QStringList options = passwordOption(QStringLiteral("--password="), password);
    const auto result =
        runProgram(QStringLiteral("qpdf"), options + QStringList{QStringLiteral("--check"), named(file)});
    return result.exitCode == 0 ? std::string() : result.output + result.errors;
}

QJsonDocument qpdfJson(const std::string& file, const QString& password) {
    const QStringList options = passwordOption(QStringLiteral("--password="), password);
    const std::string text =
        outputOf(QStringLiteral("qpdf"), options + QStringList{QStringLiteral("--json"), named(file)});
    return QJsonDocument::fromJson(QByteArray::fromStdString(text));
}

std::vector<std::string> outlineLines(const std::string& file) {
    return linesOf(
        outputOf(QStringLiteral("mutool"), {QStringLiteral("show"), named(file), QStringLiteral("outline")}));
}

}  // namespace quillon::test
