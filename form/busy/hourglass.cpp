#include "hourglass.h"

#include <QCursor>
#include <QGuiApplication>

namespace velcoran::form {

void Hourglass::set() {
    if (m_isSet) return;
    QGuiApplication::setOverrideCursor(QCursor(Qt::WaitCursor));
    m_isSet = true;
}

void Hourglass::reset() {
    if (!m_isSet) return;
    QGuiApplication::restoreOverrideCursor();
    m_isSet = false;
}

}  // namespace velcoran::form
