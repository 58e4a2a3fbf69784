#pragma once

#include "drive_command.h"

#include <QJsonArray>
#include <QJsonObject>
#include <QList>
#include <QObject>
#include <QTimer>

#include <functional>

namespace velcoran::host {

/// Commands for the time in which another command runs: from the first moment at which the window dispatches events
/// while that command's statement or report runs, they are carried out one by one.
class Interlude final : public QObject {
public:
    using IsRunning = std::function<bool()>;
    using CarryOut = std::function<QJsonObject(const DriveCommand&)>;

    /// Starts to watch; an empty list has nothing to do.
    /// @param pause  seconds between a command's answer and the next command
    Interlude(QList<DriveCommand> commands, double pause, IsRunning isRunning, CarryOut carryOut);

    /// Says that the window is about to dispatch events: a report that loads now may have loaded with the first of
    /// them.
    void look();

    /// The answers of the commands that were carried out, in their order.
    [[nodiscard]] const QJsonArray& answers() const { return m_answers; }
    /// How many were not carried out.
    [[nodiscard]] int left() const { return static_cast<int>(m_commands.size()); }

private:
    QList<DriveCommand> m_commands;
    int m_pause;  ///< in milliseconds
    IsRunning m_isRunning;
    CarryOut m_carryOut;
    QJsonArray m_answers;
    QTimer m_timer;
};

}  // namespace velcoran::host
