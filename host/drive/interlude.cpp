#include "interlude.h"

#include <algorithm>
#include <limits>
#include <utility>

namespace velcoran::host {

Interlude::Interlude(QList<DriveCommand> commands, double pause, IsRunning isRunning, CarryOut carryOut)
    : m_commands(std::move(commands)),
      m_pause(static_cast<int>(std::min(pause * 1000, double{std::numeric_limits<int>::max()}))),
      m_isRunning(std::move(isRunning)),
      m_carryOut(std::move(carryOut)) {
    // Only a loop that dispatches lets the timer end, and each of its rounds does.
    m_timer.setSingleShot(true);
    m_timer.setTimerType(Qt::PreciseTimer);
    connect(&m_timer, &QTimer::timeout, this, [this] { look(); });
    if (!m_commands.isEmpty()) m_timer.start(0);
}

void Interlude::look() {
    if (m_commands.isEmpty()) return;
    if (!m_isRunning()) return m_timer.start(0);
    // The timer stands still meanwhile: a command that dispatches events is not interrupted by the next one.
    m_timer.stop();
    m_answers.append(m_carryOut(m_commands.takeFirst()));
    if (!m_commands.isEmpty()) m_timer.start(m_pause);
}

}  // namespace velcoran::host
