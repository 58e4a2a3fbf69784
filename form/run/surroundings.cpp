#include "surroundings.h"

#include "report_output.h"

#include <QGuiApplication>
#include <QMessageBox>

namespace velcoran::form {

std::unique_ptr<IReportOutput> Surroundings::newOutput(QWidget&, Activity&) { return nullptr; }

void Surroundings::showPlainMessage(QWidget& window, const QString& text) {
    QMessageBox box(QMessageBox::NoIcon, QGuiApplication::applicationDisplayName(), text, QMessageBox::Ok, &window);
    box.setTextFormat(Qt::PlainText);
    box.exec();
}

}  // namespace velcoran::form
