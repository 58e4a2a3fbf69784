#include "wait_state.h"

namespace velcoran::form {

using namespace Qt::StringLiterals;

void WaitState::setMessageFont() {
    m_context.controls.label(Ctl::Label2).setFontSpec({.family = u"Arial"_s, .points = 12, .isBold = true});
}

void WaitState::enableButtons(bool isEnabled) {
    for (const Ctl button : {Ctl::Raport, Ctl::cmdExit, Ctl::cmbVizual})
        m_context.controls.widget(button).setEnabled(isEnabled);
}

void WaitState::enter() {
    const ControlTree& tree = m_context.controls;
    m_context.hourglass.set();
    // Nothing is left to be worked but the viewer's stop button: no disabled control is to hand its focus on.
    m_focused = m_context.window.focusWidget();
    if (m_focused) m_focused->clearFocus();
    enableButtons(false);
    tree.widget(Ctl::frmEnable).setEnabled(false);
    setMessageFont();
    tree.widget(Ctl::fraMesaj).show();
    tree.widget(Ctl::Command1).setEnabled(false);
    tree.widget(Ctl::cmdViz).setEnabled(false);
    m_context.window.repaint();
}

void WaitState::showReading() {
    m_context.controls.setCaption(Ctl::Label2, u"Asteptati va rog ! Raportul este in executie ..."_s);
    setMessageFont();
    m_context.window.repaint();
}

void WaitState::release() {
    const ControlTree& tree = m_context.controls;
    m_context.hourglass.reset();
    tree.widget(Ctl::fraMesaj).hide();
    enableButtons(true);
    tree.widget(Ctl::Command1).setEnabled(true);
    tree.widget(Ctl::cmdViz).setEnabled(true);
    tree.widget(Ctl::frmEnable).setEnabled(true);
    m_context.controls.setCaption(Ctl::Label2, layoutOf(Ctl::Label2).caption.toString());
}

void WaitState::leave() {
    const ControlTree& tree = m_context.controls;
    if (!tree.widget(Ctl::fraGrid).isHidden()) return;
    release();
    tree.widget(Ctl::frmEnable).hide();
    m_context.window.repaint();
    tree.viewer().setFocus();
}

void WaitState::leaveStopped() {
    if (m_context.controls.widget(Ctl::fraMesaj).isHidden()) return;
    release();
    if (m_focused && m_context.window.focusWidget() == nullptr) m_focused->setFocus();
}

}  // namespace velcoran::form
