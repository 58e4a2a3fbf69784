#include "zoom_box.h"

#include "viewer/commands/texts.h"

#include <QKeyEvent>
#include <QLineEdit>

#include <algorithm>

namespace velcoran::viewer {

namespace {

struct FitRow {
    Zoom::Kind kind;
    const char16_t* text;
};

/// What stands in the list below the percentages.
constexpr FitRow kFits[] = {{Zoom::Kind::PageWidth, u"Lățimea paginii"}, {Zoom::Kind::WholePage, u"Pagina întreagă"}};

}  // namespace

ZoomBox::ZoomBox(QWidget* parent) : QComboBox(parent) {
    setObjectName(QStringLiteral("crwZoom"));
    setEditable(true);
    setInsertPolicy(QComboBox::NoInsert);
    setCompleter(nullptr);
    setFocusPolicy(Qt::ClickFocus);
    setAccessibleName(QStringLiteral("Mărime"));
    setToolTip(QStringLiteral("Mărimea paginii"));
    for (const int percent : zoomSteps()) addItem(QStringLiteral("%1 %").arg(percent));
    for (const FitRow& fit : kFits) addItem(QString::fromUtf16(fit.text));
    setFixedWidth(fontMetrics().horizontalAdvance(QStringLiteral("Pagina întreagă")) + 38);
    setMaxVisibleItems(count());
    lineEdit()->setObjectName(QStringLiteral("crwZoomBox"));
    lineEdit()->installEventFilter(this);
    connect(this, &QComboBox::activated, this, &ZoomBox::choose);
}

void ZoomBox::setZoom(const Zoom& zoom, double percent) {
    m_percent = QStringLiteral("%1 %").arg(qRound(percent));
    const auto* fit = std::ranges::find(kFits, zoom.kind, &FitRow::kind);
    setCurrentIndex(findText(fit == std::end(kFits) ? m_percent : QString::fromUtf16(fit->text)));
    setEditText(m_percent);
}

void ZoomBox::choose(int index) {
    const auto steps = zoomSteps();
    const auto at = static_cast<std::size_t>(index);
    emit zoomChosen(at < steps.size() ? Zoom{Zoom::Kind::Percent, steps[at]} : Zoom{kFits[at - steps.size()].kind});
    emit left();
}

void ZoomBox::enter() {
    const int percent = pageOfText(currentText());
    setEditText(m_percent);
    if (percent > 0) emit zoomChosen({Zoom::Kind::Percent, std::clamp(percent, kMinPercent, kMaxPercent)});
    emit left();
}

// The wheel over the list changes nothing: it is meant for the pages.
void ZoomBox::wheelEvent(QWheelEvent*) {}

void ZoomBox::keyPressEvent(QKeyEvent* event) {
    switch (event->key()) {
        case Qt::Key_PageUp:
        case Qt::Key_PageDown:  // keys that move the pages: the list would choose another size by them
            return event->ignore();
        case Qt::Key_Return:
        case Qt::Key_Enter:
            return enter();
        default:
            return QComboBox::keyPressEvent(event);
    }
}

bool ZoomBox::eventFilter(QObject* watched, QEvent* event) {
    if (watched != lineEdit()) return QComboBox::eventFilter(watched, event);
    if (event->type() == QEvent::FocusOut) setEditText(m_percent);
    if (event->type() != QEvent::KeyPress) return QComboBox::eventFilter(watched, event);
    const int key = static_cast<QKeyEvent*>(event)->key();
    if (key != Qt::Key_Return && key != Qt::Key_Enter) return QComboBox::eventFilter(watched, event);
    enter();
    return true;
}

}  // namespace velcoran::viewer
