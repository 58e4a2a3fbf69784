#include "db/row_filter.h"

#include "base/error.h"
#include "support/test_data.h"

#include <gtest/gtest.h>

namespace velcoran::db {
namespace {

using namespace Qt::StringLiterals;

struct MatchCase {
    QStringView pattern;
    QStringView value;
    bool passes;
};

TEST(RowFilter, matchesValues) {
    constexpr MatchCase kCases[] = {
        {u"ab%", u"ABC", true},
        {u"ab%", u"ab", true},
        {u"ab%", u"a", false},
        {u"ab", u"ab", true},
        {u"ab", u"abc", false},
        {u"%b%", u"abc", true},
        {u"%c", u"abc", true},
        {u"%b", u"abc", false},
        {u"%", u"", true},
        {u"%%", u"x", true},
        {u"", u"", true},
        {u"", u"x", false},
        {u"șAn%", u"ȘANTIER", true},
        {u"sAn%", u"ȘANTIER", false},
        {u"ÎNCĂ%", u"încărcător", true},
        {u"%\U00010400x", u"a\U00010428X", true},  // a letter of two units
        {u"\U00010401%", u"\U00010428", false},
        // only "%" at an end stands for other characters
        {u"a_c%", u"abc", false},
        {u"a_c%", u"A_Cd", true},
        {u"a[b]%", u"ab", false},
        {u"a[b]%", u"a[b]c", true},
        {u"a%c%", u"abc", false},
        {u"a%c%", u"a%cd", true},
    };
    for (const MatchCase& one : kCases) {
        const auto filter = RowFilter::parse(u"[Grupa Produs] Like '"_s + one.pattern.toString() + u'\'');
        EXPECT_EQ(filter.matches(one.value), one.passes)
            << one.pattern.toString().toStdString() << " on " << one.value.toString().toStdString();
    }
}

TEST(RowFilter, readsColumnNames) {
    EXPECT_EQ(RowFilter::parse(u"[Grupa Produs] Like 'a%'"_s).column, u"Grupa Produs"_s);
    EXPECT_EQ(RowFilter::parse(u"  Descriere  LIKE 'a%' "_s).column, u"Descriere"_s);
    EXPECT_EQ(RowFilter::parse(u"[x]like'a%'"_s).column, u"x"_s);
}

TEST(RowFilter, refusesWhatIsNoFilter) {
    for (const QString& text : {
             u"[Denumire] Like 'a'b%'"_s,
             u"[Denumire] Like 'a''b%'"_s,
             u"[Denumire] Like ''%'"_s,
             u"[Denu]mire] Like 'a%'"_s,
             u"[] Like 'a%'"_s,
             u"Denumire Produs Like 'a%'"_s,
             u"[Denumire] = 'a'"_s,
             u"[Denumire] Like 'a%' AND 1=1"_s,
             u"[Denumire] Like a%"_s,
             u"xlike 'a%'"_s,
             u" "_s,
         }) {
        try {
            static_cast<void>(RowFilter::parse(text));
            ADD_FAILURE() << text.toStdString();
        } catch (const base::Error& error) {
            EXPECT_EQ(error.number(), base::kInvalidProcedureCall);
        }
    }
}

}  // namespace
}  // namespace velcoran::db
