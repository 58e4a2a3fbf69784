#pragma once

#include "exit_stop.h"

class QApplication;

namespace velcoran::component {

/// The application object that the component makes in a host that has none, on the thread of the first window.
///
/// Nothing else of the process changes with it: neither its locale nor its environment nor its handlers of X errors. It
/// is not destroyed with this, since Qt's own globals may be gone by then, but by close() alone.
class OwnApplication {
public:
    [[nodiscard]] bool isOpen() const { return m_application != nullptr; }
    /// @throws Error kInvalidProcedureCall where no window can be shown, or on another thread than the one that Qt is
    ///               bound to; Qt is then as it was before
    void open();
    /// After each call of the host's, on the thread of open().
    void renewExitStop() noexcept { m_exitStop.renew(); }
    /// On the thread that ends the process.
    void stopAtExit() { m_exitStop.stopThread(); }
    /// False where Qt may never come back from its destructor: on Wayland, where two threads of its own can wait for
    /// each other.
    [[nodiscard]] bool canClose() const;
    /// On the thread of open().
    void close();

    /// A process may load the library twice, from two files: the copy that made the application object keeps it until
    /// every other one has left it. Counted where all copies see it, at the object itself.
    static void join();
    static void leave();
    /// True while another copy uses the application object.
    [[nodiscard]] static bool isShared();

private:
    QApplication* m_application = nullptr;  ///< owned
    ExitStop m_exitStop;
};

}  // namespace velcoran::component
