#pragma once

#include <QString>
#include <QStringList>

#include <cstdint>
#include <utility>
#include <variant>
#include <vector>

namespace quillon {

/// An input of the driver's merge, as it was named on the command line.
struct DriverEntry {
    QString file;
    std::int32_t mergeMethod = 0;
    QString value;     ///< null when the method has none
    QString password;  ///< null when none was given
};

/// The command line of the driver.
struct DriverArguments {
    bool wantsHelp = false;  ///< when true nothing else counts
    bool withoutSync = false;
    std::vector<std::pair<QString, QString>> settings;  ///< name and value, not yet checked
    QString target;
    std::vector<DriverEntry> entries;

    /// Reads the arguments behind the program's name. Otherwise than with arguments it answers with what is wrong with
    /// them, for a person to read.
    [[nodiscard]] static std::variant<DriverArguments, QString> parse(const QStringList& arguments);

    [[nodiscard]] static QString usage();
};

/// Splits a name such as `odd.pdf@cross=2`. Only a method that is known, behind the last `@`, is split off, and nothing
/// is when a file has the whole name.
[[nodiscard]] DriverEntry parseDriverEntry(const QString& name);

}  // namespace quillon
