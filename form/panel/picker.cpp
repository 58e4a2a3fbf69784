#include "picker.h"

#include "collected_state.h"
#include "filter_panel.h"
#include "keyboard.h"
#include "lookup/fill.h"
#include "lookup/lookup_request.h"
#include "lookup/texts.h"
#include "lookup/type_ahead.h"
#include "members.h"

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

Picker::Picker(ControlTree& controls, Members& members, HandlerGuard& handlers, db::ICallRunner& runner,
               const Messenger& messenger, FilterPanel& panel)
    : m_controls(controls),
      m_members(members),
      m_handlers(handlers),
      m_runner(runner),
      m_messenger(messenger),
      m_panel(panel) {
    m_controls.frame(Ctl::fraGrid).setTag({});  // it has one from the start, empty until the first lookup
    controls::Grid& grid = m_controls.grid();
    grid.setKeyPressHandler([this](const QString& character) { m_handlers.run([&] { onCharacter(character); }); });
    connect(&grid, &controls::Grid::cellClicked, this, [this] {
        m_secondPress.arm();
        m_handlers.run([this] { pickCurrent(); });
    });
}

void Picker::detach() {
    guardFocus(false);
    m_controls.grid().bind(nullptr);
    m_model.setRowSet(nullptr);
}

void Picker::openLookup(LookupField field) {
    const lookup::LookupRequest request = lookup::buildLookup(field, collectState(m_members, m_controls));
    controls::Frame& frame = m_controls.frame(Ctl::fraGrid);
    showCaption(request.Caption);
    frame.setTag(request.Tag);
    if (!fillGrid(request.Sql)) {
        m_controls.textBox(field).setFocus();
        return;
    }
    frame.show();
    m_controls.grid().setFocus();
    guardFocus(true);
}

bool Picker::fillGrid(const QString& sql) {
    m_members.rsLookup = std::make_shared<db::RowSet>();
    if (lookup::openLookup(*m_members.rsLookup, m_members.Priza, sql, m_runner) != 0) {
        showRows();
        return true;
    }
    m_messenger.show({lookup::kNoRowsText.toString(), kStilError, m_controls.frame(Ctl::fraGrid).caption()});
    return false;
}

void Picker::showRows() {
    m_controls.widget(Ctl::frmEnable).setEnabled(false);
    const base::TwipsRect place = controls::twipsOf(&m_controls.widget(Ctl::fraGrid));
    m_controls.place(Ctl::fraGrid, {kOpenLeft, kOpenTop, place.width, place.height});
    m_model.setRowSet(m_members.rsLookup.get());
    m_shown = m_members.rsLookup;
    m_controls.grid().bind(&m_model);
    setWidths();
}

void Picker::setWidths() {
    controls::Grid& grid = m_controls.grid();
    const lookup::ColumnWidths widths = lookup::columnWidths(m_controls.frame(Ctl::fraGrid).caption());
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
    if (isOpen()) cancelPick(m_controls.frame(Ctl::fraGrid).tag(), *this);
}

void Picker::showCaption(const QString& caption) {
    m_controls.frame(Ctl::fraGrid).setCaption(caption);
    m_controls.grid().setAccessibleName(caption);
}

void Picker::typeAhead(const QString& character) {
    controls::Frame& frame = m_controls.frame(Ctl::fraGrid);
    controls::Grid& grid = m_controls.grid();
    lookup::TypeAhead state{m_members.sCautare, frame.caption()};
    const bool isFiltered =
        lookup::typeAhead(state, character, grid.headerText(grid.column()), frame.tag(), *m_members.rsLookup);
    m_members.sCautare = state.sCautare;
    showCaption(state.caption);
    if (isFiltered) m_model.refresh();
    grid.setFocus();
}

void Picker::pickCurrent() {
    if (!isOpen()) return;
    controls::Grid& grid = m_controls.grid();
    if (grid.row() < 1) return;
    const auto cell = [&grid](int column) { return grid.cellText(grid.row(), column); };
    pick(m_controls.frame(Ctl::fraGrid).tag(), cell, *this);
}

void Picker::emptySearchText() { m_members.sCautare.clear(); }

void Picker::setFieldText(LookupField field, const QString& text) { m_controls.textBox(field).setText(text); }

void Picker::setCode(filters::CodeVariable code, const QString& value) { m_members.codes[code] = value; }

void Picker::clearDataChanged(LookupField field) { m_panel.clearDataChanged(field); }

void Picker::closePicker() {
    guardFocus(false);
    m_controls.grid().clearFocus();
    m_controls.widget(Ctl::fraGrid).hide();
    m_controls.widget(Ctl::frmEnable).setEnabled(true);
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
    if (now == nullptr || now->window() != &m_controls.window()) return;
    if (!m_controls.widget(Ctl::fraGrid).isAncestorOf(now)) m_controls.grid().setFocus();
}

bool Picker::eventFilter(QObject* object, QEvent* event) {
    if (!isPointer(event->type()) || !object->isWidgetType()) return false;
    const auto* widget = static_cast<QWidget*>(object);
    if (widget->window() != &m_controls.window()) return false;
    return !m_controls.widget(Ctl::fraGrid).isAncestorOf(widget);
}

}  // namespace velcoran::form
