#include "lookup/lookup_request.h"

#include "base/error.h"
#include "filters/statement_cases.h"
#include "filters/statement_database.h"
#include "support/test_data.h"

#include <gtest/gtest.h>

namespace velcoran::lookup {
namespace {

using namespace Qt::StringLiterals;
using filters::FilterState;
using filters::LookupField;

TEST(LookupStatement, isTheTypedTextLetterByLetter) {
    const auto cases = tests::readStatementCases(u"lookups.txt"_s);
    EXPECT_GE(cases.size(), 40U);
    for (const tests::StatementCase& one : cases) {
        ASSERT_TRUE(one.lookup.has_value()) << one.name.toStdString();
        EXPECT_EQ(buildLookup(*one.lookup, one.state).Sql, one.text) << one.name.toStdString();
    }
}

TEST(LookupStatement, givesTwoColumnsUnlessATextBreaksIt) {
    const tests::StatementDatabase database;
    for (const tests::StatementCase& one : tests::readStatementCases(u"lookups.txt"_s)) {
        // The embedded database has no table of another company.
        const bool isBroken = one.text.contains(u"a'%") || !one.state.sSoc.isEmpty();
        try {
            EXPECT_EQ(database.run(one.text).columns().size(), 2) << one.name.toStdString();
            EXPECT_FALSE(isBroken) << one.name.toStdString();
        } catch (const base::Error& error) {
            EXPECT_TRUE(isBroken) << one.name.toStdString() << ": " << error.what();
        }
    }
}

TEST(LookupStatement, findsWhatItsFiltersLeave) {
    const tests::StatementDatabase database;
    FilterState state;
    state.sTipRaport = u"Import"_s;
    state.fields[LookupField::txtProducator].text = u"Uzina Unu"_s;
    state.codes[filters::CodeVariable::sCodProducator] = u"PR001"_s;
    const auto found = [&](LookupField field, const QString& column) {
        return database.column(buildLookup(field, state).Sql, column);
    };
    EXPECT_EQ(found(LookupField::txtGrupaProdus, u"Grupa Produs"_s), u"G1");
    EXPECT_EQ(found(LookupField::txtCodProdus, u"Cod Produs"_s), u"P1 P2 T1");
    EXPECT_EQ(found(LookupField::txtCodClient, u"Denumire Furnizor"_s), u"ALFA TRADE SRL");
    EXPECT_EQ(found(LookupField::txtTipProdus, u"Categorie Produs"_s), u"Produse Finite");
    state.fields[LookupField::txtCodProdus].text = u"surub/"_s;
    EXPECT_EQ(found(LookupField::txtCodProdus, u"Cod Produs"_s), u"P1 P2");
    state.fields[LookupField::txtCodProdus].text = u"surub"_s;
    EXPECT_EQ(found(LookupField::txtCodProdus, u"Cod Produs"_s), u"");
}

struct WordsCase {
    LookupField field;
    QString tag;
    QString caption;
    QString supplierCaption;
};

TEST(LookupWords, tagsAreFixedAndCaptionsFollowTheKind) {
    const WordsCase cases[] = {
        {LookupField::txtTipProdus, u"Tip Produs"_s, u"Tipuri Produse"_s, u"Tipuri Produse"_s},
        {LookupField::txtGrupaProdus, u"Grupa Produs"_s, u"Grupa Produs"_s, u"Grupa Produs"_s},
        {LookupField::txtSubGrupaProdus, u"Subgrupa Produs"_s, u"Subgrupa Produs"_s, u"Subgrupa Produs"_s},
        {LookupField::txtCodProdus, u"Coduri Produse"_s, u"Coduri Produse"_s, u"Coduri Produse"_s},
        {LookupField::txtProducator, u"Producatori"_s, u"Producatori"_s, u"Producatori"_s},
        {LookupField::txtTipClient, u"Tip Client"_s, u"Tip Client"_s, u"Tip Furnizor"_s},
        {LookupField::txtCatClient, u"Categorie Client"_s, u"Categorie Client"_s, u"Categorie Furnizor"_s},
        {LookupField::txtCodClient, u"Clienti"_s, u"Clienti"_s, u"Furnizori"_s},
        {LookupField::txtCodAgent, u"Agenti"_s, u"Agenti"_s, u"Agenti"_s},
    };
    FilterState state;
    for (const WordsCase& one : cases) {
        state.sTipRaport = u"Import"_s;
        EXPECT_EQ(buildLookup(one.field, state).Caption, one.supplierCaption);
        state.sTipRaport = u"import"_s;
        EXPECT_EQ(buildLookup(one.field, state).Caption, one.caption);
        EXPECT_EQ(buildLookup(one.field, state).Tag, one.tag);
    }
}

}  // namespace
}  // namespace velcoran::lookup
