#include "tests/support/ExternalReader.h"

#include <cerrno>
#include <csignal>
#include <fcntl.h>
#include <poll.h>
#include <spawn.h>
#include <sstream>
#include <stdexcept>
#include <sys/mman.h>
#include <sys/syscall.h>
#include <sys/wait.h>
#include <unistd.h>

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

/// A file in memory that takes what a program prints.
class Capture {
public:
    Capture() : descriptor_(::memfd_create("capture", MFD_CLOEXEC)) {
        if (descriptor_ < 0) throw std::runtime_error("no memory file can be made");
    }
    Capture(const Capture&) = delete;
    Capture& operator=(const Capture&) = delete;
    ~Capture() { ::close(descriptor_); }

    [[nodiscard]] int descriptor() const noexcept { return descriptor_; }

    [[nodiscard]] std::string text() const {
        const off_t size = ::lseek(descriptor_, 0, SEEK_END);
        std::string all(static_cast<std::size_t>(size), '\0');
        const ssize_t got = ::pread(descriptor_, all.data(), all.size(), 0);
        all.resize(got < 0 ? 0 : static_cast<std::size_t>(got));
        return all;
    }

private:
    int descriptor_;
};

/// The child, or -1. It reads nothing.
pid_t spawn(const QString& program, const QStringList& arguments, int output, int errors) {
    std::vector<std::string> texts{program.toStdString()};
    for (const QString& argument : arguments) texts.push_back(argument.toStdString());
    std::vector<char*> argv;
    for (auto& text : texts) argv.push_back(text.data());
    argv.push_back(nullptr);

    posix_spawn_file_actions_t actions;
    ::posix_spawn_file_actions_init(&actions);
    ::posix_spawn_file_actions_addopen(&actions, STDIN_FILENO, "/dev/null", O_RDONLY, 0);
    ::posix_spawn_file_actions_adddup2(&actions, output, STDOUT_FILENO);
    ::posix_spawn_file_actions_adddup2(&actions, errors, STDERR_FILENO);
    pid_t child = -1;
    const int failure = ::posix_spawnp(&child, argv[0], &actions, nullptr, argv.data(), environ);
    ::posix_spawn_file_actions_destroy(&actions);
    return failure == 0 ? child : -1;
}

/// False when the time is over first.
bool waitForEnd(pid_t child, int timeoutSeconds) {
    const int descriptor = static_cast<int>(::syscall(SYS_pidfd_open, child, 0));
    if (descriptor < 0) throw std::runtime_error("a program that was started cannot be watched");
    pollfd watched{.fd = descriptor, .events = POLLIN, .revents = 0};
    int ready = 0;
    do {
        ready = ::poll(&watched, 1, timeoutSeconds * 1000);
    } while (ready < 0 && errno == EINTR);
    ::close(descriptor);
    return ready > 0;
}

QStringList passwordOption(const QString& option, const QString& password) {
    return password.isNull() ? QStringList() : QStringList{option + password};
}

}  // namespace

// Not QProcess: its vfork makes a thread checker take the state of the child, which shares the memory, for that of this
// program, and from then on it reports races that are none.
ProgramResult runProgram(const QString& program, const QStringList& arguments, int timeoutSeconds) {
    const Capture output;
    const Capture errors;
    ProgramResult result;
    const pid_t child = spawn(program, arguments, output.descriptor(), errors.descriptor());
    if (child < 0) {
        result.errors = program.toStdString() + " cannot be started";
        return result;
    }
    const bool ended = waitForEnd(child, timeoutSeconds);
    if (!ended) ::kill(child, SIGKILL);
    int status = 0;
    while (::waitpid(child, &status, 0) < 0 && errno == EINTR) {
    }
    if (ended && WIFEXITED(status)) result.exitCode = WEXITSTATUS(status);
    result.output = output.text();
    result.errors = errors.text();
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
