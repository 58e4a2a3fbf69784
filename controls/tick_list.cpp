#include "tick_list.h"

#include "controls/input/typed_text.h"
#include "painting.h"

#include <QMouseEvent>
#include <QPainter>
#include <QStyledItemDelegate>

using namespace Qt::StringLiterals;

namespace velcoran::controls {

namespace {

constexpr int kTickMargin = 2;

/// Draws a row: tick box, text, and the frame of the current row while the list has the focus.
class TickDelegate : public QStyledItemDelegate {
public:
    explicit TickDelegate(TickList* list) : QStyledItemDelegate(list), m_list(list) {}

    QSize sizeHint(const QStyleOptionViewItem&, const QModelIndex& index) const override {
        const QFontMetrics metrics = m_list->fontMetrics();
        const int height = metrics.height() + 2;
        return {height + 2 * kTickMargin + metrics.horizontalAdvance(index.data().toString()) + kTickMargin, height};
    }

    void paint(QPainter* painter, const QStyleOptionViewItem& option, const QModelIndex& index) const override {
        const QRect row = option.rect;
        const QColor text = m_list->palette().color(QPalette::Text);
        const bool isCurrent = m_list->currentRow() == index.row();
        const bool isEnabled = m_list->isEnabledTo(m_list->parentWidget());
        painter->save();
        const QColor ground = m_list->palette().color(QPalette::Base);
        const QColor marked = QColor::fromRgb(m_list->hasFocus() ? kFocusGround : kDimGround);
        if (isCurrent) painter->fillRect(row, ground.lightness() > 127 ? ground.darker(115) : marked);
        const int side = row.height() - 4;
        const QRect box(row.left() + kTickMargin, row.top() + 2, side, side);
        const bool isTicked = index.data(Qt::CheckStateRole).toInt() == Qt::Checked;
        drawTickBox(*painter, box, isTicked, isEnabled);
        painter->setPen(text);
        painter->setFont(m_list->font());
        const QRect place = row.adjusted(side + 3 * kTickMargin, 0, 0, 0);
        painter->drawText(place, Qt::AlignVCenter | Qt::TextSingleLine, index.data().toString());
        if (isCurrent && m_list->hasFocus()) drawFocusDots(*painter, row, text);
        painter->restore();
    }

