#include "platform/ui/RunningProgram.h"
#include "tests/support/TempDir.h"
#include "tests/support/ui/Windows.h"

#include <gtest/gtest.h>

#include <atomic>
#include <csignal>
#include <sys/wait.h>
#include <thread>
#include <unistd.h>

using namespace quillon;

namespace {

class Running : public testing::Test {
protected:
    Running() {
        qputenv("XDG_RUNTIME_DIR", QByteArray::fromStdString(dir_.path().string()));
        qputenv("DISPLAY", ":1");
    }
    ~Running() override {
        qunsetenv("XDG_RUNTIME_DIR");
        qunsetenv("DISPLAY");
    }

    /// What another process gets that asks the one of this test, whose event loop runs meanwhile.
    [[nodiscard]] static bool ask(int milliseconds) {
        std::atomic<int> answer = -1;
        std::thread other([&answer, milliseconds] {
            const RunningProgram second(QStringLiteral("test"));
            answer = second.askToReopen(milliseconds) ? 1 : 0;
        });
        EXPECT_TRUE(test::waitFor([&answer] { return answer >= 0; }));
        other.join();
        return answer == 1;
    }

    test::TempDir dir_;
};

TEST_F(Running, TheFirstHasThePlaceTheSecondDoesNot) {
    RunningProgram first(QStringLiteral("test"));
    RunningProgram second(QStringLiteral("test"));
    EXPECT_TRUE(first.claim());
    EXPECT_FALSE(second.claim());
}

TEST_F(Running, ThePlaceIsFreeAgainWhenItsHolderIsGone) {
    {
        RunningProgram first(QStringLiteral("test"));
        EXPECT_TRUE(first.claim());
    }
    RunningProgram second(QStringLiteral("test"));
    EXPECT_TRUE(second.claim());
}

TEST_F(Running, EachDisplayHasAPlace) {
    RunningProgram first(QStringLiteral("test"));
    EXPECT_TRUE(first.claim());
    qputenv("DISPLAY", ":2");
    RunningProgram second(QStringLiteral("test"));
    EXPECT_TRUE(second.claim());
}

TEST_F(Running, TheHolderIsToldToReopen) {
    RunningProgram first(QStringLiteral("test"));
    ASSERT_TRUE(first.claim());
    int reopened = 0;
    first.setReopenHandler([&reopened] { ++reopened; });
    EXPECT_TRUE(ask(5000));
    EXPECT_TRUE(ask(5000));
    EXPECT_EQ(reopened, 2);
}

TEST_F(Running, NobodyAnswersWhereNothingRuns) {
    EXPECT_FALSE(ask(100));
}

TEST_F(Running, AKilledHolderDoesNotKeepThePlace) {
    const pid_t child = fork();
    if (child == 0) {
        auto* program = new RunningProgram(QStringLiteral("test"));
        if (!program->claim()) _exit(1);
        raise(SIGKILL);
    }
    int status = 0;
    ASSERT_EQ(waitpid(child, &status, 0), child);
    ASSERT_TRUE(WIFSIGNALED(status));
    RunningProgram next(QStringLiteral("test"));
    EXPECT_TRUE(next.claim());
    EXPECT_TRUE(ask(5000));
}

TEST_F(Running, OnlyTheUserCanReachTheSocket) {
    RunningProgram program(QStringLiteral("test"));
    ASSERT_TRUE(program.claim());
    int sockets = 0;
    for (const auto& entry : std::filesystem::directory_iterator(dir_.path())) {
        if (!entry.is_socket()) continue;
        ++sockets;
        using std::filesystem::perms;
        EXPECT_EQ(entry.status().permissions() & (perms::group_all | perms::others_all), perms::none);
    }
    EXPECT_EQ(sockets, 1);
}

}  // namespace
