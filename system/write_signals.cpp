#include "write_signals.h"

#include <cerrno>
#include <ctime>

namespace velcoran::system {

// Both are sent to the thread whose write fails, so nobody else can meet them. None of these calls can fail with the
// arguments that it gets here.

WriteSignals::WriteSignals() {
    sigset_t waiting;
    sigset_t both;
    sigemptyset(&both);
    sigemptyset(&m_ours);
    sigpending(&waiting);
    for (const int number : {SIGPIPE, SIGXFSZ}) {
        sigaddset(&both, number);
        if (sigismember(&waiting, number) == 0) sigaddset(&m_ours, number);
    }
    pthread_sigmask(SIG_BLOCK, &both, &m_before);
    for (const int number : {SIGPIPE, SIGXFSZ})
        if (sigismember(&m_before, number) == 1) sigdelset(&m_ours, number);
}

WriteSignals::~WriteSignals() {
    const int error = errno;
    const timespec atOnce{};
    while (sigtimedwait(&m_ours, nullptr, &atOnce) > 0 || errno == EINTR) errno = 0;
    pthread_sigmask(SIG_SETMASK, &m_before, nullptr);
    errno = error;
}

}  // namespace velcoran::system
