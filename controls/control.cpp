#include "control.h"

#include "desktop/own_style.h"
#include "painting.h"

#include <QFocusEvent>
#include <QKeyEvent>
#include <QPointer>
#include <QStyle>

using namespace Qt::StringLiterals;

namespace velcoran::controls {

Control::Control(QWidget* widget) : m_widget(widget), m_style(desktop::ownStyle()) {
    desktop::keepStyle(*widget, *m_style);
    widget->setAutoFillBackground(false);
}

Control::~Control() = default;

Control* Control::of(QWidget* widget) { return dynamic_cast<Control*>(widget); }

void Control::setBackColour(base::Colour colour) {
    if (m_back == colour) return;
    m_back = colour;
    lookChanged();
}

void Control::setForeColour(base::Colour colour) {
    if (m_fore == colour) return;
    m_fore = colour;
    lookChanged();
}

void Control::setBorderColour(base::Colour colour) {
    if (m_border == colour) return;
    m_border = colour;
    lookChanged();
}

void Control::setFontSpec(const FontSpec& spec) {
    m_fontSpec = spec;
    applyFont();
    lookChanged();
}

void Control::densityChanged() { applyFont(); }

// The size follows the density that the control is placed with, which need not be that of its screen.
void Control::applyFont() {
    FontSpec scaled = m_fontSpec;
    scaled.points *= densityOf(m_widget) / m_widget->logicalDpiY();
    m_widget->setFont(makeFont(scaled));
}

void Control::lookChanged() { m_widget->update(); }

bool Control::offerKey(QKeyEvent& key) {
    if (!m_keyHandler) return false;
    // A handler may close the window and with it this control, whose handler must not go while it runs.
    const KeyHandler handler = m_keyHandler;
    const QPointer<QWidget> alive = m_widget;
    const bool isConsumed = handler(key);
    if (isConsumed || !alive) {
        key.accept();
        return true;
    }
    // A Tab that the handler leaves would go on to the frame, and move the focus there.
    if (key.key() != Qt::Key_Tab && key.key() != Qt::Key_Backtab) return false;
    key.accept();
    return true;
}

void Control::offerFocus(const QFocusEvent& event) {
    const bool isGained = event.gotFocus();
    const bool isOwnPopup = event.reason() == Qt::PopupFocusReason || event.reason() == Qt::MenuBarFocusReason;
    if (isOwnPopup || isGained == m_hasFocus) return;
    m_hasFocus = isGained;
    const FocusHandler handler = m_focusHandler;
    if (handler) handler(isGained);
}

bool Control::filterEvent(QEvent& event) {
    if (event.type() == QEvent::KeyPress) return offerKey(static_cast<QKeyEvent&>(event));
    if (event.type() != QEvent::ShortcutOverride || !m_keyHandler) return false;
    // Plain keys are the handler's before they are a shortcut of the host's.
    const Qt::KeyboardModifiers modifiers = static_cast<QKeyEvent&>(event).modifiers();
    if (modifiers & (Qt::ControlModifier | Qt::AltModifier | Qt::MetaModifier)) return false;
    event.accept();
    return true;
}

bool Control::isOwnEnabled() const { return m_widget->isEnabledTo(m_widget->parentWidget()); }

QColor Control::back(QRgb fallback) const { return QColor::fromRgb(m_back ? m_back->toRgb() : fallback); }

QColor Control::fore(QRgb fallback) const { return QColor::fromRgb(m_fore ? m_fore->toRgb() : fallback); }

QColor Control::border(QRgb fallback) const { return QColor::fromRgb(m_border ? m_border->toRgb() : fallback); }

QColor Control::textColour(QRgb fallback) const {
    return isOwnEnabled() ? fore(fallback) : QColor::fromRgb(kDisabledText);
}

QVariantMap Control::colourState() const {
    QVariantMap state;
    if (m_back) state[u"backColor"_s] = m_back->toText();
    if (m_fore) state[u"foreColor"_s] = m_fore->toText();
    return state;
}

}  // namespace velcoran::controls
