#include "controls/input/date_sections.h"

#include "support/test_data.h"

#include <QLocale>

#include <gtest/gtest.h>

using namespace Qt::StringLiterals;

namespace velcoran::controls {

TEST(DateSections, monthNamesAreThoseOfTheLocale) {
    const QLocale romanian(QLocale::Romanian, QLocale::Romania);
    for (int month = 1; month <= 12; ++month)
        EXPECT_EQ(DateSections::monthName(month), romanian.monthName(month, QLocale::ShortFormat));
}

// < and > move between sections, + and - step, ! finishes, ~ takes a typed character back; the rest is typed.
TEST(DateSections, keysChangeTheDateWithinItsBounds) {
    const struct {
        const char* name;
        QDate start;
        const char16_t* keys;
        QDate value;
        const char16_t* shown;
    } cases[] = {
        {"two digits make a day", {2026, 3, 1}, u"17", {2026, 3, 17}, u"17/mar./26"},
        {"one digit stands as typed", {2026, 3, 10}, u"2", {2026, 3, 2}, u"2/mar./26"},
        {"and is a day when finished", {2026, 3, 10}, u"2!", {2026, 3, 2}, u"02/mar./26"},
        {"a day that the month lacks is dropped", {2026, 2, 10}, u"31", {2026, 2, 3}, u"03/feb./26"},
        {"a month by number", {2026, 3, 1}, u">12", {2026, 12, 1}, u"01/dec./26"},
        {"a short month cuts the day", {2026, 3, 31}, u">4", {2026, 4, 30}, u"30/apr./26"},
        {"a month by letters", {2026, 3, 1}, u">nov", {2026, 11, 1}, u"01/nov./26"},
        {"letters that fit two months wait", {2026, 3, 1}, u">iu", {2026, 3, 1}, u"01/iu/26"},
        {"and are taken when they fit one", {2026, 3, 1}, u">iul", {2026, 7, 1}, u"01/iul./26"},
        {"or dropped when left", {2026, 3, 1}, u">iu>", {2026, 3, 1}, u"01/mar./26"},
        {"a letter that goes on with no name begins one", {2026, 3, 1}, u">nd", {2026, 12, 1}, u"01/dec./26"},
        {"letters are no days", {2026, 3, 1}, u"x", {2026, 3, 1}, u"01/mar./26"},
        {"two digits of a year within the bounds", {2026, 1, 15}, u">>27", {2027, 1, 15}, u"15/ian./27"},
        {"a year out of the bounds is dropped", {2026, 3, 15}, u">>27", {2026, 3, 15}, u"15/mar./26"},
        {"four digits end at the same year", {2026, 1, 15}, u">>2027", {2027, 1, 15}, u"15/ian./27"},
        {"one digit of a year waits", {2026, 1, 15}, u">>2", {2026, 1, 15}, u"15/ian./2"},
        {"and can be taken back", {2026, 1, 15}, u">>2~", {2026, 1, 15}, u"15/ian./26"},
        {"the day turns over", {2026, 4, 30}, u"+", {2026, 4, 1}, u"01/apr./26"},
        {"and back", {2026, 4, 1}, u"-", {2026, 4, 30}, u"30/apr./26"},
        {"the month turns over", {2026, 12, 31}, u">+", {2026, 1, 31}, u"31/ian./26"},
        {"and cuts the day", {2026, 1, 31}, u">+", {2026, 2, 28}, u"28/feb./26"},
        {"no step leaves the bounds", {2026, 3, 1}, u">>+", {2026, 3, 1}, u"01/mar./26"},
        {"a step of the year", {2026, 1, 20}, u">>+", {2027, 1, 20}, u"20/ian./27"},
        {"the sections end at both sides", {2026, 3, 1}, u"<<>>>>-<<<+", {2026, 3, 2}, u"02/mar./26"},
    };
    for (const auto& row : cases) {
        SCOPED_TRACE(row.name);
        DateSections sections;
        sections.setBounds({2026, 1, 1}, {2027, 1, 31});
        ASSERT_TRUE(sections.setValue(row.start));
        for (const QChar key : QString::fromUtf16(row.keys)) {
            if (key == u'<' || key == u'>')
                sections.moveSection(key == u'<' ? -1 : 1);
            else if (key == u'+' || key == u'-')
                sections.step(key == u'+' ? 1 : -1);
            else if (key == u'!')
                sections.finishTyping();
            else if (key == u'~')
                sections.removeTyped();
            else
                sections.type(key);
        }
        EXPECT_EQ(sections.value(), row.value);
        EXPECT_EQ(sections.shown(), QString::fromUtf16(row.shown));
    }
}

TEST(DateSections, theCenturyIsThatOfTheBounds) {
    DateSections sections;
    sections.setBounds({1998, 1, 1}, {1999, 1, 31});
    sections.setValue({1998, 1, 15});
    sections.setSection(DateSection::year);
    sections.type(u'9');
    sections.type(u'9');
    EXPECT_EQ(sections.value(), QDate(1999, 1, 15));
}

TEST(DateSections, boundsMoveTheValueToTheNearer) {
    DateSections sections;
    sections.setBounds({2026, 1, 1}, {2027, 1, 31});
    EXPECT_EQ(sections.value(), QDate(2026, 1, 1));
    EXPECT_FALSE(sections.setValue({2027, 2, 1}));
    EXPECT_FALSE(sections.setValue({}));
    EXPECT_EQ(sections.value(), QDate(2026, 1, 1));
}

}  // namespace velcoran::controls
