#include "toolbar.h"

#include "page_box.h"
#include "search_bar.h"
#include "zoom_box.h"

#include "base/units.h"
#include "viewer/commands/icons.h"

#include <QAction>
#include <QHBoxLayout>
#include <QLabel>
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

/// Buttons that show up together, around the widgets that they belong to.
struct Toolbar::Section {
    int rank = 0;
    QWidget* widget = nullptr;
    std::vector<Command> commands;
    std::vector<QToolButton*> buttons;
};

Toolbar::Toolbar(QWidget* parent, CommandActions& actions)
    : QWidget(parent),
      m_actions(actions),
      m_search(new SearchBar(this)),
      m_pageBox(new PageBox(this)),
      m_zoom(new ZoomBox(this)) {
    setObjectName(QStringLiteral("crwToolbar"));
    setAccessibleName(QStringLiteral("Bara de instrumente a raportului"));
    setFixedHeight(base::Twips{kHeightTwips}.toPixels(logicalDpiY()));
    // What does not fit goes into the menu: the sections do not keep the window from becoming narrow.
    setMinimumWidth(1);
    auto* row = new QHBoxLayout(this);
    row->setContentsMargins(4, 1, base::Twips{kFreeTwips}.toPixels(logicalDpiX()), 1);
    row->setSpacing(kSectionGap);
    buildProgress();
    buildSections();
    buildOverflow();
    row->addWidget(m_overflow);
    row->addStretch(1);
    refreshIcons();
    arrange();
}

Toolbar::~Toolbar() = default;

void Toolbar::buildProgress() {
    m_progressText = new QLabel(this);
    m_progressText->setObjectName(QStringLiteral("crwProgressText"));
    m_progressBar = new QProgressBar(this);
    m_progressBar->setObjectName(QStringLiteral("crwProgress"));
    m_progressBar->setAccessibleName(QStringLiteral("Încărcarea raportului"));
    m_progressBar->setRange(0, 0);
    m_progressBar->setTextVisible(false);
    m_progressBar->setFixedSize(64, 8);
}

void Toolbar::buildOverflow() {
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
}

void Toolbar::buildSections() {
    addSection(kRankOutput, {Command::Export, Command::Print, Command::Refresh, Command::Tree});
    addSection(kRankNavigation, {Command::First, Command::Previous, Command::Next, Command::Last}, {m_pageBox});
    addSection(kRankZoom, {Command::ZoomOut, Command::ZoomIn}, {m_zoom});
    addSection(kRankSearch, {Command::Find}, {m_search});
    addSection(kRankProgress, {Command::Stop}, {m_progressBar, m_progressText});
    addSection(kRankMore, {Command::Filter, Command::Help, Command::Close});
}

// The widgets of a section stand between the two halves of its buttons: back, page box, forth.
void Toolbar::addSection(int rank, std::vector<Command> commands, std::initializer_list<QWidget*> widgets) {
    Section section{rank, new QWidget(this), std::move(commands), {}};
    auto* row = new QHBoxLayout(section.widget);
    row->setContentsMargins(0, 0, 0, 0);
    row->setSpacing(1);
    for (const Command command : section.commands)
        if (rowOf(command).button != nullptr) section.buttons.push_back(addButton(command, section.widget));
    const std::size_t half = widgets.size() == 0 ? section.buttons.size() : (section.buttons.size() + 1) / 2;
    for (std::size_t i = 0; i < half; ++i) row->addWidget(section.buttons[i]);
    for (QWidget* widget : widgets) row->addWidget(widget);
    for (std::size_t i = half; i < section.buttons.size(); ++i) row->addWidget(section.buttons[i]);
    static_cast<QHBoxLayout*>(layout())->addWidget(section.widget);
    m_sections.push_back(std::move(section));
}

QToolButton* Toolbar::addButton(Command command, QWidget* parent) {
    auto* button = new QToolButton(parent);
    button->setObjectName(QString::fromUtf16(rowOf(command).button));
    button->setDefaultAction(&m_actions.of(command));
    button->setAccessibleName(QString::fromUtf16(rowOf(command).caption));
    button->setAutoRaise(true);
    button->setFocusPolicy(Qt::NoFocus);
    button->setIconSize(QSize(kIconSide, kIconSide));
    return button;
}

void Toolbar::setOptions(const ViewerOptions& options) {
    m_options = options;
    setVisible(options.isOn(Part::Toolbar));
    for (const Section& section : m_sections)
        for (QToolButton* button : section.buttons) button->setVisible(button->defaultAction()->isVisible());
    arrange();
}

void Toolbar::refresh() {
    m_pageBox->setEnabled(m_actions.of(Command::GoTo).isEnabled());
    m_zoom->setEnabled(m_actions.of(Command::ZoomReset).isEnabled());
    m_search->setEnabled(m_actions.of(Command::Find).isEnabled());
}

void Toolbar::setProgress(const QString& text) {
    const bool isLoading = !text.isEmpty();
    m_progressText->setText(text);
    if (isLoading == m_isLoading) return;
    m_isLoading = isLoading;
    arrange();
}

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
    return std::ranges::any_of(section.commands, [this](Command command) { return m_actions.of(command).isVisible(); });
}

int Toolbar::rankOf(const Section& section) const {
    const bool isUrgent = section.rank == kRankProgress || (section.rank == kRankSearch && m_isSearchForced);
    return isUrgent ? kRankUrgent : section.rank;
}

void Toolbar::arrange() {
    m_progressBar->setVisible(m_options.isOn(Part::Progress));
    const QMargins margins = layout()->contentsMargins();
    int room = width() - margins.left() - margins.right() - m_overflow->sizeHint().width();
    std::vector<const Section*> order;
    for (const Section& section : m_sections) order.push_back(&section);
    std::ranges::stable_sort(order, {}, [this](const Section* section) { return rankOf(*section); });
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
    for (const Section& section : m_sections) {
        if (!isOn(section) || section.widget->isVisibleTo(this)) continue;
        for (const Command command : section.commands) m_overflowMenu->addAction(&m_actions.of(command));
    }
}

void Toolbar::refreshIcons() {
    const QColor colour = palette().color(QPalette::Active, QPalette::ButtonText);
    m_actions.setIconColour(colour);
    m_overflow->setIcon(svgIcon(QStringLiteral("more"), colour));
    m_search->setIcons(m_actions);
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
