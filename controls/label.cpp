#include "label.h"

#include "painting.h"

#include <QPainter>

using namespace Qt::StringLiterals;

namespace velcoran::controls {

Label::Label(QWidget* parent) : ControlOf(parent) {
    setTextFormat(Qt::PlainText);
    setFocusPolicy(Qt::NoFocus);
}

void Label::setCaption(const QString& caption) {
    setText(caption);
    makeRoom();
    update();
}

void Label::makeRoom() {
    constexpr int kAnyHeight = 1 << 20;
    const int flags = Qt::AlignLeft | Qt::AlignTop | Qt::TextWordWrap;
    const QRect wrapped = fontMetrics().boundingRect(QRect(0, 0, width(), kAnyHeight), flags, caption());
    const int whole = fontMetrics().boundingRect(QRect(), Qt::AlignLeft, caption()).width();
    if (wrapped.height() > height() && whole > width()) resize(whole, height());
}

void Label::resizeEvent(QResizeEvent* event) {
    ControlOf::resizeEvent(event);
    makeRoom();
}

QVariantMap Label::controlState() const {
    QVariantMap state = colourState();
    state[u"caption"_s] = caption();
    return state;
}

void Label::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    if (backColour()) painter.fillRect(rect(), back(kFace));
    painter.setPen(textColour(kBlack));
    painter.drawText(rect(), Qt::AlignLeft | Qt::AlignTop | Qt::TextWordWrap, caption());
}

}  // namespace velcoran::controls
