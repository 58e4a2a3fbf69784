#include "date_picker.h"

#include "accessibility.h"
#include "base/error.h"
#include "controls/input/typed_text.h"
#include "desktop/own_style.h"
#include "painting.h"

#include <QAccessible>
#include <QCalendarWidget>
#include <QFrame>
#include <QInputMethodEvent>
#include <QKeyEvent>
#include <QPainter>
#include <QScreen>
#include <QTableView>
#include <QVBoxLayout>

using namespace Qt::StringLiterals;

namespace velcoran::controls {

namespace {

constexpr int kDateMargin = 3;
constexpr int kButtonWidth = 17;
constexpr DateSection kSections[] = {DateSection::day, DateSection::month, DateSection::year};

QString isoText(QDate date) { return date.toString(Qt::ISODate); }

}  // namespace

/// The open calendar, a window of its own that closes on a press outside.
class DatePicker::CalendarPopup : public QFrame {
public:
    explicit CalendarPopup(DatePicker* owner) : QFrame(owner, Qt::Popup) {
        setFont(makeFont({}));  // the calendar makes fonts of its own from it at once
        m_calendar = new QCalendarWidget(this);
        auto* layout = new QVBoxLayout(this);
        layout->setContentsMargins(1, 1, 1, 1);
        layout->addWidget(m_calendar);
        m_calendar->setLocale(QLocale(QLocale::Romanian, QLocale::Romania));
        m_calendar->setFirstDayOfWeek(Qt::Monday);
        m_calendar->setVerticalHeaderFormat(QCalendarWidget::NoVerticalHeader);
        m_calendar->setDateEditEnabled(false);
        for (auto* view : m_calendar->findChildren<QTableView*>()) view->setTabKeyNavigation(false);
        desktop::keepStyle(*this, owner->controlStyle());
        setPalette(systemPalette());
        for (QWidget* part : findChildren<QWidget*>()) {
            desktop::keepStyle(*part, owner->controlStyle());
            part->setPalette(systemPalette());
        }
    }

