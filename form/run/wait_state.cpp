#include "wait_state.h"

namespace velcoran::form {

using namespace Qt::StringLiterals;

void WaitState::setMessageFont() {
    m_controls.label(Ctl::Label2).setFontSpec({.family = u"Arial"_s, .points = 12, .isBold = true});
}

void WaitState::enableButtons(bool isEnabled) {
    for (const Ctl button : {Ctl::Raport, Ctl::cmdExit, Ctl::cmbVizual})
        m_controls.widget(button).setEnabled(isEnabled);
}

void WaitState::enter() {
    m_hourglass.set();
    // Nothing is left to be worked but the viewer's stop button: no disabled control is to hand its focus on.
    m_focused = m_controls.window().focusWidget();
    if (m_focused) m_focused->clearFocus();
    enableButtons(false);
    m_controls.widget(Ctl::frmEnable).setEnabled(false);
    setMessageFont();
    m_controls.widget(Ctl::fraMesaj).show();
    m_controls.widget(Ctl::Command1).setEnabled(false);
    m_controls.widget(Ctl::cmdViz).setEnabled(false);
    m_controls.window().repaint();
}

void WaitState::showReading() {
    m_controls.setCaption(Ctl::Label2, u"Asteptati va rog ! Raportul este in executie ..."_s);
    setMessageFont();
    m_controls.window().repaint();
}

void WaitState::release() {
    m_hourglass.reset();
    m_controls.widget(Ctl::fraMesaj).hide();
    enableButtons(true);
    m_controls.widget(Ctl::Command1).setEnabled(true);
    m_controls.widget(Ctl::cmdViz).setEnabled(true);
    m_controls.widget(Ctl::frmEnable).setEnabled(true);
    m_controls.setCaption(Ctl::Label2, layoutOf(Ctl::Label2).caption.toString());
}

void WaitState::leave() {
    if (m_controls.isPickerOpen()) return;
    release();
    m_controls.widget(Ctl::frmEnable).hide();
    m_controls.window().repaint();
    m_controls.viewer().setFocus();
}

void WaitState::leaveStopped() {
    if (m_controls.widget(Ctl::fraMesaj).isHidden()) return;
    release();
    if (m_focused && m_controls.window().focusWidget() == nullptr) m_focused->setFocus();
}

}  // namespace velcoran::form
