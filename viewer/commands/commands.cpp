#include "commands.h"

#include <algorithm>

namespace velcoran::viewer {

namespace {

constexpr CommandRow kRows[] = {
    {Command::Export, u"export", u"Exportă raportul", u"Ctrl+E", Needs::Report},
    {Command::Print, u"print", u"Tipărește", u"Ctrl+P", Needs::Report},
    {Command::Refresh, nullptr, u"Citește din nou datele", u"F5", Needs::Source},
    {Command::Tree, u"tree", u"Arată sau ascunde grupurile", u"Ctrl+T", Needs::Report},
    {Command::First, u"first", u"Prima pagină", u"Home", Needs::Report},
    {Command::Previous, u"previous", u"Pagina anterioară", u"Ctrl+Page Up", Needs::Report},
    {Command::Next, u"next", u"Pagina următoare", u"Ctrl+Page Down", Needs::Report},
    {Command::Last, u"last", u"Ultima pagină", u"End", Needs::Report},
    {Command::GoTo, nullptr, u"Mergi la pagina", u"Ctrl+G", Needs::Report},
    {Command::ZoomOut, u"zoomOut", u"Micșorează", u"Ctrl+-", Needs::Report},
    {Command::ZoomIn, u"zoomIn", u"Mărește", u"Ctrl++", Needs::Report},
    {Command::ZoomReset, nullptr, u"Mărime reală", u"Ctrl+0", Needs::Report},
    {Command::Find, nullptr, u"Caută în raport", u"Ctrl+F", Needs::Report},
    {Command::FindPrevious, nullptr, u"Potrivirea anterioară", u"Shift+F3", Needs::Report},
    {Command::FindNext, nullptr, u"Potrivirea următoare", u"F3", Needs::Report},
    {Command::Stop, u"stop", u"Oprește încărcarea", nullptr, Needs::Loading},
    {Command::Filter, nullptr, u"Filtrează datele", nullptr, Needs::Report},
    {Command::Help, nullptr, u"Taste", u"F1", Needs::Report},
    {Command::Close, nullptr, u"Închide raportul", u"Ctrl+W", Needs::Report},
    {Command::Copy, nullptr, u"Copiază valoarea", u"Ctrl+C", Needs::Selection},
    {Command::OpenDocument, u"openDocument", u"Deschide documentul", u"Enter", Needs::Document},
    {Command::SwitchPane, nullptr, u"Treci între grupuri și pagini", u"F6", Needs::Report},
};

struct KeyRow {
    Qt::KeyboardModifiers modifiers;
    Qt::Key key;
    Command command;
};

// The plus sign is typed with or without Shift, depending on the keyboard.
constexpr KeyRow kKeys[] = {
    {Qt::ControlModifier, Qt::Key_E, Command::Export},
    {Qt::ControlModifier, Qt::Key_P, Command::Print},
    {Qt::NoModifier, Qt::Key_F5, Command::Refresh},
    {Qt::ControlModifier, Qt::Key_T, Command::Tree},
    {Qt::NoModifier, Qt::Key_Home, Command::First},
    {Qt::ControlModifier, Qt::Key_Home, Command::First},
    {Qt::ControlModifier, Qt::Key_PageUp, Command::Previous},
    {Qt::ControlModifier, Qt::Key_PageDown, Command::Next},
    {Qt::NoModifier, Qt::Key_End, Command::Last},
    {Qt::ControlModifier, Qt::Key_End, Command::Last},
    {Qt::ControlModifier, Qt::Key_G, Command::GoTo},
    {Qt::ControlModifier, Qt::Key_Minus, Command::ZoomOut},
    {Qt::ControlModifier, Qt::Key_Plus, Command::ZoomIn},
    {Qt::ControlModifier | Qt::ShiftModifier, Qt::Key_Plus, Command::ZoomIn},
    {Qt::ControlModifier, Qt::Key_Equal, Command::ZoomIn},
    {Qt::ControlModifier, Qt::Key_0, Command::ZoomReset},
    {Qt::ControlModifier, Qt::Key_F, Command::Find},
    {Qt::NoModifier, Qt::Key_F3, Command::FindNext},
    {Qt::ShiftModifier, Qt::Key_F3, Command::FindPrevious},
    {Qt::NoModifier, Qt::Key_F1, Command::Help},
    {Qt::ControlModifier, Qt::Key_W, Command::Close},
    {Qt::ControlModifier, Qt::Key_C, Command::Copy},
    {Qt::NoModifier, Qt::Key_Return, Command::OpenDocument},
    {Qt::NoModifier, Qt::Key_Enter, Command::OpenDocument},
    {Qt::NoModifier, Qt::Key_F6, Command::SwitchPane},
};

}  // namespace

std::span<const CommandRow> commandRows() { return kRows; }

const CommandRow& rowOf(Command command) {
    return *std::ranges::find_if(kRows, [command](const CommandRow& row) { return row.command == command; });
}

QString tooltipOf(Command command) {
    const CommandRow& row = rowOf(command);
    QString text = QString::fromUtf16(row.caption);
    if (row.key != nullptr) text += QStringLiteral(" (") + QString::fromUtf16(row.key) + u')';
    return text;
}

std::optional<Command> commandNamed(const QString& name) {
    for (const CommandRow& row : kRows)
        if (row.name != nullptr && name == QStringView(row.name)) return row.command;
    return std::nullopt;
}

std::optional<Command> commandOfKey(int key, Qt::KeyboardModifiers modifiers) {
    const Qt::KeyboardModifiers pressed = modifiers & ~Qt::KeypadModifier;
    for (const KeyRow& row : kKeys)
        if (row.key == key && row.modifiers == pressed) return row.command;
    return std::nullopt;
}

}  // namespace velcoran::viewer
