#include "date_sections.h"

using namespace Qt::StringLiterals;

namespace velcoran::controls {

namespace {

// As the Romanian locale abbreviates them; a table, so that the text on screen does not change with Qt.
constexpr std::array<const char16_t*, 12> kMonths = {u"ian.", u"feb.", u"mar.",  u"apr.", u"mai",  u"iun.",
                                                     u"iul.", u"aug.", u"sept.", u"oct.", u"nov.", u"dec."};

constexpr int kMonthCount = 12;

bool isNumber(const QString& text) { return !text.isEmpty() && text.front().isDigit(); }

QDate cutToMonth(int year, int month, int day) {
    const int length = QDate(year, month, 1).daysInMonth();
    return {year, month, qMin(day, length)};
}

/// 1 to count, turning over at the ends.
int turned(int number, int step, int count) { return (number - 1 + step % count + count) % count + 1; }

}  // namespace

QString DateSections::monthName(int month) {
    return QString::fromUtf16(kMonths.at(static_cast<std::size_t>(month - 1)));
}

void DateSections::setBounds(QDate minimum, QDate maximum) {
    m_minimum = minimum;
    m_maximum = maximum;
    m_value = qBound(minimum, m_value, maximum);
    m_typed.clear();
}

bool DateSections::setValue(QDate value) {
    if (!value.isValid() || value < m_minimum || value > m_maximum) return false;
    m_value = value;
    m_typed.clear();
    return true;
}

void DateSections::setSection(DateSection section) {
    finishTyping();
    m_section = section;
}

void DateSections::moveSection(int step) {
    setSection(static_cast<DateSection>(qBound(0, static_cast<int>(m_section) + step, 2)));
}

void DateSections::step(int step) {
    finishTyping();
    QDate next = m_value;
    switch (m_section) {
        case DateSection::day:
            next.setDate(m_value.year(), m_value.month(), turned(m_value.day(), step, m_value.daysInMonth()));
            break;
        case DateSection::month:
            next = cutToMonth(m_value.year(), turned(m_value.month(), step, kMonthCount), m_value.day());
            break;
        case DateSection::year:
            next = cutToMonth(m_value.year() + step, m_value.month(), m_value.day());
            break;
    }
    setValue(next);
}

// The only month whose name starts with the typed letters, or the number.
std::optional<int> DateSections::typedMonth() const {
    if (isNumber(m_typed)) {
        const int number = m_typed.toInt();
        return number >= 1 && number <= kMonthCount ? std::optional(number) : std::nullopt;
    }
    std::optional<int> found;
    for (int month = 1; month <= kMonthCount; ++month) {
        if (!monthName(month).startsWith(m_typed, Qt::CaseInsensitive)) continue;
        if (found) return std::nullopt;
        found = month;
    }
    return found;
}

std::optional<QDate> DateSections::typedDate() const {
    if (m_typed.isEmpty()) return std::nullopt;
    QDate date;
    switch (m_section) {
        case DateSection::day:
            date.setDate(m_value.year(), m_value.month(), m_typed.toInt());
            break;
        case DateSection::month: {
            const std::optional<int> month = typedMonth();
            if (month) date = cutToMonth(m_value.year(), *month, m_value.day());
            break;
        }
        case DateSection::year:
            // Two digits stand for the first year within the bounds that ends with them.
            if (m_typed.size() < 2) break;
            for (int year = m_minimum.year(); year <= m_maximum.year() && !date.isValid(); ++year)
                if (year % 100 == m_typed.toInt()) date = cutToMonth(year, m_value.month(), m_value.day());
            break;
    }
    const bool isTaken = date.isValid() && date >= m_minimum && date <= m_maximum;
    return isTaken ? std::optional(date) : std::nullopt;
}

bool DateSections::isTypedComplete() const {
    if (m_typed.size() >= 2) return isNumber(m_typed);
    if (!isNumber(m_typed)) return false;
    const int digit = m_typed.toInt();
    return (m_section == DateSection::day && digit > 3) || (m_section == DateSection::month && digit > 1);
}

bool DateSections::type(QChar character) {
    const bool isDigit = character >= u'0' && character <= u'9';
    const bool isLetter = m_section == DateSection::month && character.isLetter();
    if (!isDigit && !isLetter) return false;
    if (isDigit != isNumber(m_typed)) m_typed.clear();
    m_typed += character;
    if (isLetter) {
        // Letters go on with the name that was begun, or else begin another one.
        const auto fits = [this] {
            for (int month = 1; month <= kMonthCount; ++month)
                if (monthName(month).startsWith(m_typed, Qt::CaseInsensitive)) return true;
            return false;
        };
        if (!fits()) {
            m_typed = character;
            if (!fits()) {
                m_typed.clear();
                return false;
            }
        }
    }
    const std::optional<QDate> date = typedDate();
    if (date) m_value = *date;
    if (isTypedComplete()) m_typed.clear();
    return true;
}

bool DateSections::removeTyped() {
    if (m_typed.isEmpty()) return false;
    m_typed.chop(1);
    return true;
}

void DateSections::finishTyping() {
    const std::optional<QDate> date = typedDate();
    if (date) m_value = *date;
    m_typed.clear();
}

QString DateSections::text(DateSection section) const {
    const bool isTyping = section == m_section && !m_typed.isEmpty();
    switch (section) {
        case DateSection::day:
            return isTyping ? m_typed : QString::number(m_value.day()).rightJustified(2, u'0');
        case DateSection::month:
            return isTyping && (isNumber(m_typed) || !typedMonth()) ? m_typed : monthName(m_value.month());
        case DateSection::year:
            return isTyping ? m_typed : QString::number(m_value.year() % 100).rightJustified(2, u'0');
    }
    return {};
}

QString DateSections::shown() const {
    return text(DateSection::day) + u'/' + text(DateSection::month) + u'/' + text(DateSection::year);
}

}  // namespace velcoran::controls
