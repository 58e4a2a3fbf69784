#pragma once

#include <QApplication>
#include <QTest>
#include <QWidget>

#include <gtest/gtest.h>

namespace velcoran::controls {

/// A window with the focus on a neighbour of the control under test.
class WindowTest : public testing::Test {
protected:
    void open(QWidget& control, QSize size) {
        control.setGeometry(QRect(QPoint(10, 10), size));
        m_other.setFocusPolicy(Qt::StrongFocus);
        m_other.setGeometry(300, 10, 20, 20);
        m_window.resize(400, 300);
        m_window.show();
        m_window.activateWindow();
        QApplication::processEvents();
        control.setFocus();
    }

    QWidget m_window;
    QWidget m_other{&m_window};
};

}  // namespace velcoran::controls
