#pragma once

#include "system/line_file.h"

#include <velcoran/connection.h>

#include <QString>

#include <atomic>
#include <memory>
#include <mutex>

namespace velcoran::host {

/// What support reads about a run: a line for each event of a connection, with the moment and the number of the
/// connection and of its statement. Any thread.
class Trace {
public:
    /// @throws Error kPathAccess when the file cannot be opened
    explicit Trace(const QString& file);

    /// Adds a line. Controls and line ends of the words are written as \n, \t, \u0001 and so on. A file that can no
    /// longer be written is told once on standard error; the run goes on without the trace.
    void tell(const QString& subject, const QString& words) noexcept;
    /// The subject of a connection, from "1" on; its statements are "1.1", "1.2" and so on.
    [[nodiscard]] QString nextConnection() { return QString::number(++m_connections); }

private:
    std::mutex m_mutex;
    system::LineFile m_file;
    bool m_isBroken = false;
    std::atomic<int> m_connections = 0;
};

/// @return null for an empty name
/// @throws Error kPathAccess
[[nodiscard]] std::shared_ptr<Trace> openTrace(const QString& file);

/// A connection that tells each statement's text, rows and times and each failure's number and description, and hands
/// every call on. No value of a row is told.
/// @param trace  null for none: the connection itself is returned
[[nodiscard]] com::Ref<IConnection> traceConnection(com::Ref<IConnection> connection, std::shared_ptr<Trace> trace,
                                                    const QString& subject);

}  // namespace velcoran::host
