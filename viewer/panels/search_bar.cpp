#include "search_bar.h"

#include "viewer/commands/command_actions.h"

#include <QAction>
#include <QHBoxLayout>
#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QTimer>
#include <QToolButton>

namespace velcoran::viewer {

namespace {

constexpr int kPauseMs = 250;
constexpr int kBoxWidth = 150;

// Without the action: the button is off until something is searched, while the key then opens the box.
QToolButton* makeButton(QWidget* parent, Command command) {
    auto* button = new QToolButton(parent);
    button->setObjectName(QString::fromUtf16(rowOf(command).button));
    button->setAutoRaise(true);
    button->setFocusPolicy(Qt::NoFocus);
    button->setToolTip(tooltipOf(command));
    button->setAccessibleName(QString::fromUtf16(rowOf(command).caption));
    button->setEnabled(false);
    return button;
}

}  // namespace

SearchBar::SearchBar(QWidget* parent)
    : QWidget(parent),
      m_box(new QLineEdit(this)),
      m_previous(makeButton(this, Command::FindPrevious)),
      m_next(makeButton(this, Command::FindNext)),
      m_position(new QLabel(this)),
      m_pause(new QTimer(this)) {
    setObjectName(QStringLiteral("crwSearch"));
    m_box->setObjectName(QStringLiteral("crwSearchBox"));
    m_box->setFocusPolicy(Qt::ClickFocus);
    m_box->setPlaceholderText(QStringLiteral("Caută în raport"));
    m_box->setAccessibleName(QStringLiteral("Caută în raport"));
    m_box->setToolTip(tooltipOf(Command::Find));
    m_box->setFixedWidth(kBoxWidth);
    m_box->setClearButtonEnabled(true);
    m_box->installEventFilter(this);
    m_position->setObjectName(QStringLiteral("crwSearchPosition"));
    m_position->setAccessibleName(QStringLiteral("Potriviri"));
    m_position->setMinimumWidth(m_position->fontMetrics().horizontalAdvance(QStringLiteral("nicio potrivire")) + 4);

    auto* row = new QHBoxLayout(this);
    row->setContentsMargins(0, 0, 0, 0);
    row->setSpacing(1);
    row->addWidget(m_box);
    row->addWidget(m_previous);
    row->addWidget(m_next);
    row->addWidget(m_position);

    m_pause->setSingleShot(true);
    m_pause->setInterval(kPauseMs);
    connect(m_pause, &QTimer::timeout, this, &SearchBar::submit);
    connect(m_box, &QLineEdit::textEdited, m_pause, qOverload<>(&QTimer::start));
    connect(m_previous, &QToolButton::clicked, this, [this] { emit stepped(false); });
    connect(m_next, &QToolButton::clicked, this, [this] { emit stepped(true); });
    // The clear button of the box changes the text without an edit.
    connect(m_box, &QLineEdit::textChanged, this, [this](const QString& text) {
        if (text.isEmpty() && m_box->hasFocus()) submit();
    });
}

void SearchBar::open() {
    m_box->setFocus(Qt::ShortcutFocusReason);
    m_box->selectAll();
}

void SearchBar::reset() {
    m_submitted.clear();
    m_pause->stop();
    m_box->clear();
    setPosition({});
}

void SearchBar::setText(const QString& text) {
    m_submitted = text;
    m_pause->stop();
    m_box->setText(text);
}

void SearchBar::setPosition(const QString& text) {
    m_position->setText(text);
    m_previous->setEnabled(!text.isEmpty());
    m_next->setEnabled(!text.isEmpty());
}

void SearchBar::setIcons(const CommandActions& actions) {
    m_previous->setIcon(actions.of(Command::FindPrevious).icon());
    m_next->setIcon(actions.of(Command::FindNext).icon());
}

void SearchBar::submit() {
    m_pause->stop();
    if (m_box->text() == m_submitted) return;
    m_submitted = m_box->text();
    emit searched(m_submitted);
}

bool SearchBar::eventFilter(QObject* watched, QEvent* event) {
    if (watched != m_box || event->type() != QEvent::KeyPress) return QWidget::eventFilter(watched, event);
    const auto* press = static_cast<QKeyEvent*>(event);
    if (press->key() == Qt::Key_Escape) {
        emit closed();
        return true;
    }
    if (press->key() != Qt::Key_Return && press->key() != Qt::Key_Enter) return QWidget::eventFilter(watched, event);
    if (m_box->text() != m_submitted)
        submit();
    else
        emit stepped(!press->modifiers().testFlag(Qt::ShiftModifier));
    return true;
}

}  // namespace velcoran::viewer
