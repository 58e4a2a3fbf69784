#pragma once

#include "control_tree.h"
#include "controls/input/second_press.h"
#include "db/connection.h"
#include "db/row_set.h"
#include "form/busy/handler_guard.h"
#include "form/busy/messenger.h"
#include "form/rules/pick.h"
#include "lookup/grid_model.h"

#include <QObject>

namespace velcoran::form {

class FilterPanel;
class Keyboard;
struct Members;

/// The picker: the grid that opens over the filter panel with the rows of a lookup, narrowed by typing, left by a pick
/// or by Esc. While it is open nothing else in the window can be worked.
class Picker final : public QObject, private IPickTarget {
public:
    /// All of them outlive this.
    Picker(ControlTree& controls, Members& members, HandlerGuard& handlers, db::ICallRunner& runner,
           const Messenger& messenger, FilterPanel& panel);

    /// The keyboard gives the focus on after a pick; set once, before any key.
    void setKeyboard(Keyboard& keyboard) { m_keyboard = &keyboard; }

    /// Enter in a lookup field: runs its lookup and opens the grid on what it finds, or says that there is nothing.
    void openLookup(filters::LookupField field);
    [[nodiscard]] bool isOpen() const { return m_controls.isPickerOpen(); }
    /// Closes the open picker as Esc does.
    void cancel();
    /// Lets go of the focus and of the rows: the window closes.
    void detach();

protected:
    bool eventFilter(QObject* object, QEvent* event) override;

private:
    void showCaption(const QString& caption);
    [[nodiscard]] bool fillGrid(const QString& sql);
    void showRows();
    void setWidths();
    void onCharacter(const QString& character);
    void typeAhead(const QString& character);
    void pickCurrent();
    void guardFocus(bool isGuarded);
    void keepFocus(QWidget* now);

    void emptySearchText() override;
    void setFieldText(filters::LookupField field, const QString& text) override;
    void setCode(filters::CodeVariable code, const QString& value) override;
    void clearDataChanged(filters::LookupField field) override;
    void closePicker() override;
    void focusControl(QStringView objectName) override;

    ControlTree& m_controls;
    Members& m_members;
    HandlerGuard& m_handlers;
    db::ICallRunner& m_runner;
    const Messenger& m_messenger;
    FilterPanel& m_panel;
    Keyboard* m_keyboard = nullptr;
    lookup::GridModel m_model;
    std::shared_ptr<db::RowSet> m_shown;  ///< what the grid shows: the last lookup with rows
    QMetaObject::Connection m_focusGuard;
    controls::SecondPressGuard m_secondPress;
};

}  // namespace velcoran::form
