#pragma once

#include "component/surroundings.h"

#include <velcoran/connection.h>

#include <QDate>
#include <QString>

#include <memory>

class QApplication;

namespace velcoran::form {
class RptStoc;
}

namespace velcoran::component {

/// The report window of the thread that can have windows: one object, made by the first call and reused by every later
/// one. In a process without an application object the first call makes one, on its thread, for as long as the library
/// is loaded.
class WindowThread {
public:
    explicit WindowThread(const com::HostObjects& hostObjects);
    ~WindowThread();
    WindowThread(const WindowThread&) = delete;
    WindowThread& operator=(const WindowThread&) = delete;

    /// Assigns the connection and sets the window up.
    /// @throws Error kInvalidProcedureCall on a thread that cannot have windows, otherwise what the set-up says
    void incarca(const QString& kind, const com::Ref<IConnection>& connection, QDate date, const QString& prefix);
    /// True while the window is loaded. Any thread: false is certain only on the window's own.
    [[nodiscard]] bool isLoaded() const;

private:
    void provideApplication();
    void provideWindow();
    static void dropWindow();

    HostSurroundings m_surroundings;
    std::unique_ptr<QApplication> m_application;
    std::unique_ptr<form::RptStoc> m_window;
};

}  // namespace velcoran::component
