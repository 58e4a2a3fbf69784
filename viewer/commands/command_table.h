#pragma once

#include "viewer_options.h"

#include <QKeyCombination>
#include <QString>

#include <array>
#include <optional>
#include <span>

namespace velcoran::viewer {

/// What the user can ask the viewer for, by button, menu, key or name.
enum class Command {
    Export,
    Print,
    Refresh,
    Tree,
    First,
    Previous,
    Next,
    Last,
    GoTo,
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
    Copy,
    CopyRow,
    OpenDocument,
    SwitchPane,
};
constexpr std::size_t kCommandCount = 23;

/// When a command can be used: with a report, while one loads, with a source to load from, with a chosen object that
/// has a value, that stands in a row, or whose row somebody can open.
enum class Needs { Report, Loading, Source, Value, Row, Document };

struct CommandRow {
    Command command;
    const char16_t* name;                 ///< name for ReportViewer::act; null for none
    std::optional<Part> part;             ///< the part of the viewer that it goes with; nothing: it is always there
    const char16_t* button;               ///< name of its button; null for none
    const char16_t* icon;                 ///< for svgIcon; null for none
    const char16_t* caption;              ///< what it does, in Romanian
    const char16_t* keyText;              ///< its key as people read it; null for none
    std::array<QKeyCombination, 3> keys;  ///< Key_unknown for none
    Needs needs;
};

/// All commands, in the order in which the toolbar and the key list show them.
[[nodiscard]] std::span<const CommandRow> commandRows();
[[nodiscard]] const CommandRow& rowOf(Command command);
/// Tooltip: the caption with its key in brackets, "Exportă (Ctrl+E)".
[[nodiscard]] QString tooltipOf(Command command);
/// The command with a name for ReportViewer::act; nothing for an unknown one.
[[nodiscard]] std::optional<Command> commandNamed(const QString& name);
/// The command of a key press; where the key is on the keyboard does not matter.
[[nodiscard]] std::optional<Command> commandOfKey(QKeyCombination pressed);

}  // namespace velcoran::viewer
