#include "report/hand_over.h"

#include "report/period.h"
#include "support/test_data.h"

#include <gtest/gtest.h>

namespace velcoran::report {
namespace {

using namespace Qt::StringLiterals;
using filters::FilterState;

FilterState stateOf(const QString& kind, const QString& entry, bool isTotal) {
    FilterState state;
    state.sTipRaport = kind;
    state.cmbTipRaport = entry;
    state.chkTotale = isTotal;
    state.deLaData = QDate(2003, 7, 1);
    state.laData = QDate(2003, 7, 31);
    return state;
}

struct PlanCase {
    QString kind;
    QString entry;
    bool isTotal;
    QString definition;
    QList<TextReplacement> presentationTexts;
    QList<TextReplacement> titleTexts;
    int option;
};

TEST(HandOver, followsListKindAndTotals) {
    const QList<TextReplacement> headings{
        {u"Text2"_s, u"COD\r\nCLIENT"_s}, {u"Text3"_s, u"DENUMIRE\r\nCLIENT"_s}, {u"Text6"_s, u"CLIENT:"_s}};
    const QList<TextReplacement> dayHeading{{u"Text9"_s, u"CLIENT"_s}};
    const QList<TextReplacement> title{{u"Text1"_s, u"RAPORT FACTURI EXTERNE - CLIENTI"_s}};
    const PlanCase cases[] = {
        {u"Import"_s, u"Furnizor"_s, false, u"CRFacturiImport"_s, {}, {}, 0},
        {u"Export"_s, u"Client"_s, false, u"CRFacturiImport"_s, headings, title, 0},
        {u"Import"_s, u"Zi"_s, false, u"CRFacturiImportDT"_s, {}, {}, 0},
        {u"Export"_s, u"Zi"_s, false, u"CRFacturiImportDT"_s, dayHeading, title, 0},
        {u"Export"_s, u"Zi"_s, true, u"CRFacturiImportDT"_s, dayHeading, title, 1},
        {u"Import"_s, u"Furnizor"_s, true, u"CRFacturiImport"_s, {}, {}, 1},
        {u"import"_s, u"Furnizor"_s, false, u"CRFacturiImport"_s, {}, {}, 0},
        {u"export"_s, u"Zi"_s, false, u"CRFacturiImportDT"_s, {}, {}, 0},
        {u"Import"_s, u"Client"_s, false, u"CRFacturiImport"_s, headings, {}, 0},
    };
    for (const PlanCase& one : cases) {
        const HandOver plan = planHandOver(stateOf(one.kind, one.entry, one.isTotal), u"/");
        const std::string name = (one.kind + u' ' + one.entry).toStdString();
        EXPECT_EQ(plan.definition, one.definition) << name;
        EXPECT_EQ(plan.presentationTexts, one.presentationTexts) << name;
        EXPECT_EQ(plan.titleTexts, one.titleTexts) << name;
        EXPECT_EQ(plan.option, one.option) << name;
        EXPECT_EQ(plan.periodSource, u"'= 01/07/2003 - 31/07/2003 ='") << name;
    }
}

TEST(Period, isWrittenWithTheUsersSeparator) {
    EXPECT_EQ(periodText(stateOf(u"Import"_s, u"Zi"_s, false), u"."), u"= 01.07.2003 - 31.07.2003 =");
    struct Separator {
        const char* locale;
        const char16_t* text;
    };
    const Separator separators[] = {{"C", u"/"},     {"ro_RO", u"."}, {"en_US", u"/"}, {"en_GB", u"/"},
                                    {"nl_NL", u"-"}, {"de_DE", u"."}, {"hu_HU", u"."}, {"ar_EG", u"/"}};
    for (const Separator& one : separators)
        EXPECT_EQ(dateSeparatorOf(QLocale(QString::fromLatin1(one.locale))), QStringView(one.text)) << one.locale;
}

}  // namespace
}  // namespace velcoran::report
