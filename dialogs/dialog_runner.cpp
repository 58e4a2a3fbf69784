#include "dialog_runner.h"

#include <QDialog>
#include <QEvent>

namespace velcoran::dialogs {

namespace {

/// Cancels the dialog when its window is closed; a minimised window is hidden from outside and changes nothing.
class WindowWatch final : public QObject {
public:
    explicit WindowWatch(QDialog& dialog) : m_dialog(dialog) {
        if (dialog.parentWidget() != nullptr) dialog.parentWidget()->window()->installEventFilter(this);
    }

protected:
    bool eventFilter(QObject*, QEvent* event) override {
        if (event->type() == QEvent::Hide && !event->spontaneous()) m_dialog.reject();
        return false;
    }

private:
    QDialog& m_dialog;
};

}  // namespace

QWidget* widgetOf(std::uintptr_t window) {
    QWidget* widget = window == 0 ? nullptr : QWidget::find(static_cast<WId>(window));
    return widget == nullptr ? nullptr : widget->window();
}

bool runDialog(QDialog& dialog) {
    const WindowWatch watch(dialog);
    if (dialog.parentWidget() != nullptr) dialog.setWindowModality(Qt::WindowModal);
    return dialog.exec() == QDialog::Accepted;
}

}  // namespace velcoran::dialogs
