#include "drop_down_list.h"

#include "accessibility.h"
#include "controls/input/typed_text.h"
#include "desktop/own_style.h"
#include "painting.h"

#include <QApplication>
#include <QInputMethodEvent>
#include <QKeyEvent>
#include <QListWidget>
#include <QPainter>
#include <QScreen>
#include <QScrollBar>
#include <QVBoxLayout>

using namespace Qt::StringLiterals;

namespace velcoran::controls {

namespace {

constexpr int kMaxOpenRows = 8;
constexpr int kEntryMargin = 4;

}  // namespace

/// The open list: a window of its own that closes on a press outside.
class DropDownList::Popup : public QFrame {
public:
    explicit Popup(QWidget* owner) : QFrame(owner, Qt::Popup), m_list(new QListWidget(this)) {
        auto* layout = new QVBoxLayout(this);
        layout->setContentsMargins(1, 1, 1, 1);
        layout->addWidget(m_list);
        setFrameStyle(QFrame::NoFrame);
        m_list->setFrameStyle(QFrame::NoFrame);
        m_list->setFocusPolicy(Qt::NoFocus);
        m_list->setSelectionMode(QAbstractItemView::SingleSelection);
        m_list->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
        m_list->setUniformItemSizes(true);
        m_list->setMinimumHeight(1);  // Qt's own is higher than a short list
        m_list->setMouseTracking(true);
    }

