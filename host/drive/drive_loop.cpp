#include "drive_loop.h"

#include "drive_session.h"
#include "host/session/end_watch.h"

#include <QEventLoop>
#include <QSocketNotifier>

#include <array>
#include <cerrno>
#include <cstdio>
#include <utility>

#include <unistd.h>

namespace velcoran::host {

namespace {

/// Answers lines until the script ends. @return false when the run is over
bool answerLines(DriveSession& session, const EndWatch& end, const QList<QByteArray>& lines, int& status) {
    for (const QByteArray& line : lines) {
        const QByteArray answer = session.answer(line) + '\n';
        if (end.status()) return false;
        const auto size = static_cast<std::size_t>(answer.size());
        if (std::fwrite(answer.constData(), 1, size, stdout) != size || std::fflush(stdout) != 0) {
            status = 1;
            return false;
        }
        if (session.hasQuit()) return false;
    }
    return true;
}

}  // namespace

QList<QByteArray> LineBuffer::append(const QByteArray& piece) {
    QList<QByteArray> lines;
    m_pending += piece;
    qsizetype start = 0;
    for (qsizetype end = m_pending.indexOf('\n'); end >= 0; end = m_pending.indexOf('\n', start)) {
        QByteArray line = m_pending.sliced(start, end - start);
        if (line.endsWith('\r')) line.chop(1);
        lines.append(std::move(line));
        start = end + 1;
    }
    m_pending.remove(0, start);
    return lines;
}

QList<QByteArray> LineBuffer::rest() {
    QByteArray line = std::exchange(m_pending, {});
    return line.isEmpty() ? QList<QByteArray>() : QList<QByteArray>{std::move(line)};
}

int runDrive(DriveSession& session, const EndWatch& end) {
    constexpr std::size_t kPieceSize = 65536;
    int status = 0;
    LineBuffer buffer;
    std::array<char, kPieceSize> piece{};
    QEventLoop loop;
    QSocketNotifier notifier(STDIN_FILENO, QSocketNotifier::Read);
    QObject::connect(&notifier, &QSocketNotifier::activated, &loop, [&] {
        // A command that waits runs events of its own: lines stay in order because none is read meanwhile.
        notifier.setEnabled(false);
        const ssize_t count = ::read(STDIN_FILENO, piece.data(), piece.size());
        if (count < 0 && (errno == EINTR || errno == EAGAIN)) return notifier.setEnabled(true);
        const bool isEnd = count <= 0;
        const auto lines = isEnd ? buffer.rest() : buffer.append(QByteArray(piece.data(), count));
        if (!answerLines(session, end, lines, status) || isEnd) return loop.quit();
        notifier.setEnabled(true);
    });
    if (!end.status()) loop.exec();
    return end.status().value_or(status);
}

}  // namespace velcoran::host
