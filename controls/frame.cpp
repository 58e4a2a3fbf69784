#include "frame.h"

#include "painting.h"

#include <QPainter>

using namespace Qt::StringLiterals;

namespace velcoran::controls {

namespace {

constexpr int kCaptionLeft = 8;
constexpr int kCaptionGap = 3;

}  // namespace

Frame::Frame(FrameLook look, QWidget* parent) : ControlOf(parent), m_look(look) {
    setFocusPolicy(Qt::NoFocus);
    setAttribute(Qt::WA_OpaquePaintEvent);
}

void Frame::setCaption(const QString& caption) {
    if (caption == m_caption) return;
    m_caption = caption;
    setAccessibleName(caption.trimmed());
    update();
}

QVariantMap Frame::controlState() const {
    QVariantMap state = colourState();
    state[u"caption"_s] = m_caption;
    if (m_tag) state[u"tag"_s] = *m_tag;
    return state;
}

void Frame::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    painter.fillRect(rect(), back(kFace));
    if (m_look == FrameLook::bare) return;
    const QFontMetrics metrics = fontMetrics();
    QRect line = rect();
    if (!m_caption.isEmpty()) line.setTop(metrics.height() / 2);
    drawEdge(painter, line, border(kLine));
    if (m_caption.isEmpty()) return;
    const int room = width() - 2 * kCaptionLeft;
    const QString shown = metrics.elidedText(m_caption, Qt::ElideRight, room);
    const QRect place(kCaptionLeft, 0, metrics.horizontalAdvance(shown), metrics.height());
    painter.fillRect(place.adjusted(-kCaptionGap, 0, kCaptionGap, 0), back(kFace));
    painter.setPen(fore(kBlack));  // a disabled frame keeps its look
    painter.drawText(place, Qt::AlignLeft | Qt::AlignVCenter | Qt::TextSingleLine, shown);
}

}  // namespace velcoran::controls