    [[nodiscard]] QCalendarWidget* calendar() const { return m_calendar; }

protected:
    // The focus leaves the picker through its handler alone.
    bool focusNextPrevChild(bool) override { return true; }
    void paintEvent(QPaintEvent*) override {
        QPainter painter(this);
        drawEdge(painter, rect(), QColor::fromRgb(kLine));
    }

private:
    QCalendarWidget* m_calendar = nullptr;
};

DatePicker::DatePicker(QWidget* parent) : ControlOf(parent), m_accessibility(holdAccessibility()) {
    setFocusPolicy(Qt::StrongFocus);
    setAttribute(Qt::WA_InputMethodEnabled);
    setAttribute(Qt::WA_OpaquePaintEvent);
}

DatePicker::~DatePicker() = default;

// Every change goes through here: one notification for a change of the value, none otherwise.
template <class Step>
void DatePicker::edit(Step step) {
    const QDate before = value();
    step();
    update();
    if (value() == before) return;
    QAccessibleValueChangeEvent told(this, shown());
    QAccessible::updateAccessibility(&told);
    emit valueChanged(value());
}

void DatePicker::setBounds(QDate minimum, QDate maximum) {
    if (!minimum.isValid() || !maximum.isValid() || maximum < minimum)
        throw base::Error(base::kInvalidProcedureCall, u"Limitele datei nu sunt corecte."_s);
    closeCalendar();  // which shows the old ones
    edit([&] { m_sections.setBounds(minimum, maximum); });
}

void DatePicker::setValue(QDate value) {
    if (!value.isValid() || value < minimum() || value > maximum())
        throw base::Error(base::kInvalidProcedureCall, u"Data este în afara limitelor."_s);
    edit([&] { m_sections.setValue(value); });
}

bool DatePicker::enter(QDate value) {
    if (!isEnabled() || !isVisible() || !value.isValid() || value < minimum() || value > maximum()) return false;
    closeCalendar();
    edit([&] { m_sections.setValue(value); });
    return true;
}

QVariantMap DatePicker::controlState() const {
    QVariantMap state = colourState();
    state[u"value"_s] = isoText(value());
    state[u"min"_s] = isoText(minimum());
    state[u"max"_s] = isoText(maximum());
    state[u"shown"_s] = shown();
    return state;
}

bool DatePicker::isOpen() const { return m_popup && m_popup->isVisible(); }

void DatePicker::openCalendar() {
    if (isOpen() || !isEnabled()) return;
    edit([this] { m_sections.finishTyping(); });
    if (!m_popup) {
        m_popup = std::make_unique<CalendarPopup>(this);
        m_popup->installEventFilter(this);
        const auto pick = [this](QDate picked) { enter(picked); };
        connect(m_popup->calendar(), &QCalendarWidget::clicked, this, [this](QDate picked) {
            m_secondPress.arm();
            enter(picked);
        });
        connect(m_popup->calendar(), &QCalendarWidget::activated, this, pick);
    }
    QCalendarWidget* calendar = m_popup->calendar();
    calendar->setDateRange(minimum(), maximum());
    calendar->setSelectedDate(value());
    m_popup->adjustSize();
    QRect place(mapToGlobal(QPoint(0, height())), m_popup->size());
    const QRect screenPlace = screen()->availableGeometry();
    if (place.bottom() > screenPlace.bottom()) place.moveBottom(mapToGlobal(QPoint(0, -1)).y());
    if (place.right() > screenPlace.right()) place.moveRight(screenPlace.right());
    m_popup->setGeometry(place);
    calendar->setFocus();
    m_popup->show();
}

void DatePicker::closeCalendar() {
    if (m_popup) m_popup->hide();
}

bool DatePicker::eventFilter(QObject* object, QEvent* event) {
    if (m_popup && object == m_popup.get()) {
        if (event->type() == QEvent::MouseButtonPress) pressOutside(*static_cast<QMouseEvent*>(event));
        if (event->type() == QEvent::KeyPress && pressInCalendar(static_cast<QKeyEvent*>(event)->key())) return true;
    }
    return ControlOf::eventFilter(object, event);
}

// A press on the picker closes its calendar and must not open it again.
void DatePicker::pressOutside(const QMouseEvent& press) {
    if (!m_popup->rect().contains(press.position().toPoint())) m_secondPress.armAfterPress();
    const QPoint place = mapFromGlobal(press.globalPosition().toPoint());
    m_popup->setAttribute(Qt::WA_NoMouseReplay, rect().contains(place));
}

/// Keys that the calendar itself has left. @return false for a key that is left here too
bool DatePicker::pressInCalendar(int key) {
    if (key == Qt::Key_Enter || key == Qt::Key_Return) {
        enter(m_popup->calendar()->selectedDate());
        return true;
    }
    if (key != Qt::Key_F4 && key != Qt::Key_Escape) return false;
    closeCalendar();
    return true;
}

void DatePicker::typeText(const QString& text) {
    edit([&] {
        for (const QChar character : text) {
            const bool isSeparator = character == u'/' || character == u'.' || character == u'-';
            if (isSeparator)
                m_sections.moveSection(1);
            else
                m_sections.type(character);
        }
    });
}

void DatePicker::keyPressEvent(QKeyEvent* event) {
    const bool isAlt = event->modifiers() & Qt::AltModifier;
    event->accept();
    switch (event->key()) {
        case Qt::Key_F4:
            openCalendar();
            return;
        case Qt::Key_Up:
        case Qt::Key_Down:
            if (isAlt)
                openCalendar();
            else
                edit([&] { m_sections.step(event->key() == Qt::Key_Up ? 1 : -1); });
            return;
        case Qt::Key_Left:
            edit([this] { m_sections.moveSection(-1); });
            return;
        case Qt::Key_Right:
            edit([this] { m_sections.moveSection(1); });
            return;
        case Qt::Key_Backspace:
        case Qt::Key_Delete:
            edit([this] { m_sections.removeTyped(); });
            return;
        default:
            break;
    }
    const QString typed = typedText(*event);
    event->setAccepted(!typed.isEmpty());
    typeText(typed);
}

void DatePicker::inputMethodEvent(QInputMethodEvent* event) {
    typeText(event->commitString());
    event->accept();
}

void DatePicker::focusOutEvent(QFocusEvent* event) {
    if (event->reason() != Qt::PopupFocusReason) {
        closeCalendar();
        edit([this] { m_sections.finishTyping(); });
    }
    ControlOf::focusOutEvent(event);
}

void DatePicker::mousePressEvent(QMouseEvent* event) {
    event->accept();
    if (event->button() != Qt::LeftButton) return;
    const QPoint place = event->position().toPoint();
    if (buttonRect().contains(place)) {
        isOpen() ? closeCalendar() : openCalendar();
        return;
    }
    DateSection pressed = DateSection::year;
    for (const DateSection section : {DateSection::month, DateSection::day})
        if (place.x() <= sectionRect(section).right() + 1) pressed = section;
    edit([&] { m_sections.setSection(pressed); });
}

void DatePicker::wheelEvent(QWheelEvent* event) { event->ignore(); }

QRect DatePicker::buttonRect() const {
    const int side = qMin(kButtonWidth * qRound(densityOf(this)) / 96, width() / 3);
    return {width() - 1 - side, 1, side, height() - 2};
}

QRect DatePicker::sectionRect(DateSection section) const {
    const QFontMetrics metrics = fontMetrics();
    int left = kDateMargin;
    for (const DateSection each : kSections) {
        const int width = metrics.horizontalAdvance(m_sections.text(each));
        if (each == section) return {left, (height() - metrics.height()) / 2, width, metrics.height()};
        left += width + metrics.horizontalAdvance(u'/');
    }
    return {};
}

void DatePicker::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    const bool isLive = isOwnEnabled();
    const QColor colour = textColour(kBlack);
    painter.fillRect(rect(), isLive ? back(kWhite) : QColor::fromRgb(kFace));
    painter.setClipRect(rect().adjusted(1, 1, -1 - buttonRect().width(), -1));
    for (const DateSection section : kSections) {
        const QRect place = sectionRect(section);
        const bool isMarked = hasFocus() && section == m_sections.section();
        if (isMarked) painter.fillRect(place, QColor::fromRgb(kHighlight));
        painter.setPen(isMarked ? QColor::fromRgb(kWhite) : colour);
        const int flags = Qt::AlignLeft | Qt::AlignVCenter | Qt::TextSingleLine | Qt::TextDontClip;
        painter.drawText(place, flags, m_sections.text(section));
        painter.setPen(colour);
        if (section != DateSection::year) painter.drawText(place.translated(place.width(), 0), flags, u"/"_s);
    }
    painter.setClipping(false);
    painter.fillRect(buttonRect(), QColor::fromRgb(kFace));
    painter.fillRect(QRect(buttonRect().topLeft(), QSize(1, buttonRect().height())), QColor::fromRgb(kLine));
    drawArrow(painter, buttonRect(), isLive ? QColor::fromRgb(kBlack) : QColor::fromRgb(kDisabledText));
    drawEdge(painter, rect(), hasFocus() ? QColor::fromRgb(kHighlight) : QColor::fromRgb(kLine));
}

}  // namespace velcoran::controls
