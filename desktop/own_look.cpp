#include "own_look.h"

#include "own_style.h"

#include <QAbstractButton>
#include <QAbstractItemView>
#include <QAction>
#include <QChildEvent>
#include <QCompleter>
#include <QIcon>
#include <QLineEdit>
#include <QMenu>
#include <QStyle>
#include <QStyleOption>

namespace velcoran::desktop {

namespace {

constexpr char kTipClass[] = "QTipLabel";

QPalette tipPalette(const QPalette& desktop) {
    QPalette palette = desktop;
    for (const QPalette::ColorGroup group : {QPalette::Active, QPalette::Inactive, QPalette::Disabled}) {
        palette.setBrush(group, QPalette::Window, desktop.brush(group, QPalette::ToolTipBase));
        palette.setBrush(group, QPalette::WindowText, desktop.brush(group, QPalette::ToolTipText));
    }
    return palette;
}

bool isTip(const QWidget& widget) { return widget.inherits(kTipClass); }

}  // namespace

OwnLook::OwnLook(QWidget& window) : m_window(window), m_style(ownStyle()), m_desktop(userDesktop()) { adopt(window); }

OwnLook::~OwnLook() = default;

void OwnLook::adopt(QWidget& widget) {
    if (takeOver(widget)) inheritAnew(*widget.window());
}

/// @return whether a style sheet had a part of it before, and kept palettes and fonts of parents from it
bool OwnLook::takeOver(QWidget& widget) {
    bool wasStyled = widget.testAttribute(Qt::WA_StyleSheet);
    widget.installEventFilter(this);
    keepStyle(widget, *m_style);
    for (QObject* child : widget.children())
        if (child->isWidgetType()) wasStyled = takeOver(static_cast<QWidget&>(*child)) || wasStyled;
    if (widget.isWindow()) dress(widget);
    return wasStyled;
}

// Qt hands a palette and a font down when they change.
void OwnLook::inheritAnew(QWidget& window) {
    const QPalette palette = window.palette();
    const QFont font = window.font();
    window.setPalette(QPalette());
    window.setFont(QFont());
    window.setPalette(palette);
    window.setFont(font);
}

// What is in a window takes its colours and its font over from it; a window takes nothing over from its parent.
void OwnLook::dress(QWidget& window) const {
    window.setPalette(isTip(window) ? tipPalette(m_desktop.palette) : m_desktop.palette);
    window.setFont(m_desktop.font);
}

// A window may become one after it was made.
void OwnLook::dressIfBare(QWidget& window) const {
    const bool isBare = window.palette().resolveMask() != m_desktop.palette.resolveMask();
    if (isBare || isTip(window)) dress(window);
}

// Qt greys what is disabled with the style and the palette of the application.
QIcon OwnLook::greyed(QIcon icon, const QWidget& widget, QSize size) const {
    QStyleOption option;
    option.palette = m_desktop.palette;
    const QPixmap live = icon.pixmap(size, widget.devicePixelRatioF());
    if (live.isNull()) return icon;
    icon.addPixmap(m_style->generatedIconPixmap(QIcon::Disabled, live, &option), QIcon::Disabled);
    return icon;
}

void OwnLook::greyIcons(QWidget& widget) const {
    if (auto* button = qobject_cast<QAbstractButton*>(&widget); button != nullptr && !button->icon().isNull())
        button->setIcon(greyed(button->icon(), widget, button->iconSize()));
    if (qobject_cast<const QMenu*>(&widget) == nullptr) return;
    const int side = m_style->pixelMetric(QStyle::PM_SmallIconSize);
    for (QAction* action : widget.actions())
        if (!action->icon().isNull()) action->setIcon(greyed(action->icon(), widget, QSize(side, side)));
}

/// The last moment before a widget is seen.
void OwnLook::prepare(QWidget& widget) {
    if (widget.isWindow()) dressIfBare(widget);
    greyIcons(widget);
    // The list of a completer is nobody's child; one that completes in the line has none.
    const auto* edit = qobject_cast<const QLineEdit*>(&widget);
    QWidget* list = edit != nullptr && edit->completer() != nullptr ? edit->completer()->popup() : nullptr;
    if (list != nullptr) adopt(*list);
}

// Another style of the application has taken back what ours gave to a polished widget; or somebody has set a style, and
// Qt has put it into the style sheet's.
void OwnLook::keep(QWidget& widget) {
    const bool isKept = widget.style() == m_style.get();
    const bool wasStyled = widget.testAttribute(Qt::WA_StyleSheet);
    keepStyle(widget, *m_style);
    if (wasStyled) inheritAnew(*widget.window());
    if (isKept && widget.testAttribute(Qt::WA_WState_Polished)) m_style->polish(&widget);
}

void OwnLook::followDesktop() {
    const Desktop before = std::exchange(m_desktop, userDesktop());
    if (m_desktop.palette == before.palette && m_desktop.font == before.font) return;
    QList<QWidget*> widgets = m_window.findChildren<QWidget*>();
    widgets.prepend(&m_window);
    for (QWidget* widget : widgets)
        if (widget->isWindow() && (widget->palette() == before.palette || isTip(*widget))) dress(*widget);
}

bool OwnLook::eventFilter(QObject* receiver, QEvent* event) {
    auto& widget = static_cast<QWidget&>(*receiver);
    switch (event->type()) {
        case QEvent::ChildAdded:
            if (QObject* child = static_cast<QChildEvent*>(event)->child(); child->isWidgetType())
                adopt(static_cast<QWidget&>(*child));
            break;
        case QEvent::Polish:
            prepare(widget);
            break;
        case QEvent::StyleChange:
            keep(widget);
            break;
        case QEvent::ThemeChange:
        case QEvent::ApplicationPaletteChange:
        case QEvent::ApplicationFontChange:
            if (&widget == &m_window) followDesktop();
            break;
        default:
            break;
    }
    return false;
}

}  // namespace velcoran::desktop
