#include "grid.h"

#include "controls/input/typed_text.h"
#include "desktop/own_style.h"
#include "painting.h"

#include <QAbstractButton>
#include <QHeaderView>
#include <QHelpEvent>
#include <QInputMethodEvent>
#include <QItemSelectionModel>
#include <QPainter>
#include <QStyledItemDelegate>
#include <QToolTip>

using namespace Qt::StringLiterals;

namespace velcoran::controls {

namespace {

constexpr base::Twips kDefaultWidth{960};
constexpr int kCellMargin = 3;
constexpr char16_t kEnter = 13;
constexpr char16_t kEscape = 27;
constexpr char16_t kBackspace = 8;

/// White cells; the current row in the selection's colours, the current cell in a frame.
class CellDelegate : public QStyledItemDelegate {
public:
    explicit CellDelegate(Grid* grid) : QStyledItemDelegate(grid), m_grid(grid) {}

    void paint(QPainter* painter, const QStyleOptionViewItem& option, const QModelIndex& index) const override {
        const QModelIndex current = m_grid->currentIndex();
        const bool isCurrentRow = current.isValid() && current.row() == index.row();
        const QColor text = QColor::fromRgb(isCurrentRow ? kWhite : kBlack);
        painter->save();
        painter->fillRect(option.rect, QColor::fromRgb(isCurrentRow ? kHighlight : kWhite));
        painter->setPen(text);
        painter->setFont(m_grid->font());
        const QRect place = option.rect.adjusted(kCellMargin, 0, -kCellMargin, 0);
        const QString shown = m_grid->fontMetrics().elidedText(index.data().toString(), Qt::ElideRight, place.width());
        painter->drawText(place, Qt::AlignVCenter | Qt::TextSingleLine, shown);
        if (current == index) {
            drawEdge(*painter, option.rect, QColor::fromRgb(kWhite));
            drawFocusDots(*painter, option.rect, QColor::fromRgb(kBlack));
        }
        painter->restore();
    }

private:
    Grid* m_grid;
};

}  // namespace

Grid::Grid(QWidget* parent) : ControlOf(parent) {
    setItemDelegate(new CellDelegate(this));
    setSelectionMode(QAbstractItemView::NoSelection);
    setEditTriggers(QAbstractItemView::NoEditTriggers);
    setTabKeyNavigation(false);
    setCornerButtonEnabled(false);
    setWordWrap(false);
    setFrameStyle(QFrame::Box | QFrame::Plain);
    setHorizontalScrollMode(QAbstractItemView::ScrollPerPixel);
    for (QHeaderView* header : {horizontalHeader(), verticalHeader()}) {
        desktop::keepStyle(*header, controlStyle());
        header->setPalette(systemPalette());
        header->setSectionsClickable(false);
        header->setHighlightSections(false);
        header->setSectionResizeMode(QHeaderView::Fixed);
        header->setMinimumSectionSize(1);
    }
    for (QAbstractButton* corner : findChildren<QAbstractButton*>()) {
        desktop::keepStyle(*corner, controlStyle());
        corner->setPalette(systemPalette());
    }
    horizontalHeader()->setDefaultAlignment(Qt::AlignLeft | Qt::AlignVCenter);
    styleScrollBars(this);
    setAttribute(Qt::WA_InputMethodEnabled);
    Grid::lookChanged();
}

Grid::~Grid() = default;

void Grid::bind(QAbstractItemModel* newModel) {
    if (QAbstractItemModel* old = model()) disconnect(old, nullptr, this, nullptr);
    if (newModel != model()) {
        const std::unique_ptr<QItemSelectionModel> oldSelection(selectionModel());
        setModel(newModel);
    }
    m_currentColumn = 1;
    if (newModel == nullptr) return;
    // Connected after the view's own parts, which have taken the new rows over by then.
    const auto keep = [this] { keepCurrent(); };
    connect(newModel, &QAbstractItemModel::modelReset, this, keep);
    connect(newModel, &QAbstractItemModel::rowsInserted, this, keep);
    connect(newModel, &QAbstractItemModel::rowsRemoved, this, keep);
    connect(newModel, &QAbstractItemModel::layoutChanged, this, keep);
    applyWidths();
    moveTo(1, 1);
}

// A grid with rows always has a current cell.
void Grid::keepCurrent() {
    applyWidths();
    if (!currentIndex().isValid() && rows() > 0) moveTo(1, qBound(1, m_currentColumn, columns()));
}

int Grid::rows() const { return model() != nullptr ? model()->rowCount() : 0; }

int Grid::columns() const { return model() != nullptr ? model()->columnCount() : 0; }

int Grid::row() const { return currentIndex().isValid() ? currentIndex().row() + 1 : 0; }

int Grid::column() const { return currentIndex().isValid() ? currentIndex().column() + 1 : 0; }

QModelIndex Grid::indexOf(int row, int column) const {
    const bool isThere = row >= 1 && row <= rows() && column >= 1 && column <= columns();
    return isThere ? model()->index(row - 1, column - 1) : QModelIndex();
}

QString Grid::cellText(int row, int column) const { return indexOf(row, column).data().toString(); }

QString Grid::headerText(int column) const {
    if (column < 1 || column > columns()) return {};
    return model()->headerData(column - 1, Qt::Horizontal).toString();
}

bool Grid::setColumnWidth(int column, base::Twips width) {
    if (column < 0 || column > columns()) return false;
    while (m_widths.size() <= column) m_widths += kDefaultWidth;
    m_widths[column] = width;
    applyWidths();
    return true;
}

base::Twips Grid::columnWidth(int column) const { return m_widths.value(column, kDefaultWidth); }

void Grid::applyWidths() {
    const double density = densityOf(this);
    verticalHeader()->setFixedWidth(qMax(1, columnWidth(0).toPixels(density)));
    for (int column = 1; column <= columns(); ++column)
        QTableView::setColumnWidth(column - 1, columnWidth(column).toPixels(density));
    const int height = fontMetrics().height() + 4;
    verticalHeader()->setDefaultSectionSize(height);
    horizontalHeader()->setFixedHeight(height + 2);
}

bool Grid::moveTo(int row, int column) {
    const QModelIndex index = indexOf(row, column);
    if (!index.isValid()) return false;
    setCurrentIndex(index);
    scrollTo(index);
    return true;
}

QRect Grid::cellRect(int row, int column) {
    const QModelIndex index = indexOf(row, column);
    if (!index.isValid()) return {};
    scrollTo(index);
    const QRect place = visualRect(index) & viewport()->rect();
    return place.translated(viewport()->mapTo(this, QPoint(0, 0)));
}

QVariantMap Grid::controlState() const {
    QVariantMap state = colourState();
    QStringList names;
    QVariantList lines;
    for (int column = 1; column <= columns(); ++column) names += headerText(column);
    for (int row = 1; row <= rows(); ++row) {
        QStringList cells;
        for (int column = 1; column <= columns(); ++column) cells += cellText(row, column);
        lines += QVariant(cells);
    }
    QVariantList widths;
    for (int column = 0; column <= 2; ++column) widths += columnWidth(column).value;
    state[u"columns"_s] = names;
    state[u"rows"_s] = lines;
    state[u"row"_s] = row();
    state[u"column"_s] = column();
    state[u"widths"_s] = widths;
    return state;
}

void Grid::raiseKeyPresses(const QString& characters) {
    const QPointer<Grid> alive = this;
    for (const QString& character : charactersOf(characters)) {
        const KeyPressHandler handler = m_keyPress;
        if (handler) handler(character);
        if (!alive || isHidden()) return;  // a pick or a cancel ends the text
    }
}

// Enter, Esc and typed text are the grid's before they are a shortcut of the host's.
bool Grid::event(QEvent* event) {
    if (event->type() == QEvent::ShortcutOverride) {
        const Qt::KeyboardModifiers modifiers = static_cast<QKeyEvent*>(event)->modifiers();
        if (!(modifiers & (Qt::ControlModifier | Qt::AltModifier | Qt::MetaModifier))) {
            event->accept();
            return true;
        }
    }
    if (event->type() == QEvent::KeyPress) {
        const int key = static_cast<QKeyEvent*>(event)->key();
        if (key == Qt::Key_Tab || key == Qt::Key_Backtab) {
            offerKey(*static_cast<QKeyEvent*>(event));
            event->accept();
            return true;
        }
    }
    return ControlOf::event(event);
}

// Up and Down, a page and the ends choose the row, Left and Right the column.
bool Grid::navigate(int key) {
    const int page = qMax(1, viewport()->height() / qMax(1, verticalHeader()->defaultSectionSize()) - 1);
    const auto toRow = [this](int row) { moveTo(qBound(1, row, rows()), m_currentColumn); };
    const auto toColumn = [this](int column) { moveTo(row(), qBound(1, column, columns())); };
    switch (key) {
        case Qt::Key_Up:
            toRow(row() - 1);
            return true;
        case Qt::Key_Down:
            toRow(row() + 1);
            return true;
        case Qt::Key_PageUp:
            toRow(row() - page);
            return true;
        case Qt::Key_PageDown:
            toRow(row() + page);
            return true;
        case Qt::Key_Home:
            toRow(1);
            return true;
        case Qt::Key_End:
            toRow(rows());
            return true;
        case Qt::Key_Left:
            toColumn(column() - 1);
            return true;
        case Qt::Key_Right:
            toColumn(column() + 1);
            return true;
        default:
            return false;
    }
}

void Grid::keyPressEvent(QKeyEvent* event) {
    const int key = event->key();
    event->accept();
    if (navigate(key)) return;
    if (key == Qt::Key_Return || key == Qt::Key_Enter)
        raiseKeyPresses(QChar(kEnter));
    else if (key == Qt::Key_Escape)
        raiseKeyPresses(QChar(kEscape));
    else if (key == Qt::Key_Backspace)
        raiseKeyPresses(QChar(kBackspace));
    else if (const QString typed = typedText(*event); !typed.isEmpty())
        raiseKeyPresses(typed);
    else
        event->ignore();
}

void Grid::keyboardSearch(const QString&) {}

void Grid::inputMethodEvent(QInputMethodEvent* event) {
    event->accept();
    raiseKeyPresses(event->commitString());
}

QVariant Grid::inputMethodQuery(Qt::InputMethodQuery query) const {
    if (query == Qt::ImEnabled) return true;
    if (query == Qt::ImCursorRectangle) return visualRect(currentIndex());
    return QWidget::inputMethodQuery(query);
}

// The view's own switches the input method off where nothing can be edited.
void Grid::focusInEvent(QFocusEvent* event) {
    QAbstractScrollArea::focusInEvent(event);
    viewport()->update();
    offerFocus(*event);
}

void Grid::mousePressEvent(QMouseEvent* event) {
    event->accept();
    m_pressed = QPersistentModelIndex();
    const QModelIndex index = indexAt(event->position().toPoint());
    if (event->button() != Qt::LeftButton || !index.isValid()) return;
    m_pressed = index;
    setCurrentIndex(index);
}

void Grid::mouseMoveEvent(QMouseEvent* event) { event->accept(); }

void Grid::mouseReleaseEvent(QMouseEvent* event) {
    event->accept();
    const QModelIndex index = indexAt(event->position().toPoint());
    const bool isClick =
        event->button() == Qt::LeftButton && index.isValid() && m_pressed.isValid() && m_pressed.row() == index.row();
    m_pressed = QPersistentModelIndex();
    if (isClick) emit cellClicked(row(), column());
}

void Grid::mouseDoubleClickEvent(QMouseEvent* event) { mousePressEvent(event); }

void Grid::currentChanged(const QModelIndex& current, const QModelIndex& previous) {
    QTableView::currentChanged(current, previous);
    setAttribute(Qt::WA_InputMethodEnabled);
    viewport()->update();
    if (!current.isValid()) return;
    m_currentColumn = current.column() + 1;
    emit currentCellChanged(current.row() + 1, current.column() + 1);
}

bool Grid::viewportEvent(QEvent* event) {
    if (event->type() != QEvent::ToolTip) return QTableView::viewportEvent(event);
    const auto* help = static_cast<QHelpEvent*>(event);
    const QModelIndex index = indexAt(help->pos());
    const QString text = index.data().toString();
    const QRect place = visualRect(index);
    const bool isCut = fontMetrics().horizontalAdvance(text) > place.width() - 2 * kCellMargin;
    if (index.isValid() && isCut)
        QToolTip::showText(help->globalPos(), text, viewport(), place);
    else
        QToolTip::hideText();
    return true;
}

void Grid::lookChanged() {
    QPalette look = controlPalette(back(kWhite), fore(kBlack), border(kLine));
    setPalette(look);
    viewport()->setPalette(look);
    horizontalHeader()->setFont(font());
    styleScrollBars(this);
    applyWidths();
    viewport()->update();
    Control::lookChanged();
}

void Grid::densityChanged() {
    Control::densityChanged();
    lookChanged();
}

}  // namespace velcoran::controls
