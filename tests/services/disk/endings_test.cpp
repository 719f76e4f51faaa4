#include "services/disk/endings.h"

#include <gtest/gtest.h>
#include <sys/wait.h>
#include <unistd.h>

#include <csignal>
#include <functional>

#include "tests/services/signals.h"

namespace {

// How a process ends that does this and leaves with 3 in the end.
int statusOf(const std::function<void()>& action) {
    const pid_t child = fork();
    if (child == 0) {
        alarm(30);
        tests::takeSignals();
        action();
        _exit(3);
    }
    int status = 0;
    EXPECT_EQ(waitpid(child, &status, 0), child);
    return status;
}

void expectEndBy(int signal, const std::function<void()>& action) {
    const int status = statusOf(action);
    EXPECT_TRUE(WIFSIGNALED(status));
    EXPECT_EQ(WTERMSIG(status), signal);
}

void expectOwnEnd(const std::function<void()>& action) {
    const int status = statusOf(action);
    EXPECT_TRUE(WIFEXITED(status));
    EXPECT_EQ(WEXITSTATUS(status), 3);
}

TEST(Endings, ASignalThatIsPutOffEndsTheProcessLater) {
    for (const int signal : {SIGTERM, SIGINT, SIGHUP}) {
        expectEndBy(signal, [signal] {
            services::putOffEndings();
            raise(signal);
            if (!services::isEndingAsked()) _exit(4);
            services::endIfAsked();
        });
        expectOwnEnd([signal] {
            services::putOffEndings();
            raise(signal);
        });
    }
}

TEST(Endings, ASecondSignalDoesNotWait) {
    expectEndBy(SIGINT, [] {
        services::putOffEndings();
        raise(SIGINT);
        raise(SIGINT);
    });
}

TEST(Endings, WithoutPuttingOffASignalEndsTheProcessAtOnce) {
    expectEndBy(SIGTERM, [] { raise(SIGTERM); });
    expectEndBy(SIGTERM, [] {
        services::putOffEndings();
        services::endIfAsked();
        raise(SIGTERM);
    });
    expectOwnEnd([] {
        services::putOffEndings();
        services::endIfAsked();
        services::endIfAsked();
    });
}

// As nohup has it.
TEST(Endings, AnIgnoredSignalStaysIgnored) {
    expectOwnEnd([] {
        std::signal(SIGHUP, SIG_IGN);
        services::putOffEndings();
        raise(SIGHUP);
        if (services::isEndingAsked()) _exit(4);
        services::endIfAsked();
        raise(SIGHUP);
    });
}

TEST(Endings, QuittingIsAskedForUntilItIsForgotten) {
    EXPECT_FALSE(services::isQuitAsked());
    services::askForQuit();
    EXPECT_TRUE(services::isQuitAsked());
    EXPECT_TRUE(services::isEndingAsked());
    services::forgetQuit();
    EXPECT_FALSE(services::isQuitAsked());
    EXPECT_FALSE(services::isEndingAsked());
}

}  // namespace
