#include "system/worker.h"

#include <gtest/gtest.h>

#include <csignal>

namespace velcoran::system {
namespace {

TEST(Worker, hostsSignalsAreLeftToTheHostsThreads) {
    sigset_t before;
    ASSERT_EQ(pthread_sigmask(SIG_SETMASK, nullptr, &before), 0);
    sigset_t inside;
    Worker worker([&inside] { pthread_sigmask(SIG_SETMASK, nullptr, &inside); });
    ASSERT_TRUE(worker.waitFor(std::chrono::minutes(1)));
    for (const int signal : {SIGALRM, SIGINT, SIGTERM, SIGUSR1, SIGCHLD, SIGPROF})
        EXPECT_EQ(sigismember(&inside, signal), 1) << signal;
    for (const int fault : {SIGSEGV, SIGBUS, SIGFPE, SIGILL}) EXPECT_EQ(sigismember(&inside, fault), 0) << fault;
    sigset_t after;
    ASSERT_EQ(pthread_sigmask(SIG_SETMASK, nullptr, &after), 0);
    for (int signal = 1; signal < NSIG; ++signal)
        EXPECT_EQ(sigismember(&after, signal), sigismember(&before, signal)) << "the caller's mask stands: " << signal;
}

}  // namespace
}  // namespace velcoran::system
