#include "command_table.h"

#include "base/enum_table.h"

#include <algorithm>

namespace velcoran::viewer {

namespace {

// The plus sign is typed with or without Shift, depending on the keyboard.
// clang-format off
constexpr base::EnumTable<&CommandRow::command, kCommandCount> kCommands{{{
    {Command::Export, u"export", Part::ExportButton, u"crwExport", u"export",
        u"Exportă raportul", u"Ctrl+E", {Qt::CTRL | Qt::Key_E}, Needs::Report},
    {Command::Print, u"print", Part::PrintButton, u"crwPrint", u"print",
        u"Tipărește", u"Ctrl+P", {Qt::CTRL | Qt::Key_P}, Needs::Report},
    {Command::Refresh, nullptr, Part::RefreshButton, u"crwRefresh", u"refresh",
        u"Citește din nou datele", u"F5", {Qt::Key_F5}, Needs::Source},
    {Command::Tree, u"tree", Part::TreeButton, u"crwTreeButton", u"tree",
        u"Arată sau ascunde grupurile", u"Ctrl+T", {Qt::CTRL | Qt::Key_T}, Needs::Report},
    {Command::First, u"first", Part::Navigation, u"crwFirst", u"first",
        u"Prima pagină", u"Home", {Qt::Key_Home, Qt::CTRL | Qt::Key_Home}, Needs::Report},
    {Command::Previous, u"previous", Part::Navigation, u"crwPrevious", u"previous",
        u"Pagina anterioară", u"Ctrl+Page Up", {Qt::CTRL | Qt::Key_PageUp}, Needs::Report},
    {Command::Next, u"next", Part::Navigation, u"crwNext", u"next",
        u"Pagina următoare", u"Ctrl+Page Down", {Qt::CTRL | Qt::Key_PageDown}, Needs::Report},
    {Command::Last, u"last", Part::Navigation, u"crwLast", u"last",
        u"Ultima pagină", u"End", {Qt::Key_End, Qt::CTRL | Qt::Key_End}, Needs::Report},
    {Command::GoTo, nullptr, std::nullopt, nullptr, nullptr,
        u"Mergi la pagina", u"Ctrl+G", {Qt::CTRL | Qt::Key_G}, Needs::Report},
    {Command::ZoomOut, u"zoomOut", Part::Zoom, u"crwZoomOut", u"zoom_out",
        u"Micșorează", u"Ctrl+-", {Qt::CTRL | Qt::Key_Minus}, Needs::Report},
    {Command::ZoomIn, u"zoomIn", Part::Zoom, u"crwZoomIn", u"zoom_in",
        u"Mărește", u"Ctrl++",
        {Qt::CTRL | Qt::Key_Plus, Qt::CTRL | Qt::SHIFT | Qt::Key_Plus, Qt::CTRL | Qt::Key_Equal}, Needs::Report},
    {Command::ZoomReset, nullptr, std::nullopt, nullptr, nullptr,
        u"Mărime reală", u"Ctrl+0", {Qt::CTRL | Qt::Key_0}, Needs::Report},
    {Command::Find, nullptr, Part::Search, nullptr, u"search",
        u"Caută în raport", u"Ctrl+F", {Qt::CTRL | Qt::Key_F}, Needs::Report},
    {Command::FindPrevious, nullptr, Part::Search, u"crwFindPrevious", u"up",
        u"Potrivirea anterioară", u"Shift+F3", {Qt::SHIFT | Qt::Key_F3}, Needs::Report},
    {Command::FindNext, nullptr, Part::Search, u"crwFindNext", u"down",
        u"Potrivirea următoare", u"F3", {Qt::Key_F3}, Needs::Report},
    {Command::Stop, u"stop", Part::StopButton, u"crwStop", u"stop",
        u"Oprește încărcarea", nullptr, {}, Needs::Loading},
    {Command::Filter, nullptr, Part::FilterButton, u"crwFilter", u"filter",
        u"Filtrează datele", nullptr, {}, Needs::Report},
    {Command::Help, nullptr, Part::HelpButton, u"crwHelp", u"help",
        u"Taste", u"F1", {Qt::Key_F1}, Needs::Report},
    {Command::Close, nullptr, Part::CloseButton, u"crwClose", u"close",
        u"Închide raportul", u"Ctrl+W", {Qt::CTRL | Qt::Key_W}, Needs::Report},
    {Command::Copy, nullptr, std::nullopt, nullptr, u"copy",
        u"Copiază valoarea", u"Ctrl+C", {Qt::CTRL | Qt::Key_C}, Needs::Value},
    {Command::CopyRow, nullptr, std::nullopt, nullptr, nullptr,
        u"Copiază rândul", nullptr, {}, Needs::Row},
    {Command::OpenDocument, u"openDocument", std::nullopt, nullptr, nullptr,
        u"Deschide documentul", u"Enter", {Qt::Key_Return, Qt::Key_Enter}, Needs::Document},
    {Command::SwitchPane, nullptr, std::nullopt, nullptr, nullptr,
        u"Treci între grupuri și pagini", u"F6", {Qt::Key_F6}, Needs::Report},
}}};
// clang-format on

}  // namespace

std::span<const CommandRow> commandRows() { return kCommands; }

const CommandRow& rowOf(Command command) { return kCommands[command]; }

QString tooltipOf(Command command) {
    const CommandRow& row = rowOf(command);
    QString text = QString::fromUtf16(row.caption);
    if (row.keyText != nullptr) text += QStringLiteral(" (") + QString::fromUtf16(row.keyText) + u')';
    return text;
}

std::optional<Command> commandNamed(const QString& name) {
    for (const CommandRow& row : kCommands)
        if (row.name != nullptr && name == QStringView(row.name)) return row.command;
    return std::nullopt;
}

std::optional<Command> commandOfKey(QKeyCombination pressed) {
    if (pressed.key() == Qt::Key_unknown) return std::nullopt;
    const QKeyCombination wanted(pressed.keyboardModifiers() & ~Qt::KeypadModifier, pressed.key());
    for (const CommandRow& row : kCommands)
        if (std::ranges::find(row.keys, wanted) != row.keys.end()) return row.command;
    return std::nullopt;
}

}  // namespace velcoran::viewer
