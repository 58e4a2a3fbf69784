#pragma once

#include "db/release_watch.h"
#include "host_events.h"
#include "own_application.h"
#include "surroundings.h"

#include <velcoran/connection.h>

#include <QDate>
#include <QString>

#include <chrono>

namespace velcoran::form {
class RptStoc;
}

namespace velcoran::component {

/// The report window of the thread that can have windows: one object, made by the first call and reused by every later
/// one. In a process without an application object the first call makes one, on its thread; that thread may end while
/// the window is open, and nobody else is given one then.
///
/// Both go when the component is asked whether it may be unloaded and nothing of it is in use, or with the host's
/// application object. A process that ends with its window open ends without them: by then Qt's own globals
/// are gone.
class WindowThread {
public:
    explicit WindowThread(const com::HostObjects& hostObjects);
    WindowThread(const WindowThread&) = delete;
    WindowThread& operator=(const WindowThread&) = delete;

    /// Assigns the connection and sets the window up.
    /// @throws Error kInvalidProcedureCall on a thread that cannot have windows, otherwise what the set-up says
    void incarca(const QString& kind, const com::Ref<IConnection>& connection, QDate date, const QString& prefix);
    /// Destroys the window object and the component's own application object, and lets go of the host's message
    /// library.
    /// @return false, with everything as it was, while the window is in use, on another thread than the window's, or
    ///         where the application object cannot safely go
    bool release();
    /// Holds the window's thread while another one ends the process.
    void stopAtExit() { m_application.stopAtExit(); }

    /// Who hears of the window; null for nobody. This and the two below refuse on another thread than the window's.
    /// @throws Error kInvalidProcedureCall
    void advise(com::Ref<IWindowEvents> events);
    /// @return true when the window is closed; false when the close follows
    bool close();
    /// Does what waits for the window. @param wait  for something to do, where nothing waits
    /// @return true while the window is open @throws also kInvalidProcedureCall for a wait of more than a minute
    bool dispatch(std::chrono::milliseconds wait);

private:
    [[nodiscard]] bool isInUse() const;
    static void requireThread();
    void provideApplication();
    void provideWindow();
    void destroyWindow();
    static void dropWindow();

    HostEvents m_events;
    HostSurroundings m_surroundings;
    db::ReleaseWatch m_connections;
    OwnApplication m_application;       ///< open only where the host has none
    form::RptStoc* m_window = nullptr;  ///< owned
};

}  // namespace velcoran::component
