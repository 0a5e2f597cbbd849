#include "platform/store/SettingsFile.h"

#include <QByteArray>
#include <QByteArrayView>
#include <QFile>
#include <QFileInfo>

#include <cerrno>
#include <fcntl.h>
#include <filesystem>
#include <sys/stat.h>
#include <system_error>
#include <unistd.h>

namespace quillon {
namespace {

constexpr mode_t ownerOnly = 0600;

/// Makes a folder and those above it. The last is the owner's alone; those above, which are the user's and not this
/// program's, get the usual rights.
void makeFolder(const QString& path) {
    if (QFileInfo::exists(path)) return;
    std::error_code ignored;
    std::filesystem::create_directories(QFileInfo(path).path().toStdU16String(), ignored);
    ::mkdir(QFile::encodeName(path).constData(), 0700);
}

/// Whether a value, as it stands in the file, is or holds an object. Only what an element of it begins with counts: a
/// text may well have the same characters further on, and a text that begins with them is written with another `@`.
bool isObject(QByteArrayView value) {
    bool quoted = false;
    bool atStart = true;
    for (qsizetype at = 0; at < value.size(); ++at) {
        const char c = value[at];
        const QByteArrayView rest = value.sliced(at);
        if (atStart && (rest.startsWith("@Variant(") || rest.startsWith("@DateTime("))) return true;
        if (c == '\\') {
            ++at;
        } else if (c == '"') {
            quoted = !quoted;
            continue;
        }
        atStart = (c == ',' && !quoted) || (atStart && (c == ' ' || c == '\t'));
    }
    return false;
}

}  // namespace

void SettingsFile::prepare(const QString& path) {
    makeFolder(QFileInfo(path).path());
    const QByteArray name = QFile::encodeName(path);
    int file = -1;
    do {
        file = ::open(name.constData(), O_RDONLY | O_CREAT | O_NONBLOCK | O_CLOEXEC, ownerOnly);
    } while (file < 0 && errno == EINTR);
    if (file < 0) return;
    struct stat status = {};
    if (::fstat(file, &status) == 0 && S_ISREG(status.st_mode)) ::fchmod(file, ownerOnly);
    ::close(file);
}

bool SettingsFile::holdsObjects(const QString& path) {
    QFile file(path);
    if (!QFileInfo(path).isFile() || !file.open(QIODevice::ReadOnly)) return false;
    while (!file.atEnd()) {
        const QByteArray line = file.readLine();
        const qsizetype equals = line.indexOf('=');
        if (equals >= 0 && isObject(QByteArrayView(line).sliced(equals + 1))) return true;
    }
    return false;
}

void SettingsFile::setAside(const QString& path) {
    QString name = path + QStringLiteral(".damaged");
    for (int number = 2; QFileInfo::exists(name); ++number)
        name = QStringLiteral("%1.damaged-%2").arg(path).arg(number);
    // Not QFile::rename, which copies where it cannot rename, with the rights of a new file.
    std::error_code ignored;
    std::filesystem::rename(path.toStdU16String(), name.toStdU16String(), ignored);
}

}  // namespace quillon
