#pragma once

#include <velcoran/connection.h>

#include <QString>

#include <memory>

namespace velcoran::host {

/// A file for support: what a connection was asked, and what came of it, a line each with the moment and the time
/// taken. Statements stand as they reached the connection; a connection text, and with it a password, never does. Any
/// thread.
class Trace {
public:
    /// Appends to a file that its owner alone can read. @throws Error kPathAccess
    explicit Trace(const QString& path);
    ~Trace();
    Trace(const Trace&) = delete;
    Trace& operator=(const Trace&) = delete;

    /// Writes a line at once; line breaks in it become blanks. A file that takes no more is told once, on standard
    /// error.
    void write(const QString& line) noexcept;

private:
    struct File;
    std::unique_ptr<File> m_file;
};

/// A connection whose statements, rows, times and failures go into a trace. @param trace  null for none
[[nodiscard]] com::Ref<IConnection> traceConnection(com::Ref<IConnection> connection, std::shared_ptr<Trace> trace);

}  // namespace velcoran::host
