#include "lookup/lookup_request.h"

#include "filters/statement_cases.h"
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
