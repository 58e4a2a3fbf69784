#pragma once

#include <QString>

#include <optional>
#include <span>

namespace velcoran::viewer {

/// What the user can ask the viewer for, by button, key or name.
enum class Command {
    Export,
    Print,
    Refresh,
    Tree,
    First,
    Previous,
    Next,
    Last,
    ZoomOut,
    ZoomIn,
    ZoomReset,
    Find,
    FindPrevious,
    FindNext,
    Stop,
    Filter,
    Help,
    Close,
    GoTo,
    Copy,
    OpenDocument,
    SwitchPane,
};

/// When a command can be used.
enum class Needs { Report, Loading, Source, Selection, Document };

struct CommandRow {
    Command command;
    const char16_t* name;     ///< name for ReportViewer::act; null for none
    const char16_t* caption;  ///< what it does, in Romanian
    const char16_t* key;      ///< its key as the tooltip names it; null for none
    Needs needs;
};

/// All commands, in the order in which the toolbar and the key list show them.
[[nodiscard]] std::span<const CommandRow> commandRows();
[[nodiscard]] const CommandRow& rowOf(Command command);
/// Tooltip: the caption with its key in brackets, "Exportă (Ctrl+E)".
[[nodiscard]] QString tooltipOf(Command command);
/// The command with a name for ReportViewer::act; nothing for an unknown one.
[[nodiscard]] std::optional<Command> commandNamed(const QString& name);
/// The command of a key press. @param key  a Qt::Key
[[nodiscard]] std::optional<Command> commandOfKey(int key, Qt::KeyboardModifiers modifiers);

}  // namespace velcoran::viewer
