#include "state_pane.h"

#include <QLabel>
#include <QVBoxLayout>

namespace velcoran::viewer {

namespace {

constexpr int kTextWidth = 640;
constexpr double kHeadingScale = 1.6;

QLabel* makeLabel(QWidget* parent, const QString& name) {
    auto* label = new QLabel(parent);
    label->setObjectName(name);
    label->setTextFormat(Qt::PlainText);
    label->setAlignment(Qt::AlignHCenter);
    label->setWordWrap(true);
    label->setFixedWidth(kTextWidth);
    return label;
}

}  // namespace

StatePane::StatePane(QWidget* parent)
    : QWidget(parent),
      m_heading(makeLabel(this, QStringLiteral("crwStateHeading"))),
      m_text(makeLabel(this, QStringLiteral("crwStateText"))) {
    setObjectName(QStringLiteral("crwState"));
    QFont font = m_heading->font();
    font.setPointSizeF(font.pointSizeF() * kHeadingScale);
    m_heading->setFont(font);
    // A provider's words are what a user sends to whoever helps.
    m_text->setTextInteractionFlags(Qt::TextSelectableByMouse);
    auto* column = new QVBoxLayout(this);
    column->setContentsMargins(0, 0, 0, 0);
    column->addStretch(2);
    column->addWidget(m_heading, 0, Qt::AlignHCenter);
    column->addSpacing(6);
    column->addWidget(m_text, 0, Qt::AlignHCenter);
    column->addStretch(3);
    hide();
}

void StatePane::showMessage(const QString& heading, const QString& text) {
    m_heading->setText(heading);
    m_text->setText(text);
    setAccessibleName(heading);
    setAccessibleDescription(text);
    setVisible(!heading.isEmpty() || !text.isEmpty());
}

QString StatePane::heading() const { return m_heading->text(); }

QString StatePane::text() const { return m_text->text(); }

}  // namespace velcoran::viewer
