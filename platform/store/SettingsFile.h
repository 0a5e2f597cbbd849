#pragma once

#include <QString>

namespace quillon {

/// The file beneath a UserDefaults: who may read it, and whether it is fit to be read.
class SettingsFile {
public:
    SettingsFile() = delete;

    /// Makes the file, empty, and its folder where they are missing; readable by nobody but the owner, from the first
    /// moment on. An existing file is closed to others, an existing folder is left as it is. Failure is silent: the
    /// file is then simply not there.
    static void prepare(const QString& path);

    /// Whether the file holds a value in a form that QSettings would turn into an object of any type. This program
    /// writes none, and a damaged one makes Qt ask for more memory than there is, which ends the program.
    [[nodiscard]] static bool holdsObjects(const QString& path);

    /// Gives the file a name beside its own that is free: `<path>.damaged`, `<path>.damaged-2` and so on.
    static void setAside(const QString& path);
};

}  // namespace quillon
