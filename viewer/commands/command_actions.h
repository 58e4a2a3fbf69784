#pragma once

#include "command_table.h"

#include "base/enum_table.h"

#include <QObject>

#include <functional>

class QAction;
class QColor;

namespace velcoran::viewer {

/// The viewer's commands as actions, one each, made from the table: buttons and menus show them. They have no shortcuts
/// of Qt's: a key that the host's window has too would do nothing then, so the viewer reads its keys from the table.
class CommandActions : public QObject {
    Q_OBJECT

public:
    CommandActions();

    [[nodiscard]] QAction& of(Command command) const { return *m_actions[command]; }
    /// Which commands can be used now.
    void setEnabled(const std::function<bool(Command)>& isUsable);
    /// Which are shown: those whose part is.
    void setOptions(const ViewerOptions& options);
    void setIconColour(const QColor& colour);

signals:
    /// Somebody has used a button or a menu.
    void triggered(velcoran::viewer::Command command);

private:
    base::EnumArray<QAction*, Command, kCommandCount> m_actions;
};

}  // namespace velcoran::viewer
