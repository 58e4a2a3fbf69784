#include "toolbar.h"

#include "base/units.h"
#include "search_bar.h"
#include "viewer/commands/icons.h"
#include "viewer/commands/texts.h"

#include <QComboBox>
#include <QHBoxLayout>
#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QMenu>
#include <QPainter>
#include <QProgressBar>
#include <QStyleOptionToolButton>
#include <QStylePainter>
#include <QToolButton>

#include <algorithm>

namespace velcoran::viewer {

namespace {

constexpr int kIconSide = 18;
constexpr int kSectionGap = 9;

struct ButtonRow {
    Command command;
    Glyph glyph;
    const char16_t* objectName;
    Part part;
};

constexpr ButtonRow kButtons[] = {
    {Command::Export, Glyph::Export, u"crwExport", Part::ExportButton},
    {Command::Print, Glyph::Print, u"crwPrint", Part::PrintButton},
    {Command::Refresh, Glyph::Refresh, u"crwRefresh", Part::RefreshButton},
    {Command::Tree, Glyph::Tree, u"crwTreeButton", Part::TreeButton},
    {Command::First, Glyph::First, u"crwFirst", Part::Navigation},
    {Command::Previous, Glyph::Previous, u"crwPrevious", Part::Navigation},
    {Command::Next, Glyph::Next, u"crwNext", Part::Navigation},
    {Command::Last, Glyph::Last, u"crwLast", Part::Navigation},
    {Command::ZoomOut, Glyph::ZoomOut, u"crwZoomOut", Part::Zoom},
    {Command::ZoomIn, Glyph::ZoomIn, u"crwZoomIn", Part::Zoom},
    {Command::Stop, Glyph::Stop, u"crwStop", Part::StopButton},
    {Command::Filter, Glyph::Filter, u"crwFilter", Part::FilterButton},
    {Command::Help, Glyph::Help, u"crwHelp", Part::HelpButton},
    {Command::Close, Glyph::Close, u"crwClose", Part::CloseButton},
};

const ButtonRow& buttonOf(Command command) {
    return *std::ranges::find_if(kButtons, [command](const ButtonRow& row) { return row.command == command; });
}

// Ranks of the sections: the higher one goes first when there is no room.
constexpr int kRankOutput = 0;
constexpr int kRankNavigation = 1;
constexpr int kRankSearch = 2;
constexpr int kRankZoom = 3;
constexpr int kRankMore = 4;
constexpr int kRankProgress = 5;
constexpr int kRankUrgent = -1;

/// Its picture says that it opens a menu: without the arrow that Qt would add.
class MoreButton final : public QToolButton {
public:
    using QToolButton::QToolButton;

protected:
    void paintEvent(QPaintEvent*) override {
        QStylePainter painter(this);
        QStyleOptionToolButton option;
        initStyleOption(&option);
        option.features &= ~QStyleOptionToolButton::HasMenu;
        painter.drawComplexControl(QStyle::CC_ToolButton, option);
    }
};

}  // namespace

struct Toolbar::Section {
    int rank = 0;
    QWidget* widget = nullptr;
    std::vector<Command> commands;
};

Toolbar::Toolbar(QWidget* parent) : QWidget(parent) {
    setObjectName(QStringLiteral("crwToolbar"));
    setAccessibleName(QStringLiteral("Bara de instrumente a raportului"));
    setFixedHeight(base::Twips{kHeightTwips}.toPixels(logicalDpiY()));
    // What does not fit goes into the menu: the sections do not keep the window from becoming narrow.
    setMinimumWidth(1);
    auto* row = new QHBoxLayout(this);
    row->setContentsMargins(4, 1, base::Twips{kFreeTwips}.toPixels(logicalDpiX()), 1);
    row->setSpacing(kSectionGap);
    m_search = new SearchBar(this);
    buildPageBox();
    buildZoomList();
    m_progressText = new QLabel(this);
    m_progressText->setObjectName(QStringLiteral("crwProgressText"));
    m_progressBar = new QProgressBar(this);
    m_progressBar->setObjectName(QStringLiteral("crwProgress"));
    m_progressBar->setAccessibleName(QStringLiteral("Încărcarea raportului"));
    m_progressBar->setRange(0, 0);
    m_progressBar->setTextVisible(false);
    m_progressBar->setFixedSize(64, 8);
    buildSections();
    m_overflow = new MoreButton(this);
    m_overflow->setObjectName(QStringLiteral("crwMore"));
    m_overflow->setAutoRaise(true);
    m_overflow->setFocusPolicy(Qt::NoFocus);
    m_overflow->setPopupMode(QToolButton::InstantPopup);
    m_overflow->setToolTip(QStringLiteral("Alte comenzi"));
    m_overflow->setAccessibleName(QStringLiteral("Alte comenzi"));
    m_overflowMenu = new QMenu(m_overflow);
    m_overflow->setMenu(m_overflowMenu);
    connect(m_overflowMenu, &QMenu::aboutToShow, this, &Toolbar::fillOverflowMenu);
    row->addWidget(m_overflow);
    row->addStretch(1);
    refreshIcons();
    arrange();
}

Toolbar::~Toolbar() = default;

void Toolbar::buildSections() {
    addSection(kRankOutput, {Command::Export, Command::Print, Command::Refresh, Command::Tree});
    addSection(kRankNavigation, {Command::First, Command::Previous, Command::Next, Command::Last}, {m_pageBox});
    addSection(kRankZoom, {Command::ZoomOut, Command::ZoomIn}, {m_zoomList});
    addSection(kRankSearch, {}, {m_search});
    addSection(kRankProgress, {Command::Stop}, {m_progressBar, m_progressText});
    addSection(kRankMore, {Command::Filter, Command::Help, Command::Close});
}

// The widgets of a section stand between the two halves of its buttons: back, page box, forth.
void Toolbar::addSection(int rank, std::vector<Command> commands, std::initializer_list<QWidget*> widgets) {
    auto* box = new QWidget(this);
    auto* row = new QHBoxLayout(box);
    row->setContentsMargins(0, 0, 0, 0);
    row->setSpacing(1);
    const std::size_t half = widgets.size() == 0 ? commands.size() : (commands.size() + 1) / 2;
    for (std::size_t i = 0; i < half; ++i) row->addWidget(addButton(commands[i], box));
    for (QWidget* widget : widgets) row->addWidget(widget);
    for (std::size_t i = half; i < commands.size(); ++i) row->addWidget(addButton(commands[i], box));
    static_cast<QHBoxLayout*>(layout())->addWidget(box);
    m_sections.push_back({rank, box, std::move(commands)});
}

QToolButton* Toolbar::addButton(Command command, QWidget* parent) {
    auto* button = new QToolButton(parent);
    button->setObjectName(QString::fromUtf16(buttonOf(command).objectName));
    button->setAutoRaise(true);
    button->setFocusPolicy(Qt::NoFocus);
    button->setIconSize(QSize(kIconSide, kIconSide));
    button->setToolTip(tooltipOf(command));
    button->setAccessibleName(QString::fromUtf16(rowOf(command).caption));
    button->setCheckable(command == Command::Tree);
    // The button's own state follows what the viewer answers, not the click.
    connect(button, &QToolButton::clicked, this, [this, command] { emit triggered(command); });
    m_buttons.insert(command, button);
    return button;
}

void Toolbar::buildPageBox() {
    m_pageBox = new QLineEdit(this);
    m_pageBox->setObjectName(QStringLiteral("crwPageBox"));
    m_pageBox->setFocusPolicy(Qt::ClickFocus);
    m_pageBox->setAlignment(Qt::AlignCenter);
    m_pageBox->setAccessibleName(QStringLiteral("Pagina"));
    m_pageBox->setToolTip(tooltipOf(Command::GoTo));
    m_pageBox->setFixedWidth(m_pageBox->fontMetrics().horizontalAdvance(QStringLiteral("00.000 din 00.000")) + 16);
    m_pageBox->installEventFilter(this);
    connect(m_pageBox, &QLineEdit::returnPressed, this, &Toolbar::enterPage);
}

void Toolbar::buildZoomList() {
    m_zoomList = new QComboBox(this);
    m_zoomList->setObjectName(QStringLiteral("crwZoom"));
    m_zoomList->setEditable(true);
    m_zoomList->setInsertPolicy(QComboBox::NoInsert);
    m_zoomList->setCompleter(nullptr);
    m_zoomList->setFocusPolicy(Qt::ClickFocus);
    m_zoomList->setAccessibleName(QStringLiteral("Mărime"));
    m_zoomList->setToolTip(QStringLiteral("Mărimea paginii"));
    for (const int percent : zoomSteps())
        m_zoomList->addItem(QStringLiteral("%1 %").arg(percent), QVariant::fromValue(percent));
    m_zoomList->addItem(QStringLiteral("Lățimea paginii"));
    m_zoomList->addItem(QStringLiteral("Pagina întreagă"));
    m_zoomList->setFixedWidth(m_zoomList->fontMetrics().horizontalAdvance(QStringLiteral("Pagina întreagă")) + 38);
    m_zoomList->setMaxVisibleItems(m_zoomList->count());
    m_zoomList->installEventFilter(this);
    m_zoomList->lineEdit()->setObjectName(QStringLiteral("crwZoomBox"));
    m_zoomList->lineEdit()->installEventFilter(this);
    connect(m_zoomList, &QComboBox::activated, this, [this](int index) {
        const QVariant percent = m_zoomList->itemData(index);
        const bool isWidth = index == static_cast<int>(zoomSteps().size());
        const auto fit = isWidth ? Zoom::Kind::PageWidth : Zoom::Kind::WholePage;
        emit zoomChosen(percent.isValid() ? Zoom{Zoom::Kind::Percent, percent.toInt()} : Zoom{fit});
        emit left();
    });
}

void Toolbar::enterPage() {
    const int page = pageOfText(m_pageBox->text());
    m_pageBox->setText(m_pageText);
    if (page > 0) emit pageEntered(page);
    emit left();
}

void Toolbar::enterZoom() {
    const int percent = pageOfText(m_zoomList->currentText());
    m_zoomList->setEditText(m_zoomText);
    if (percent > 0) emit zoomChosen({Zoom::Kind::Percent, std::clamp(percent, kMinPercent, kMaxPercent)});
    emit left();
}

bool Toolbar::eventFilter(QObject* watched, QEvent* event) {
    // The wheel over the zoom list changes nothing: it is meant for the pages.
    if (watched == m_zoomList && event->type() == QEvent::Wheel) return true;
    if (event->type() == QEvent::FocusIn && watched == m_pageBox)
        QMetaObject::invokeMethod(m_pageBox, &QLineEdit::selectAll, Qt::QueuedConnection);
    if (event->type() == QEvent::FocusOut && watched == m_pageBox) m_pageBox->setText(m_pageText);
    if (event->type() == QEvent::FocusOut && watched == m_zoomList->lineEdit()) m_zoomList->setEditText(m_zoomText);
    if (event->type() != QEvent::KeyPress) return QWidget::eventFilter(watched, event);
    const auto* press = static_cast<QKeyEvent*>(event);
    // The list of sizes would choose another one by the keys that move the pages.
    if (watched == m_zoomList && (press->key() == Qt::Key_PageUp || press->key() == Qt::Key_PageDown)) {
        event->ignore();
        return true;
    }
    const bool isZoomBox = watched == m_zoomList || watched == m_zoomList->lineEdit();
    if (isZoomBox && (press->key() == Qt::Key_Return || press->key() == Qt::Key_Enter)) {
        enterZoom();
        return true;
    }
    // Esc gives up what was typed; without a change it goes on to the window.
    if (press->key() == Qt::Key_Escape && watched == m_pageBox && m_pageBox->text() != m_pageText) {
        m_pageBox->setText(m_pageText);
        emit left();
        return true;
    }
    return QWidget::eventFilter(watched, event);
}

void Toolbar::setOptions(const ViewerOptions& options) {
    m_options = options;
    setVisible(options.isOn(Part::Toolbar));
    for (const ButtonRow& row : kButtons) m_buttons.value(row.command)->setVisible(options.isOn(row.part));
    arrange();
}

void Toolbar::setEnabledCommands(const std::function<bool(Command)>& isEnabled) {
    for (auto entry = m_buttons.cbegin(); entry != m_buttons.cend(); ++entry)
        entry.value()->setEnabled(isEnabled(entry.key()));
    m_pageBox->setEnabled(isEnabled(Command::GoTo));
    m_zoomList->setEnabled(isEnabled(Command::ZoomReset));
    m_search->setEnabled(isEnabled(Command::Find));
}

void Toolbar::setPage(int page, int pageCount) {
    m_pageText = pageCount > 0 ? pageText(page, pageCount) : QString();
    if (!m_pageBox->hasFocus()) m_pageBox->setText(m_pageText);
}

void Toolbar::setZoom(const Zoom& zoom, double percent) {
    m_zoomText = QStringLiteral("%1 %").arg(qRound(percent));
    int index = -1;
    if (zoom.kind != Zoom::Kind::Percent)
        index = static_cast<int>(zoomSteps().size()) + (zoom.kind == Zoom::Kind::WholePage ? 1 : 0);
    else
        index = m_zoomList->findText(m_zoomText);
    m_zoomList->setCurrentIndex(index);
    m_zoomList->setEditText(m_zoomText);
}

void Toolbar::setProgress(const QString& text) {
    const bool isLoading = !text.isEmpty();
    m_progressText->setText(text);
    if (isLoading == m_isLoading) return;
    m_isLoading = isLoading;
    arrange();
}

void Toolbar::setTreeShown(bool isShown) { m_buttons.value(Command::Tree)->setChecked(isShown); }

void Toolbar::openPageBox() {
    if (m_pageBox->isVisibleTo(this)) m_pageBox->setFocus(Qt::ShortcutFocusReason);
}

void Toolbar::openSearch() {
    m_isSearchForced = true;
    arrange();
    m_search->open();
}

bool Toolbar::isOn(const Section& section) const {
    if (section.rank == kRankProgress)
        return m_isLoading && (m_options.isOn(Part::Progress) || m_options.isOn(Part::StopButton));
    if (section.rank == kRankSearch) return m_options.isOn(Part::Search);
    return std::ranges::any_of(section.commands,
                               [this](Command command) { return m_options.isOn(buttonOf(command).part); });
}

void Toolbar::arrange() {
    m_progressBar->setVisible(m_options.isOn(Part::Progress));
    const QMargins margins = layout()->contentsMargins();
    int room = width() - margins.left() - margins.right() - m_overflow->sizeHint().width();
    std::vector<const Section*> order;
    for (const Section& section : m_sections) order.push_back(&section);
    const auto rank = [this](const Section* section) {
        const bool isUrgent = section->rank == kRankProgress || (section->rank == kRankSearch && m_isSearchForced);
        return isUrgent ? kRankUrgent : section->rank;
    };
    std::ranges::stable_sort(order, {}, rank);
    bool isFull = false;
    for (const Section* section : order) {
        const bool isWanted = isOn(*section);
        const int width = section->widget->sizeHint().width() + kSectionGap;
        const bool hasRoom = isWanted && !isFull && width <= room;
        isFull = isFull || (isWanted && !hasRoom);
        if (hasRoom) room -= width;
        section->widget->setVisible(hasRoom);
    }
    m_overflow->setVisible(isFull);
    // At once: a section that was squeezed until now would show its buttons over each other for a moment.
    for (const Section& section : m_sections) section.widget->layout()->activate();
    layout()->activate();
}

void Toolbar::fillOverflowMenu() {
    m_overflowMenu->clear();
    const auto add = [this](Command command, const QIcon& icon, bool isEnabled) {
        QAction* action = m_overflowMenu->addAction(icon, tooltipOf(command), this, [this, command] {
            if (command == Command::Find) return openSearch();
            emit triggered(command);
        });
        action->setEnabled(isEnabled);
    };
    const QColor colour = palette().color(QPalette::ButtonText);
    for (const Section& section : m_sections) {
        if (!isOn(section) || section.widget->isVisibleTo(this)) continue;
        if (section.rank == kRankSearch) add(Command::Find, makeIcon(Glyph::Search, colour), m_search->isEnabled());
        for (const Command command : section.commands)
            if (m_options.isOn(buttonOf(command).part))
                add(command, m_buttons.value(command)->icon(), m_buttons.value(command)->isEnabled());
    }
}

void Toolbar::refreshIcons() {
    const QColor colour = palette().color(QPalette::Active, QPalette::ButtonText);
    for (const ButtonRow& row : kButtons) m_buttons.value(row.command)->setIcon(makeIcon(row.glyph, colour));
    m_overflow->setIcon(makeIcon(Glyph::More, colour));
    m_search->setIcons(colour);
}

void Toolbar::changeEvent(QEvent* event) {
    QWidget::changeEvent(event);
    if (event->type() == QEvent::PaletteChange && m_overflow != nullptr) refreshIcons();
}

void Toolbar::resizeEvent(QResizeEvent*) { arrange(); }

void Toolbar::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    painter.fillRect(rect(), palette().color(QPalette::Window));
    painter.fillRect(QRect(0, height() - 1, width(), 1), palette().color(QPalette::Mid));
}

}  // namespace velcoran::viewer
