#include "page_box.h"

#include "viewer/commands/command_table.h"
#include "viewer/commands/texts.h"

#include <QKeyEvent>

namespace velcoran::viewer {

PageBox::PageBox(QWidget* parent) : QLineEdit(parent) {
    setObjectName(QStringLiteral("crwPageBox"));
    setFocusPolicy(Qt::ClickFocus);
    setAlignment(Qt::AlignCenter);
    setAccessibleName(QStringLiteral("Pagina"));
    setToolTip(tooltipOf(Command::GoTo));
    setFixedWidth(fontMetrics().horizontalAdvance(QStringLiteral("00.000 din 00.000")) + 16);
    connect(this, &QLineEdit::returnPressed, this, &PageBox::enter);
}

void PageBox::setPage(int page, int pageCount) {
    m_page = pageCount > 0 ? pageText(page, pageCount) : QString();
    if (!hasFocus()) setText(m_page);
}

void PageBox::enter() {
    const int page = pageOfText(text());
    setText(m_page);
    if (page > 0) emit pageEntered(page);
    emit left();
}

void PageBox::keyPressEvent(QKeyEvent* event) {
    // Esc gives up what was typed; without a change it goes on to the window.
    if (event->key() != Qt::Key_Escape || text() == m_page) return QLineEdit::keyPressEvent(event);
    setText(m_page);
    emit left();
}

void PageBox::focusInEvent(QFocusEvent* event) {
    QLineEdit::focusInEvent(event);
    // After the press that brought the focus has set the cursor.
    QMetaObject::invokeMethod(this, &QLineEdit::selectAll, Qt::QueuedConnection);
}

void PageBox::focusOutEvent(QFocusEvent* event) {
    setText(m_page);
    QLineEdit::focusOutEvent(event);
}

}  // namespace velcoran::viewer
