#include "thread.h"

#include <csignal>
#include <utility>

namespace velcoran::system {

namespace {

/// Keeps the calling thread from the process's signals while it lives; a thread that starts meanwhile inherits that.
class BlockedSignals {
public:
    BlockedSignals() {
        sigset_t blocked;
        sigfillset(&blocked);
        for (const int fault : {SIGSEGV, SIGBUS, SIGFPE, SIGILL, SIGTRAP, SIGSYS}) sigdelset(&blocked, fault);
        pthread_sigmask(SIG_SETMASK, &blocked, &m_former);
    }
    ~BlockedSignals() { pthread_sigmask(SIG_SETMASK, &m_former, nullptr); }
    BlockedSignals(const BlockedSignals&) = delete;
    BlockedSignals& operator=(const BlockedSignals&) = delete;

private:
    sigset_t m_former{};
};

}  // namespace

std::thread startThread(std::function<void()> body) {
    const BlockedSignals blocked;
    return std::thread(std::move(body));
}

}  // namespace velcoran::system
