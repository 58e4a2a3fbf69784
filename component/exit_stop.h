#pragma once

#include <mutex>

#include <sys/types.h>

class QCoreApplication;

namespace velcoran::component {

/// Holds the window's thread while another thread ends the process: exit() takes Qt's globals away under a thread that
/// goes on painting, and the process would die of it.
class ExitStop {
public:
    /// On the window's thread, once its application object stands.
    void watch(QCoreApplication* application);
    /// To be called after work that makes Qt make globals: what was made after the last call goes before the stop.
    void renew() noexcept;
    /// Before the application object goes.
    void leave();

    /// What a process that ends does, on the thread that ends it: asks the window's thread to stop, and waits for it a
    /// while. A thread that is in its host's code stops when it comes back to its event loop.
    void stopThread();

private:
    std::mutex m_mutex;
    QCoreApplication* m_application = nullptr;
    pid_t m_process = 0;
    int m_renewals = 0;
};

}  // namespace velcoran::component
