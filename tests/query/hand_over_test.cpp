#include "query/hand_over.h"

#include "base/error.h"
#include "db/command.h"
#include "filters/statement_database.h"
#include "query/filters_in_force.h"
#include "query/period.h"
#include "query/request.h"
#include "query/statement.h"
#include "report/layout/document.h"
#include "report/report.h"
#include "support/test_data.h"

#include <gtest/gtest.h>

namespace velcoran::query {
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
    bool isTotalsAlone;
};

TEST(HandOver, followsListKindAndTotals) {
    const QList<TextReplacement> headings{
        {u"Text2"_s, u"COD\r\nCLIENT"_s}, {u"Text3"_s, u"DENUMIRE\r\nCLIENT"_s}, {u"Text6"_s, u"CLIENT:"_s}};
    const QList<TextReplacement> dayHeading{{u"Text9"_s, u"CLIENT"_s}};
    const QList<TextReplacement> title{{u"Text1"_s, u"RAPORT FACTURI EXTERNE - CLIENTI"_s}};
    const PlanCase cases[] = {
        {u"Import"_s, u"Furnizor"_s, false, u"CRFacturiImport"_s, {}, {}, false},
        {u"Export"_s, u"Client"_s, false, u"CRFacturiImport"_s, headings, title, false},
        {u"Import"_s, u"Zi"_s, false, u"CRFacturiImportDT"_s, {}, {}, false},
        {u"Export"_s, u"Zi"_s, false, u"CRFacturiImportDT"_s, dayHeading, title, false},
        {u"Export"_s, u"Zi"_s, true, u"CRFacturiImportDT"_s, dayHeading, title, true},
        {u"Import"_s, u"Furnizor"_s, true, u"CRFacturiImport"_s, {}, {}, true},
        {u"import"_s, u"Furnizor"_s, false, u"CRFacturiImport"_s, {}, {}, false},
        {u"export"_s, u"Zi"_s, false, u"CRFacturiImportDT"_s, {}, {}, false},
        {u"Import"_s, u"Client"_s, false, u"CRFacturiImport"_s, headings, {}, false},
    };
    for (const PlanCase& one : cases) {
        const HandOver plan = planHandOver(stateOf(one.kind, one.entry, one.isTotal), u"/");
        const std::string name = (one.kind + u' ' + one.entry).toStdString();
        EXPECT_EQ(plan.definition, one.definition) << name;
        EXPECT_EQ(plan.presentationTexts, one.presentationTexts) << name;
        EXPECT_EQ(plan.titleTexts, one.titleTexts) << name;
        EXPECT_EQ(plan.request.isClient, !one.presentationTexts.isEmpty())
            << name << ": the columns follow their heading";
        EXPECT_EQ(plan.request.isTotalsAlone, one.isTotalsAlone) << name;
        EXPECT_EQ(plan.periodSource, u"'= 01/07/2003 - 31/07/2003 ='") << name;
    }
}

class HandOverRun : public testing::Test {
protected:
    HandOverRun() { state.chkLohn = true; }

    void run(const QString& sql) {
        const db::Command cmdRaport{database.connection(), db::kCommandText, sql};
        handOver(planHandOver(state, u"/"), database.connection(), cmdRaport, rptFacturi);
    }

    FilterState state = stateOf(u"Export"_s, u"Client"_s, true);
    tests::StatementDatabase database;
    std::shared_ptr<report::Report> rptFacturi;
};

TEST_F(HandOverRun, preparesTheReportForTheViewer) {
    run(assembleStatement(state, buildRequest(state)));
    EXPECT_EQ(rptFacturi->name(), u"CRFacturiImport");
    EXPECT_EQ(rptFacturi->text(u"Text1"_s), u"RAPORT FACTURI EXTERNE - CLIENTI");
    EXPECT_EQ(rptFacturi->text(u"Text3"_s), u"DENUMIRE\r\nCLIENT");
    EXPECT_EQ(rptFacturi->snapshot().unboundTexts.value(u"UnboundString6"_s), u"= 01/07/2003 - 31/07/2003 =");
    EXPECT_TRUE(rptFacturi->request().isTotalsAlone);
    EXPECT_TRUE(rptFacturi->request().isClient);
    EXPECT_EQ(rptFacturi->request().filters, QStringList{u"Inclusiv exporturile temporare"_s});
}

TEST_F(HandOverRun, keepsAHalfPreparedReportWhenTheStatementFails) {
    EXPECT_THROW(run(u"SELECT nothing FROM nowhere"_s), base::Error);
    ASSERT_NE(rptFacturi, nullptr);
    EXPECT_EQ(rptFacturi->text(u"Text6"_s), u"CLIENT:");
    EXPECT_NE(rptFacturi->text(u"Text1"_s), u"RAPORT FACTURI EXTERNE - CLIENTI")
        << "the title comes after the statement";
    EXPECT_FALSE(rptFacturi->request().isTotalsAlone);
}

TEST(FiltersInForce, areThoseThatTheStatementHas) {
    FilterState state = stateOf(u"Import"_s, u"Furnizor"_s, false);
    EXPECT_EQ(filtersInForce(state), QStringList());
    // Typed and never picked: the statement goes by the producer's code alone.
    state.fields[filters::LookupField::txtProducator].text = u"ALFA"_s;
    EXPECT_EQ(filtersInForce(state), QStringList());
    state.codes[filters::CodeVariable::sCodProducator] = u"P1"_s;
    state.cmbCategorie = u"Servicii"_s;
    state.cmbCategorieIndex = 0;
    EXPECT_EQ(filtersInForce(state), QStringList{u"Producator: ALFA (P1)"_s});
    state.cmbCategorieIndex = 1;
    state.fields[filters::LookupField::txtGrupaProdus].text = u"ALIM"_s;
    state.fields[filters::LookupField::txtTipClient].text = u"UE"_s;
    state.fields[filters::LookupField::txtCodClient].text = u"ȘTIUCA SRL "_s;
    state.codes[filters::CodeVariable::sCodClient] = u"F0003"_s;
    state.depozite = {u"1 - Central"_s, u"4 - Vamă"_s};
    state.chkLohn = true;
    const QStringList lines{
        u"Producator: ALFA (P1)"_s,
        u"Categorie de Produse: Servicii"_s,
        u"Grupa de Produse: ALIM"_s,
        u"Tip Furnizor: UE"_s,
        u"Denumire Furnizor: ȘTIUCA SRL (F0003)"_s,
        u"Depozite: 1 - Central, 4 - Vamă"_s,
        u"Inclusiv importurile temporare"_s,
    };
    EXPECT_EQ(filtersInForce(state), lines);
    // The statement of a total report joins no products.
    state.chkTotale = true;
    EXPECT_EQ(filtersInForce(state), lines.mid(3));
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
}  // namespace velcoran::query
