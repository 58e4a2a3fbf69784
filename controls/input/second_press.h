#pragma once

#include <QObject>

namespace velcoran::controls {

/// Swallows the second press of a double click whose first click closed something (a list, a calendar, the picker, a
/// panel): it would work whatever lies under the mouse by then, in any window, and give it the focus.
class SecondPressGuard final : public QObject {
public:
    using QObject::QObject;

    /// To be called when the release of a click has closed something, or a key has: the next press decides.
    void arm();
    /// To be called while a press closes something: the press itself may still go to what lies under it.
    void armAfterPress();

protected:
    bool eventFilter(QObject* object, QEvent* event) override;

private:
    void disarm();

    bool m_isSwallowed = false;  ///< the press was; its release follows
};

}  // namespace velcoran::controls