    bool editorEvent(QEvent*, QAbstractItemModel*, const QStyleOptionViewItem&, const QModelIndex&) override {
        return false;
    }

private:
    TickList* m_list;
};

}  // namespace

TickList::TickList(QWidget* parent) : ControlOf(parent) {
    setItemDelegate(new TickDelegate(this));
    setSelectionMode(QAbstractItemView::NoSelection);
    setEditTriggers(QAbstractItemView::NoEditTriggers);
    setUniformItemSizes(false);
    setFrameStyle(QFrame::Box | QFrame::Plain);
    setLineWidth(1);
    setHorizontalScrollMode(QAbstractItemView::ScrollPerPixel);
    styleScrollBars(this);
    connect(this, &QListWidget::itemChanged, this, [this](QListWidgetItem* item) { emit tickChanged(row(item)); });
    connect(this, &QListWidget::currentRowChanged, this, [this](int row) {
        viewport()->update();
        emit currentIndexChanged(row);
    });
    TickList::lookChanged();
}

void TickList::fill(const QStringList& items, int current) {
    {
        const QSignalBlocker quiet(this);
        clear();
        for (const QString& text : items) {
            auto row = std::make_unique<QListWidgetItem>(text);
            row->setFlags(Qt::ItemIsEnabled | Qt::ItemIsSelectable | Qt::ItemIsUserCheckable);
            row->setCheckState(Qt::Unchecked);
            addItem(row.release());
        }
        setCurrentRow(-1);
    }
    setCurrentIndex(current);
}

QStringList TickList::items() const {
    QStringList items;
    for (int i = 0; i < count(); ++i) items += item(i)->text();
    return items;
}

void TickList::setCurrentIndex(int index) {
    if (index < -1 || index >= count()) return;
    setCurrentRow(index);
    if (index >= 0) scrollToItem(item(index));
}

bool TickList::isTicked(int index) const {
    const QListWidgetItem* row = item(index);
    return row != nullptr && row->data(Qt::CheckStateRole).toInt() == Qt::Checked;
}

void TickList::setTicked(int index, bool isTicked) {
    QListWidgetItem* row = item(index);
    if (row != nullptr) row->setCheckState(isTicked ? Qt::Checked : Qt::Unchecked);
}

void TickList::toggle(int index) { setTicked(index, !isTicked(index)); }

QList<int> TickList::ticked() const {
    QList<int> rows;
    for (int i = 0; i < count(); ++i)
        if (isTicked(i)) rows += i;
    return rows;
}

QRect TickList::rowRect(int index) {
    if (index < 0 || index >= count()) return {};
    scrollToItem(item(index));
    const QRect place = visualItemRect(item(index)) & viewport()->rect();
    return place.translated(viewport()->mapTo(this, QPoint(0, 0)));
}

QVariantMap TickList::controlState() const {
    QVariantMap state = colourState();
    state[u"items"_s] = items();
    state[u"index"_s] = currentIndex();
    QVariantList rows;
    for (const int row : ticked()) rows += row;
    state[u"ticked"_s] = rows;
    return state;
}

void TickList::keyPressEvent(QKeyEvent* event) {
    const int last = count() - 1;
    const int at = currentIndex();
    const int page = qMax(1, viewport()->height() / qMax(1, fontMetrics().height() + 2) - 1);
    event->accept();
    switch (event->key()) {
        case Qt::Key_Space:
            if (!(event->modifiers() & Qt::AltModifier)) toggle(at);
            break;
        case Qt::Key_Up:
            setCurrentIndex(at > 0 ? at - 1 : at);
            break;
        case Qt::Key_Down:
            setCurrentIndex(qMin(at + 1, last));
            break;
        case Qt::Key_PageUp:
            setCurrentIndex(at < 0 ? at : qMax(0, at - page));
            break;
        case Qt::Key_PageDown:
            setCurrentIndex(qMin(qMax(at, 0) + page, last));
            break;
        case Qt::Key_Home:
            setCurrentIndex(qMin(0, last));
            break;
        case Qt::Key_End:
            setCurrentIndex(last);
            break;
        default: {
            const QString typed = typedText(*event);
            event->setAccepted(!typed.isEmpty());
            moveToStart(typed);
        }
    }
}

// Each letter or digit goes to the next row that starts with it, round the end.
void TickList::moveToStart(const QString& typed) {
    for (const QString& character : charactersOf(typed)) {
        if (!QChar::isLetterOrNumber(character.toUcs4().front())) continue;
        for (int step = 1; step <= count(); ++step) {
            const int row = (currentIndex() + step) % count();
            if (!item(row)->text().startsWith(character, Qt::CaseInsensitive)) continue;
            setCurrentIndex(row);
            break;
        }
    }
}

void TickList::keyboardSearch(const QString&) {}

void TickList::inputMethodEvent(QInputMethodEvent* event) {
    moveToStart(event->commitString());
    event->accept();
}

void TickList::mousePressEvent(QMouseEvent* event) {
    event->accept();
    if (event->button() != Qt::LeftButton) return;
    const QModelIndex index = indexAt(QPoint(0, event->position().toPoint().y()));
    const int pressed = index.isValid() ? index.row() : -1;
    if (pressed < 0) return;
    const QPointer<TickList> alive = this;
    setCurrentIndex(pressed);
    if (alive) toggle(pressed);
}

void TickList::mouseDoubleClickEvent(QMouseEvent* event) { mousePressEvent(event); }

void TickList::mouseMoveEvent(QMouseEvent* event) { event->accept(); }

void TickList::mouseReleaseEvent(QMouseEvent* event) { event->accept(); }

// The view's own would make the first row current.
void TickList::focusInEvent(QFocusEvent* event) {
    QAbstractScrollArea::focusInEvent(event);
    viewport()->update();
    offerFocus(*event);
}

void TickList::lookChanged() {
    const QPalette look = controlPalette(back(kWhite), textColour(kBlack), border(kLine));
    setPalette(look);
    viewport()->setPalette(look);
    styleScrollBars(this);
    viewport()->update();
    Control::lookChanged();
}

}  // namespace velcoran::controls