    [[nodiscard]] QListWidget* list() const { return m_list; }

protected:
    void paintEvent(QPaintEvent*) override {
        QPainter painter(this);
        drawEdge(painter, rect(), palette().color(QPalette::WindowText));
    }

private:
    QListWidget* m_list;
};

DropDownList::DropDownList(QWidget* parent) : ControlOf(parent), m_accessibility(holdAccessibility()) {
    setAttribute(Qt::WA_InputMethodEnabled);
    setFocusPolicy(Qt::StrongFocus);
    connect(this, &QComboBox::currentIndexChanged, this, [this](int index) {
        if (m_isFilling) return;
        m_typed.clear();
        update();
        emit changed(index);
    });
}

DropDownList::~DropDownList() {
    if (!m_popup) return;
    // A widget still sends events while it goes, when it is no popup any more.
    m_popup->removeEventFilter(this);
    m_popup->list()->viewport()->removeEventFilter(this);
}

void DropDownList::fill(const QStringList& items, int index) {
    m_isFilling = true;
    hidePopup();
    clear();
    addItems(items);
    setCurrentIndex(index >= -1 && index < items.size() ? index : -1);
    m_isFilling = false;
    m_typed.clear();
    update();
}

QStringList DropDownList::items() const {
    QStringList items;
    for (int i = 0; i < count(); ++i) items += itemText(i);
    return items;
}

void DropDownList::setIndex(int index) {
    if (index >= -1 && index < count()) setCurrentIndex(index);
}

bool DropDownList::choose(int index) {
    if (!isEnabled() || !isVisible() || index < 0 || index >= count()) return false;
    hidePopup();
    setCurrentIndex(index);
    return true;
}

QVariantMap DropDownList::controlState() const {
    QVariantMap state = colourState();
    state[u"items"_s] = items();
    state[u"index"_s] = index();
    state[u"text"_s] = text();
    state[u"open"_s] = isOpen();
    state[u"highlight"_s] = highlight();
    return state;
}

bool DropDownList::isOpen() const { return m_popup && m_popup->isVisible(); }

int DropDownList::highlight() const { return isOpen() ? m_popup->list()->currentRow() : -1; }

QRect DropDownList::openRowRect(int row) {
    if (!isOpen() || row < 0 || row >= count()) return {};
    QListWidget* list = m_popup->list();
    list->scrollToItem(list->item(row));
    const QRect place = list->visualItemRect(list->item(row)) & list->viewport()->rect();
    return {list->viewport()->mapToGlobal(place.topLeft()), place.size()};
}

void DropDownList::showPopup() {
    if (isOpen() || count() == 0 || !isEnabled()) return;
    if (!m_popup) {
        m_popup = std::make_unique<Popup>(this);
        m_popup->installEventFilter(this);
        m_popup->list()->viewport()->installEventFilter(this);
    }
    QListWidget* list = m_popup->list();
    const QPalette palette = controlPalette(back(kBlack), fore(kWhite), border(kLine));
    for (QWidget* part : {static_cast<QWidget*>(m_popup.get()), static_cast<QWidget*>(list), list->viewport()}) {
        desktop::keepStyle(*part, controlStyle());
        part->setPalette(palette);
    }
    styleScrollBars(list);
    list->setFont(font());
    list->clear();
    list->addItems(items());
    for (int row = 0; row < list->count(); ++row) list->item(row)->setSizeHint(QSize(0, fontMetrics().height() + 2));
    list->setCurrentRow(currentIndex());
    m_typed.clear();
    placePopup();
    m_popup->show();
    list->scrollToItem(list->currentItem());
    update();
}

void DropDownList::placePopup() {
    const int rowHeight = fontMetrics().height() + 2;
    const int height = qMin(count(), kMaxOpenRows) * rowHeight + 2;
    const int bar = count() > kMaxOpenRows ? m_popup->list()->verticalScrollBar()->sizeHint().width() : 0;
    int textWidth = 0;
    for (int i = 0; i < count(); ++i) textWidth = qMax(textWidth, fontMetrics().horizontalAdvance(itemText(i)));
    QRect place(mapToGlobal(QPoint(0, this->height())), QSize(qMax(width(), textWidth + bar + 12), height));
    const QRect screenPlace = screen()->availableGeometry();
    if (place.bottom() > screenPlace.bottom()) place.moveBottom(mapToGlobal(QPoint(0, -1)).y());
    if (place.right() > screenPlace.right()) place.moveRight(screenPlace.right());
    m_popup->setGeometry(place);
}

void DropDownList::hidePopup() {
    if (isOpen()) m_typed.clear();
    if (m_popup) m_popup->hide();
    update();
}

void DropDownList::pickHighlighted() {
    const int row = m_popup->list()->currentRow();
    hidePopup();
    if (row >= 0) setCurrentIndex(row);
}

void DropDownList::mark(int row) {
    m_typed.clear();
    m_popup->list()->setCurrentRow(row);
}

// The keys of the open list move its mark and nothing else; true when the key is done. Tab goes on as in a closed list.
bool DropDownList::handlePopupKey(QKeyEvent& key) {
    const int last = count() - 1;
    const int row = m_popup->list()->currentRow();
    const bool isAlt = key.modifiers() & Qt::AltModifier;
    switch (key.key()) {
        case Qt::Key_Up:
        case Qt::Key_Down:
            if (isAlt)
                pickHighlighted();
            else
                mark(qBound(0, row + (key.key() == Qt::Key_Up ? -1 : 1), last));
            return true;
        case Qt::Key_Home:
        case Qt::Key_Delete:
            mark(0);
            return true;
        case Qt::Key_End:
            mark(last);
            return true;
        case Qt::Key_PageUp:
            mark(qMax(0, row - kMaxOpenRows + 1));
            return true;
        case Qt::Key_PageDown:
            mark(qMin(last, row + kMaxOpenRows - 1));
            return true;
        case Qt::Key_Return:
        case Qt::Key_Enter:
        case Qt::Key_F4:
            pickHighlighted();
            return true;
        case Qt::Key_Escape:
            hidePopup();
            return true;
        case Qt::Key_Tab:
        case Qt::Key_Backtab:
            pickHighlighted();
            return false;
        case Qt::Key_Backspace:
            m_typed.chop(1);
            return true;
        default:
            completeTyped(typedText(key));
            return true;
    }
}

bool DropDownList::event(QEvent* event) {
    if (event->type() == QEvent::KeyPress && isOpen()) {
        auto* key = static_cast<QKeyEvent*>(event);
        const QPointer<DropDownList> alive = this;
        if (handlePopupKey(*key) || !alive) {
            key->accept();
            return true;
        }
    }
    return ControlOf::event(event);
}

bool DropDownList::eventFilter(QObject* object, QEvent* event) {
    if (!m_popup) return ControlOf::eventFilter(object, event);
    QListWidget* list = m_popup->list();
    const QPointer<DropDownList> alive = this;
    if (object == m_popup.get()) {
        if (event->type() == QEvent::KeyPress || event->type() == QEvent::KeyRelease) {
            QApplication::sendEvent(this, event);
            return true;
        }
        if (event->type() == QEvent::ShortcutOverride) {
            // Plain keys are the list's before they are a shortcut of the host's.
            const Qt::KeyboardModifiers modifiers = static_cast<QKeyEvent*>(event)->modifiers();
            event->setAccepted(!(modifiers & (Qt::ControlModifier | Qt::AltModifier | Qt::MetaModifier)));
            return true;
        }
        if (event->type() == QEvent::MouseButtonPress) pressOutside(*static_cast<QMouseEvent*>(event));
        return false;
    }
    if (object != list->viewport()) return ControlOf::eventFilter(object, event);
    const bool isMove = event->type() == QEvent::MouseMove;
    const bool isRelease = event->type() == QEvent::MouseButtonRelease;
    if (!isMove && !isRelease) return event->type() == QEvent::MouseButtonPress;
    const auto* item = list->itemAt(static_cast<QMouseEvent*>(event)->position().toPoint());
    if (item != nullptr) mark(list->row(item));
    if (isRelease && item != nullptr && static_cast<QMouseEvent*>(event)->button() == Qt::LeftButton) {
        m_secondPress.arm();
        pickHighlighted();
    }
    return true;
}

// A press on the control closes its list and must not open it again.
void DropDownList::pressOutside(const QMouseEvent& press) {
    if (!m_popup->rect().contains(press.position().toPoint())) m_secondPress.armAfterPress();
    const QPoint place = mapFromGlobal(press.globalPosition().toPoint());
    m_popup->setAttribute(Qt::WA_NoMouseReplay, rect().contains(place));
}

bool DropDownList::moveChoice(int key) {
    const int last = count() - 1;
    const int at = currentIndex();
    switch (key) {
        case Qt::Key_Up:
            setIndex(at > 0 ? at - 1 : at);
            return true;
        case Qt::Key_Down:
            setIndex(qMin(at + 1, last));
            return true;
        case Qt::Key_PageUp:
            setIndex(at < 0 ? at : qMax(0, at - kMaxOpenRows + 1));
            return true;
        case Qt::Key_PageDown:
            setIndex(qMin(qMax(at, 0) + kMaxOpenRows - 1, last));
            return true;
        case Qt::Key_Home:
            setIndex(qMin(0, last));
            return true;
        case Qt::Key_End:
            setIndex(last);
            return true;
        default:
            return false;
    }
}

int DropDownList::itemThatStarts(const QString& start) const {
    int found = 0;
    while (found < count() && !itemText(found).startsWith(start, Qt::CaseInsensitive)) ++found;
    return found < count() ? found : -1;
}

// The characters go in one by one; one that no item continues starts the search anew.
void DropDownList::completeTyped(const QString& typed) {
    for (const QString& character : charactersOf(typed)) {
        QString start = m_typed + character;
        int found = itemThatStarts(start);
        if (found < 0) {
            start = character;
            found = itemThatStarts(start);
        }
        if (found < 0) start.clear();
        const QPointer<DropDownList> alive = this;
        if (found >= 0 && isOpen()) m_popup->list()->setCurrentRow(found);
        if (found >= 0 && !isOpen()) setCurrentIndex(found);
        if (!alive) return;
        m_typed = start;
    }
    update();
}

void DropDownList::keyPressEvent(QKeyEvent* event) {
    const bool isAlt = event->modifiers() & Qt::AltModifier;
    const bool isUpOrDown = event->key() == Qt::Key_Up || event->key() == Qt::Key_Down;
    event->accept();
    if (event->key() == Qt::Key_F4 || (isAlt && isUpOrDown))
        showPopup();
    else if (event->key() == Qt::Key_Backspace)
        m_typed.chop(1), update();
    else if (const QString typed = typedText(*event); !typed.isEmpty())
        completeTyped(typed);
    else if (!moveChoice(event->key()))
        event->ignore();
}

void DropDownList::keyReleaseEvent(QKeyEvent* event) { event->ignore(); }

void DropDownList::inputMethodEvent(QInputMethodEvent* event) {
    completeTyped(event->commitString());
    event->accept();
}

void DropDownList::focusOutEvent(QFocusEvent* event) {
    if (event->reason() != Qt::PopupFocusReason) {
        m_typed.clear();
        hidePopup();
    }
    ControlOf::focusOutEvent(event);
}

void DropDownList::mousePressEvent(QMouseEvent* event) {
    if (event->button() == Qt::LeftButton) isOpen() ? hidePopup() : showPopup();
    event->accept();
}

void DropDownList::mouseReleaseEvent(QMouseEvent* event) { event->accept(); }

void DropDownList::wheelEvent(QWheelEvent* event) { event->ignore(); }

void DropDownList::contextMenuEvent(QContextMenuEvent* event) { event->accept(); }

void DropDownList::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    const QColor ground = back(kBlack);
    const QColor colour = textColour(kWhite);
    painter.fillRect(rect(), ground);
    drawEdge(painter, rect(), border(kLine));
    QRect place = rect().adjusted(1, 1, -1, -1);
    if (hasFocus()) {
        const QRect button(rect().right() - place.height() - 1, place.top(), place.height() + 1, place.height());
        painter.fillRect(button, border(kLine));
        drawArrow(painter, button, colour);
        place.setRight(button.left() - 1);
    }
    place.adjust(kEntryMargin - 1, 0, -1, 0);
    const QString shown = text();
    painter.setClipRect(place);
    painter.setPen(colour);
    painter.drawText(place, Qt::AlignVCenter | Qt::TextSingleLine, shown);
    if (hasFocus() && !isOpen() && !m_typed.isEmpty()) {
        // What the completion added stands out, as in a field that completes.
        const int start = fontMetrics().horizontalAdvance(shown.left(m_typed.size()));
        const int width = fontMetrics().horizontalAdvance(shown) - start;
        const int height = fontMetrics().height();
        const QRect added(place.left() + start, place.center().y() - height / 2, width, height);
        painter.fillRect(added, colour);
        painter.setClipRect(added & place);
        painter.setPen(ground);
        painter.drawText(place, Qt::AlignVCenter | Qt::TextSingleLine, shown);
    }
}

}  // namespace velcoran::controls
