#include "picker.h"

#include "filter_panel.h"
#include "keyboard.h"
#include "lookup/fill.h"
#include "lookup/lookup_request.h"
#include "lookup/type_ahead.h"

#include <QApplication>

namespace velcoran::form {

using filters::LookupField;

namespace {

constexpr base::Twips kOpenLeft{150};
constexpr base::Twips kOpenTop{100};

constexpr QStringView kEnter = u"\r";
constexpr QStringView kEsc = u"\x1B";

bool isPointer(QEvent::Type type) {
    switch (type) {
        case QEvent::MouseButtonPress:
        case QEvent::MouseButtonRelease:
        case QEvent::MouseButtonDblClick:
        case QEvent::Wheel:
        case QEvent::ContextMenu:
        case QEvent::TouchBegin:
        case QEvent::TouchEnd:
        case QEvent::TouchUpdate:
            return true;
        default:
            return false;
    }
}

}  // namespace

Picker::Picker(const Context& context, FilterPanel& panel) : m_context(context), m_panel(panel) {
    context.controls.frame(Ctl::fraGrid).setTag({});  // it has one from the start, empty until the first lookup
    controls::Grid& grid = context.controls.grid();
    grid.setKeyPressHandler(
        [this](const QString& character) { m_context.handlers.run([&] { onCharacter(character); }); });
    connect(&grid, &controls::Grid::cellClicked, this, [this] {
        m_secondPress.arm();
        m_context.handlers.run([this] { pickCurrent(); });
    });
}

void Picker::detach() {
    guardFocus(false);
    m_context.controls.grid().bind(nullptr);
    m_model.setRowSet(nullptr);
}

bool Picker::isOpen() const { return !m_context.controls.widget(Ctl::fraGrid).isHidden(); }

void Picker::openLookup(LookupField field) {
    const lookup::LookupRequest request =
        lookup::buildLookup(field, collectState(m_context.members, m_context.controls));
    controls::Frame& frame = m_context.controls.frame(Ctl::fraGrid);
    showCaption(request.Caption);
    frame.setTag(request.Tag);
    if (!fillGrid(request.Sql)) {
        m_context.controls.textBox(field).setFocus();
        return;
    }
    frame.show();
    m_context.controls.grid().setFocus();
    guardFocus(true);
}

bool Picker::fillGrid(const QString& sql) {
    Members& members = m_context.members;
    members.rsLookup = std::make_shared<db::RowSet>();
    if (lookup::openLookup(*members.rsLookup, members.Priza, sql, m_context.runner) != 0) {
        showRows();
        return true;
    }
    m_context.show(lookup::kNoRowsText.toString(), kStilError, m_context.controls.frame(Ctl::fraGrid).caption());
    return false;
}

void Picker::showRows() {
    const ControlTree& tree = m_context.controls;
    tree.widget(Ctl::frmEnable).setEnabled(false);
    const base::TwipsRect place = controls::twipsOf(&tree.widget(Ctl::fraGrid));
    m_context.controls.place(Ctl::fraGrid, {kOpenLeft, kOpenTop, place.width, place.height});
    m_model.setRowSet(m_context.members.rsLookup.get());
    m_shown = m_context.members.rsLookup;
    tree.grid().bind(&m_model);
    setWidths();
}

void Picker::setWidths() {
    controls::Grid& grid = m_context.controls.grid();
    const lookup::ColumnWidths widths = lookup::columnWidths(m_context.controls.frame(Ctl::fraGrid).caption());
    grid.setColumnWidth(0, widths.fixed);
    grid.setColumnWidth(1, widths.first);
    grid.setColumnWidth(2, widths.second);
    if (widths.third.has_value()) grid.setColumnWidth(3, *widths.third);
}

void Picker::onCharacter(const QString& character) {
    if (!isOpen()) return;
    if (character == kEnter) return pickCurrent();
    if (character == kEsc) return cancel();
    typeAhead(character);
}

void Picker::cancel() {
    if (isOpen()) cancelPick(m_context.controls.frame(Ctl::fraGrid).tag(), *this);
}

void Picker::showCaption(const QString& caption) {
    m_context.controls.frame(Ctl::fraGrid).setCaption(caption);
    m_context.controls.grid().setAccessibleName(caption);
}

void Picker::typeAhead(const QString& character) {
    controls::Frame& frame = m_context.controls.frame(Ctl::fraGrid);
    controls::Grid& grid = m_context.controls.grid();
    lookup::TypeAhead state{m_context.members.sCautare, frame.caption()};
    const bool isFiltered =
        lookup::typeAhead(state, character, grid.headerText(grid.column()), frame.tag(), *m_context.members.rsLookup);
    m_context.members.sCautare = state.sCautare;
    showCaption(state.caption);
    if (isFiltered) m_model.refresh();
    grid.setFocus();
}

void Picker::pickCurrent() {
    if (!isOpen()) return;
    controls::Grid& grid = m_context.controls.grid();
    if (grid.row() < 1) return;
    const auto cell = [&grid](int column) { return grid.cellText(grid.row(), column); };
    pick(m_context.controls.frame(Ctl::fraGrid).tag(), cell, *this);
}

void Picker::emptySearchText() { m_context.members.sCautare.clear(); }

void Picker::setFieldText(LookupField field, const QString& text) { m_context.controls.textBox(field).setText(text); }

void Picker::setCode(filters::CodeVariable code, const QString& value) { m_context.members.codes[code] = value; }

void Picker::clearDataChanged(LookupField field) { m_panel.clearDataChanged(field); }

void Picker::closePicker() {
    guardFocus(false);
    m_context.controls.grid().clearFocus();
    m_context.controls.widget(Ctl::fraGrid).hide();
    m_context.controls.widget(Ctl::frmEnable).setEnabled(true);
}

void Picker::focusControl(QStringView objectName) { m_keyboard->focus(*controlNamed(objectName), Direction::forward); }

/// The grid keeps the focus while it is open, as a validation that refuses every change of it would.
void Picker::guardFocus(bool isGuarded) {
    disconnect(m_focusGuard);
    QCoreApplication::instance()->removeEventFilter(this);
    if (!isGuarded) return;
    QCoreApplication::instance()->installEventFilter(this);
    m_focusGuard = connect(qApp, &QApplication::focusChanged, this, [this](QWidget*, QWidget* now) { keepFocus(now); });
}

void Picker::keepFocus(QWidget* now) {
    if (now == nullptr || now->window() != &m_context.window) return;
    if (!m_context.controls.widget(Ctl::fraGrid).isAncestorOf(now)) m_context.controls.grid().setFocus();
}

bool Picker::eventFilter(QObject* object, QEvent* event) {
    if (!isPointer(event->type()) || !object->isWidgetType()) return false;
    const auto* widget = static_cast<QWidget*>(object);
    if (widget->window() != &m_context.window) return false;
    return !m_context.controls.widget(Ctl::fraGrid).isAncestorOf(widget);
}

}  // namespace velcoran::form
