#include "plain_box_watch.h"

#include <QApplication>
#include <QFileDialog>
#include <QMessageBox>
#include <QTimer>

#include <utility>

namespace velcoran::host {

PlainBoxWatch::PlainBoxWatch(Report report) : m_report(std::move(report)) {
    QCoreApplication::instance()->installEventFilter(this);
}

bool PlainBoxWatch::eventFilter(QObject* object, QEvent* event) {
    if (event->type() != QEvent::Show) return false;
    // The dialog's own loop starts after this event: a timer ends it from inside.
    if (auto* box = qobject_cast<QMessageBox*>(object)) {
        m_report(box->text(), box->windowTitle());
        QTimer::singleShot(0, box, &QDialog::accept);
    } else if (object->inherits("QFileDialog") || object->inherits("QAbstractPrintDialog")) {
        QTimer::singleShot(0, static_cast<QDialog*>(object), &QDialog::reject);
    }
    return false;
}

}  // namespace velcoran::host
