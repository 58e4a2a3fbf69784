#include "command_actions.h"

#include "icons.h"

#include <QAction>

namespace velcoran::viewer {

CommandActions::CommandActions() {
    for (const CommandRow& row : commandRows()) {
        const QString caption = QString::fromUtf16(row.caption);
        auto* action = new QAction(this);
        // A menu sets what follows the tab at its right side.
        action->setText(row.keyText == nullptr ? caption : caption + u'\t' + QString::fromUtf16(row.keyText));
        action->setIconText(caption);
        action->setToolTip(tooltipOf(row.command));
        action->setCheckable(row.command == Command::Tree);
        connect(action, &QAction::triggered, this, [this, command = row.command] { emit triggered(command); });
        m_actions[row.command] = action;
    }
}

void CommandActions::setEnabled(const std::function<bool(Command)>& isUsable) {
    for (const CommandRow& row : commandRows()) of(row.command).setEnabled(isUsable(row.command));
}

void CommandActions::setOptions(const ViewerOptions& options) {
    for (const CommandRow& row : commandRows()) of(row.command).setVisible(!row.part || options.isOn(*row.part));
}

void CommandActions::setIconColour(const QColor& colour) {
    for (const CommandRow& row : commandRows())
        if (row.icon != nullptr) of(row.command).setIcon(svgIcon(QString::fromUtf16(row.icon), colour));
}

}  // namespace velcoran::viewer
