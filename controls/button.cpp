#include "button.h"

#include "painting.h"

#include <QKeyEvent>
#include <QPainter>

using namespace Qt::StringLiterals;

namespace velcoran::controls {

Button::Button(ButtonLook look, QWidget* parent) : ControlOf(parent), m_look(look) {
    setFocusPolicy(Qt::StrongFocus);
    setAutoDefault(false);
}

void Button::setCaption(const QString& caption) {
    m_caption = caption;
    setText(caption);  // takes the accelerator from the caption
    setAccessibleName(QString(caption).remove(u'&').trimmed());
    if (!m_accelerator.isNull()) setAccelerator(m_accelerator);
    update();
}

void Button::setAccelerator(QChar letter) {
    m_accelerator = letter;
    setShortcut(letter.isNull() ? QKeySequence::mnemonic(m_caption)
                                : QKeySequence(Qt::ALT | Qt::Key(letter.toUpper().unicode())));
    update();
}

QVariantMap Button::controlState() const {
    QVariantMap state = colourState();
    state[u"caption"_s] = m_caption;
    return state;
}

// Qt's own answer to a shortcut clicks a tenth of a second later, from a timer.
bool Button::event(QEvent* event) {
    if (event->type() != QEvent::Shortcut) return ControlOf::event(event);
    setFocus(Qt::ShortcutFocusReason);
    click();
    return true;
}

// Arrow keys would move the focus; a held Enter clicks once.
void Button::keyPressEvent(QKeyEvent* event) {
    switch (event->key()) {
        case Qt::Key_Return:
        case Qt::Key_Enter:
            event->accept();
            if (!event->isAutoRepeat()) click();
            return;
        case Qt::Key_Space:
            if (event->modifiers() & Qt::AltModifier) return event->ignore();
            ControlOf::keyPressEvent(event);
            return;
        default:
            event->ignore();
    }
}

void Button::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    const bool isFlat = m_look == ButtonLook::flat;
    const QColor colour = textColour(kBlack);
    const QColor line = hasFocus() || underMouse() ? colour : colour.darker(200);
    painter.fillRect(rect(), isFlat && isDown() ? QColor::fromRgb(kFocusGround) : back(kFace));
    if (isFlat) {
        drawEdge(painter, rect(), isOwnEnabled() ? line : QColor::fromRgb(kFocusGround));
        if (hasFocus()) drawEdge(painter, rect().adjusted(1, 1, -1, -1), line);
    } else {
        drawRelief(painter, rect(), isDown());
    }
    if (hasFocus()) drawFocusDots(painter, rect().adjusted(4, 4, -4, -4), colour);
    const QString shown = m_accelerator.isNull() ? m_caption : mnemonicText(m_caption, m_accelerator);
    painter.setPen(colour);
    const int shift = isDown() ? 1 : 0;
    painter.drawText(rect().translated(shift, shift), Qt::AlignCenter | Qt::TextSingleLine | Qt::TextShowMnemonic,
                     shown);
}

}  // namespace velcoran::controls
