#pragma once

#include <QApplication>
#include <QDialog>
#include <QTest>
#include <QTimer>

#include <functional>

namespace velcoran::tests {

/// Plays the user of the next modal dialog: calls a function with it as soon as it is open. Whatever the function
/// leaves open is cancelled, so that no test hangs.
class DialogDriver {
public:
    explicit DialogDriver(std::function<void(QDialog&)> act) : m_act(std::move(act)) {
        QObject::connect(&m_timer, &QTimer::timeout, [this] { look(); });
        m_timer.start(5);
    }
    [[nodiscard]] bool wasOpen() const { return m_wasOpen; }

private:
    void look() {
        auto* dialog = qobject_cast<QDialog*>(QApplication::activeModalWidget());
        if (dialog == nullptr) return;
        m_timer.stop();
        m_wasOpen = true;
        m_act(*dialog);
        if (dialog->isVisible()) dialog->reject();
    }

    std::function<void(QDialog&)> m_act;
    QTimer m_timer;
    bool m_wasOpen = false;
};

}  // namespace velcoran::tests
