#pragma once

#include "control.h"
#include "controls/input/date_sections.h"
#include "controls/input/second_press.h"

class QCalendarWidget;

namespace velcoran::controls {

/// A date within bounds, shown as "dd/MMM/yy". Left and Right move between day, month and year, Up and Down change the
/// section, digits and month letters are typed; F4, Alt+Down or the button open a calendar.
class DatePicker : public ControlOf<QWidget> {
    Q_OBJECT
    Q_PROPERTY(QVariantMap controlState READ controlState)

public:
    explicit DatePicker(QWidget* parent = nullptr);
    ~DatePicker() override;

    [[nodiscard]] QDate value() const { return m_sections.value(); }
    [[nodiscard]] QDate minimum() const { return m_sections.minimum(); }
    [[nodiscard]] QDate maximum() const { return m_sections.maximum(); }
    /// Both bounds inclusive. A value outside moves to the nearer bound.
    /// @throws Error 5 when a bound is no date or the maximum lies before the minimum
    void setBounds(QDate minimum, QDate maximum);
    /// @throws Error 5 for no date or one outside the bounds
    void setValue(QDate value);
    /// Sets the date as the user does. @return false outside the bounds or when the picker cannot be worked now
    Q_INVOKABLE bool enter(QDate value);
    /// The text on screen.
    [[nodiscard]] QString shown() const { return m_sections.shown(); }

    void openCalendar();
    void closeCalendar();
    [[nodiscard]] bool isOpen() const;

    /// "value", "min", "max" (yyyy-mm-dd), "shown".
    [[nodiscard]] QVariantMap controlState() const override;

signals:
    /// After every change of the value, by the user or by code.
    void valueChanged(QDate value);

protected:
    void keyPressEvent(QKeyEvent* event) override;
    void inputMethodEvent(QInputMethodEvent* event) override;
    void focusOutEvent(QFocusEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void wheelEvent(QWheelEvent* event) override;
    void paintEvent(QPaintEvent* event) override;
    bool eventFilter(QObject* object, QEvent* event) override;

private:
    class CalendarPopup;

    template <class Step>
    void edit(Step step);
    void typeText(const QString& text);
    void pressOutside(const QMouseEvent& press);
    bool pressInCalendar(int key);
    [[nodiscard]] QRect buttonRect() const;
    [[nodiscard]] QRect sectionRect(DateSection section) const;

    DateSections m_sections;
    std::unique_ptr<CalendarPopup> m_popup;
    SecondPressGuard m_secondPress;
    std::shared_ptr<void> m_accessibility;
};

}  // namespace velcoran::controls
