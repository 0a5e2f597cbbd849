#pragma once

#include <QStringList>

#include <string>

namespace quillon::test {

/// Lets qpdf protect the file `from` and write it to `to`. `options` are the length of the key and what may follow it,
/// such as `128 --use-aes=y`, and options that belong in front, such as `--object-streams=generate`, wherever they
/// stand. Throws std::runtime_error with what qpdf said when it refuses.
void protectFile(const std::string& from, const std::string& to, const QString& user, const QString& owner,
                 const QStringList& options = {QStringLiteral("256")});

/// What qpdf says of a protected file that it opens with `password`; empty when it cannot.
[[nodiscard]] std::string encryptionOf(const std::string& file, const QString& password);

/// Whether a program opens the file with `password` as the user's or the owner's password.
[[nodiscard]] bool opensInQpdf(const std::string& file, const QString& password);
[[nodiscard]] bool opensInPoppler(const std::string& file, const QString& password);
[[nodiscard]] bool opensInMutool(const std::string& file, const QString& password);

}  // namespace quillon::test
