#pragma once

#include <QByteArray>
#include <QList>

namespace velcoran::host {

class DriveSession;
class EndWatch;

/// Cuts what comes in pieces into lines. The end of a line may be LF or CR LF.
class LineBuffer {
public:
    /// Takes a piece. @return the lines that it completed
    [[nodiscard]] QList<QByteArray> append(const QByteArray& piece);
    /// What stands after the last end of a line; no line at all when nothing does.
    [[nodiscard]] QList<QByteArray> rest();

private:
    QByteArray m_pending;
};

/// Reads lines from standard input while the window lives on its events, and writes each answer to standard output.
/// Ends at "quit", at the end of input, or when the watch says so.
/// @return exit status: 1 when the answers cannot be written, that of the watch where it ended the run
[[nodiscard]] int runDrive(DriveSession& session, const EndWatch& end);

}  // namespace velcoran::host
