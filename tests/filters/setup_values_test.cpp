#include "filters/setup_values.h"

#include "base/error.h"
#include "support/test_data.h"

#include <gtest/gtest.h>

namespace velcoran::filters {

using namespace Qt::StringLiterals;

TEST(YearOf, convertsLikeTheSixteenBitConversion) {
    const struct {
        std::optional<QString> text;
        std::int16_t year;
    } cases[] = {{u"2026"_s, 2026}, {u" 2026 "_s, 2026},   {u"2026.00"_s, 2026}, {u"2.5"_s, 2},
                 {u"3.5"_s, 4},     {u"-32768"_s, -32768}, {u"32767.4"_s, 32767}};
    for (const auto& one : cases) EXPECT_EQ(yearOf(one.text), one.year) << one.text->toStdString();
}

TEST(YearOf, refusesWhatIsNoYear) {
    const struct {
        std::optional<QString> text;
        int number;
    } cases[] = {{std::nullopt, 94}, {u"an"_s, 13}, {QString(), 13}, {u"nan"_s, 13}, {u"32768"_s, 6}, {u"-1e9"_s, 6}};
    for (const auto& one : cases) {
        try {
            (void)yearOf(one.text);
            ADD_FAILURE() << one.text.value_or(u"null"_s).toStdString();
        } catch (const base::Error& error) {
            EXPECT_EQ(error.number(), one.number);
        }
    }
}

TEST(PeriodOf, followsYearAndWorkingDate) {
    const QDate first(2003, 1, 1);
    const QDate last(2004, 1, 31);
    const struct {
        QDate workingDate, from, to;
    } cases[] = {
        {{2003, 7, 15}, {2003, 7, 1}, {2003, 7, 15}},
        {{2004, 1, 20}, {2003, 1, 1}, {2004, 1, 20}},
        {{2004, 3, 1}, {2003, 3, 1}, first},
        {{2004, 1, 31}, {2003, 1, 1}, last},
        {{2004, 2, 1}, {2003, 2, 1}, first},
        {{2002, 12, 31}, {2003, 12, 1}, first},
        {first, first, first},
    };
    for (const auto& one : cases) EXPECT_EQ(periodOf(2003, one.workingDate), (Period{first, last, one.from, one.to}));
}

TEST(PeriodOf, refusesYearsWithoutAPeriod) {
    const struct {
        std::int16_t year;
        int number;
    } cases[] = {{32767, 6}, {32766, 5}, {9999, 5}, {1752, 5}, {0, 5}, {-1, 5}, {-32768, 5}};
    for (const auto& one : cases) {
        try {
            (void)periodOf(one.year, QDate(2003, 7, 15));
            ADD_FAILURE() << one.year;
        } catch (const base::Error& error) {
            EXPECT_EQ(error.number(), one.number) << one.year;
        }
    }
    EXPECT_EQ(periodOf(1753, QDate(2003, 7, 15)).minimum, QDate(1753, 1, 1));
    EXPECT_EQ(periodOf(9998, QDate(2003, 7, 15)).maximum, QDate(9999, 1, 31));
}

}  // namespace velcoran::filters
