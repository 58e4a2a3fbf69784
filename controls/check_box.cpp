#include "check_box.h"

#include "painting.h"

#include <QKeyEvent>
#include <QPainter>

using namespace Qt::StringLiterals;

namespace velcoran::controls {

CheckBox::CheckBox(QWidget* parent) : ControlOf(parent) {
    setFocusPolicy(Qt::StrongFocus);
    connect(this, &QAbstractButton::toggled, this, [this](bool isTicked) {
        const QPointer<CheckBox> alive = this;
        emit changed(isTicked);  // NOLINT(clang-analyzer-core.CallAndMessage): this is not null
        if (alive) emit ticked(isTicked);
    });
}

void CheckBox::setCaption(const QString& caption) {
    m_caption = caption;
    setText(mnemonicText(caption, {}));  // drops the shortcut
    setAccelerator(m_accelerator);
    update();
}

void CheckBox::setAccelerator(QChar letter) {
    m_accelerator = letter;
    setShortcut(letter.isNull() ? QKeySequence() : QKeySequence(Qt::ALT | Qt::Key(letter.toUpper().unicode())));
    update();
}

QVariantMap CheckBox::controlState() const {
    QVariantMap state = colourState();
    state[u"caption"_s] = m_caption;
    state[u"value"_s] = value();
    state[u"locked"_s] = m_isLocked;
    return state;
}

// Qt's own answer to a shortcut clicks a tenth of a second later, from a timer.
bool CheckBox::event(QEvent* event) {
    if (event->type() != QEvent::Shortcut) return ControlOf::event(event);
    setFocus(Qt::ShortcutFocusReason);
    click();
    return true;
}

// Arrow keys would move the focus.
void CheckBox::keyPressEvent(QKeyEvent* event) {
    if (event->key() == Qt::Key_Space && !(event->modifiers() & Qt::AltModifier))
        ControlOf::keyPressEvent(event);
    else
        event->ignore();
}

void CheckBox::nextCheckState() {
    if (!m_isLocked) QCheckBox::nextCheckState();
}

bool CheckBox::hitButton(const QPoint& position) const { return rect().contains(position); }

void CheckBox::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    painter.fillRect(rect(), back(kFace));
    const int side = qMin(height() - 2, fontMetrics().height() - 1);
    const QRect box(2, (height() - side) / 2, side, side);
    drawTickBox(painter, box, isChecked(), isOwnEnabled());
    if (isDown()) drawEdge(painter, box.adjusted(1, 1, -1, -1), QColor::fromRgb(kLine));
    const QRect place = rect().adjusted(box.right() + 5, 0, -2, 0);
    const int flags = Qt::AlignVCenter | Qt::TextSingleLine | Qt::TextShowMnemonic;
    const QString shown = mnemonicText(m_caption, m_accelerator);
    painter.setPen(textColour(kBlack));
    painter.drawText(place, flags, shown);
    if (!hasFocus()) return;
    const QRect text = painter.boundingRect(place, flags, shown);
    drawFocusDots(painter, text.adjusted(-2, -1, 2, 1) & rect(), QColor::fromRgb(kBlack));
}

}  // namespace velcoran::controls
