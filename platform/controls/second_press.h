#pragma once

#include <QObject>

namespace velcoran::controls {

/// Swallows the second press of a double click whose first click closed something (a list, a calendar, the picker):
/// it would work whatever lies under the mouse by then.
class SecondPressGuard final : public QObject {
public:
    using QObject::QObject;

    /// To be called when a click has closed something.
    void arm();

protected:
    bool eventFilter(QObject* object, QEvent* event) override;

private:
    void disarm();

    bool m_isSwallowed = false;  ///< the press was; its release follows
};

}  // namespace velcoran::controls
