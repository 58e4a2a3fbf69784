#include "report_keys.h"

#include "control_tree.h"

#include <QKeyEvent>

namespace velcoran::form {

namespace {

bool isOfButton(int key) {
    switch (key) {
        case Qt::Key_Tab:
        case Qt::Key_Backtab:
        case Qt::Key_Return:
        case Qt::Key_Enter:
        case Qt::Key_Space:
            return true;
        default:
            return false;
    }
}

}  // namespace

ReportKeys::ReportKeys(const ControlTree& controls) : m_controls(controls) {
    controls.widget(Ctl::Command1).installEventFilter(this);
}

bool ReportKeys::eventFilter(QObject*, QEvent* event) {
    if (event->type() != QEvent::KeyPress && event->type() != QEvent::ShortcutOverride) return false;
    const bool isReportInView = m_controls.widget(Ctl::frmEnable).isHidden();
    if (!isReportInView || isOfButton(static_cast<QKeyEvent*>(event)->key())) return false;
    QWidget* pages = m_controls.viewer().focusProxy();
    event->ignore();
    QCoreApplication::sendEvent(pages, event);
    return event->isAccepted();
}

}  // namespace velcoran::form
