#pragma once

#include <QJsonDocument>
#include <QStringList>

#include <string>
#include <vector>

namespace quillon::test {

/// What a program that was run has left.
struct ProgramResult {
    int exitCode = -1;  ///< -1 when it did not start, did not end in time or was killed
    std::string output;
    std::string errors;
};

/// Runs a program to its end, at most `timeoutSeconds` long.
[[nodiscard]] ProgramResult runProgram(const QString& program, const QStringList& arguments, int timeoutSeconds = 60);

// PDF files as other programs read them, so that the results are not judged by the engine that wrote them. What cannot
// be read throws std::runtime_error with what the program said.

/// The text of each page, without the white space around it, from pdftotext.
[[nodiscard]] std::vector<std::string> pageMarks(const std::string& file, const QString& password = {});

/// From pdfinfo.
[[nodiscard]] int pageCount(const std::string& file);

/// One value of pdfinfo, such as Title; empty when there is none.
[[nodiscard]] std::string documentInfo(const std::string& file, const std::string& key);

/// Width and height of each page in points, as `612x792`, from pdfinfo.
[[nodiscard]] std::vector<std::string> pageSizes(const std::string& file);

/// Empty when qpdf finds nothing wrong, not even something to warn of; otherwise what it says.
[[nodiscard]] std::string qpdfProblems(const std::string& file, const QString& password = {});

/// The file as qpdf describes it.
[[nodiscard]] QJsonDocument qpdfJson(const std::string& file, const QString& password = {});

/// The outline as mutool prints it, a line for each node.
[[nodiscard]] std::vector<std::string> outlineLines(const std::string& file);

}  // namespace quillon::test
