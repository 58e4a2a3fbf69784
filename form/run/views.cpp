#include "views.h"

#include "form/panel/control_tree.h"

namespace velcoran::form {

/// The focus leaves the panel first, so that it does not wander through the controls that go with it.
void Views::showReport() {
    QWidget& panel = m_controls.widget(Ctl::frmEnable);
    const QWidget* focused = m_controls.window().focusWidget();
    if (focused == nullptr || panel.isAncestorOf(focused)) m_controls.viewer().setFocus();
    panel.hide();
    m_secondPress.arm();
}

void Views::showFilters() {
    if (m_controls.isPickerOpen()) return;
    m_controls.widget(Ctl::frmEnable).show();
    m_controls.widget(Ctl::cmbTipRaport).setFocus();
}

}  // namespace velcoran::form
