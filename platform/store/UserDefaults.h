#pragma once

#include <QByteArray>
#include <QSettings>
#include <QString>
#include <QUrl>

#include <cstdint>
#include <optional>

namespace quillon {

/// Values under names that outlive the program, in a file of `name=value` lines that only its owner may read.
///
/// The file is replaced as a whole or not at all, and what another program changed in it meanwhile is kept. One that
/// does not read as such a file counts as empty and is kept aside under another name. Nothing here reports a failure:
/// if the file cannot be written, the values last as long as the program.
///
/// A value that is missing or of another kind reads as nothing: 0, no, a null text. Main thread only.
class UserDefaults {
public:
    /// `path` of a file, which need not exist; its folder is made too.
    explicit UserDefaults(const QString& path);
    UserDefaults(const UserDefaults&) = delete;
    UserDefaults& operator=(const UserDefaults&) = delete;
    ~UserDefaults();

    /// Where the program keeps its own: `Quillon/Quillon.conf` in the user's folder for settings.
    [[nodiscard]] static QString standardPath();

    [[nodiscard]] bool contains(const QString& key) const;
    /// Values beyond 32 bits become the nearest end of the range.
    [[nodiscard]] std::int32_t integerForKey(const QString& key) const;
    /// Whether there is an integer other than 0.
    [[nodiscard]] bool boolForKey(const QString& key) const { return integerForKey(key) != 0; }
    /// Null when missing; an empty text that was stored is not null.
    [[nodiscard]] QString stringForKey(const QString& key) const;
    /// Null when missing.
    [[nodiscard]] QByteArray dataForKey(const QString& key) const;
    /// The location of the file whose path is stored as a text; empty when missing or when the text is empty.
    [[nodiscard]] QUrl URLForKey(const QString& key) const;

    void setInteger(const QString& key, std::int32_t value);
    void setString(const QString& key, const QString& value);
    void setData(const QString& key, const QByteArray& value);

    /// Writes what was set, through to the disk, so that it is there whatever becomes of the program. False when that
    /// failed.
    bool synchronize();

private:
    QString path_;
    std::optional<QSettings> settings_;
};

}  // namespace quillon
