#include "platform/controls/label.h"

#include "platform/controls/painting.h"

#include <QPainter>

using namespace Qt::StringLiterals;

namespace velcoran::controls {

Label::Label(QWidget* parent) : ControlOf(parent) {
    setTextFormat(Qt::PlainText);
    setFocusPolicy(Qt::NoFocus);
}

void Label::setCaption(const QString& caption) {
    setText(caption);
    update();
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
