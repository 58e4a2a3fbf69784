#pragma once

#include <QDate>
#include <QString>

#include <array>
#include <optional>

namespace velcoran::controls {

enum class DateSection { day, month, year };

/// A date edited by sections, shown as "dd/MMM/yy" with the abbreviated Romanian month name. Pure: no widget.
/// The value never leaves the bounds; what is typed into a section stands as typed until it is complete or the section
/// is left.
class DateSections {
public:
    /// Sets the bounds, both inclusive; the value is brought between them.
    void setBounds(QDate minimum, QDate maximum);
    [[nodiscard]] QDate minimum() const { return m_minimum; }
    [[nodiscard]] QDate maximum() const { return m_maximum; }

    [[nodiscard]] QDate value() const { return m_value; }
    /// @return false outside the bounds or for no date; nothing changes then
    bool setValue(QDate value);

    [[nodiscard]] DateSection section() const { return m_section; }
    /// Goes to a section; what was typed in the old one is taken when it makes a date, dropped otherwise.
    void setSection(DateSection section);
    /// To the section before or after; stays at the ends.
    void moveSection(int step);

    /// One step of the section, down or up; day and month turn over inside their month and year. Nothing happens when
    /// the result is out of bounds. The day is cut to the length of the month.
    void step(int step);
    /// A typed digit, or a letter in the month. @return false when the section cannot take it
    bool type(QChar character);
    /// Drops the last typed character. @return false when nothing was typed
    bool removeTyped();
    /// Takes what was typed when it makes a date within the bounds, drops it otherwise.
    void finishTyping();

    /// Text of a section as shown now, typed characters included.
    [[nodiscard]] QString text(DateSection section) const;
    /// The three texts with "/" between.
    [[nodiscard]] QString shown() const;

    /// "ian." to "dec."; month from 1.
    [[nodiscard]] static QString monthName(int month);

private:
    [[nodiscard]] std::optional<QDate> typedDate() const;
    [[nodiscard]] std::optional<int> typedMonth() const;
    [[nodiscard]] bool isTypedComplete() const;

    QDate m_minimum{1753, 1, 1};
    QDate m_maximum{9999, 12, 31};
    QDate m_value{2000, 1, 1};
    DateSection m_section = DateSection::day;
    QString m_typed;
};

}  // namespace velcoran::controls
