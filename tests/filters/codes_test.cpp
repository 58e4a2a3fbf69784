#include "filters/codes.h"

#include "filters/fragments.h"
#include "support/test_data.h"

#include <gtest/gtest.h>

namespace velcoran::filters {
namespace {

using namespace Qt::StringLiterals;

TEST(Categories, expressionTranslatesEveryCode) {
    EXPECT_EQ(categoryExpression(),
              u"CASE WHEN [TipuriProduse].[Fel]=0 THEN 'Materiale Stocate cu NIR' WHEN [TipuriProduse].[Fel]=1 THEN "
              u"'Materiale Stocate fara NIR' WHEN [TipuriProduse].[Fel]=2 THEN 'Materiale Nestocate' WHEN "
              u"[TipuriProduse].[Fel]=3 THEN 'Produse Finite' WHEN [TipuriProduse].[Fel]=4 THEN 'Produse Finite in "
              u"Consignatie' WHEN [TipuriProduse].[Fel]=5 THEN 'Servicii' WHEN [TipuriProduse].[Fel]=6 THEN 'Alte "
              u"Cheltuieli' WHEN [TipuriProduse].[Fel]=7 THEN 'Mijloace Fixe' WHEN [TipuriProduse].[Fel]=8 THEN "
              u"'Produse in Lohn' END"_s);
}

TEST(Categories, listsFollowTheExactReportKind) {
    const QStringList import{
        u""_s, u"Produse Finite"_s, u"Servicii"_s, u"Alte Cheltuieli"_s, u"Mijloace Fixe"_s, u"Produse in Lohn"_s};
    const QStringList exported{u""_s,         u"Produse Finite"_s, u"Produse Finite in Consignatie"_s,
                               u"Servicii"_s, u"Mijloace Fixe"_s,  u"Produse in Lohn"_s};
    EXPECT_EQ(categoryEntries(ReportKind::Import), import);
    EXPECT_EQ(categoryEntries(ReportKind::Export), exported);
    EXPECT_EQ(categoryEntries(reportKindOf(u"import")), QStringList{u""_s});
    // Each entry must be known to the report's filter.
    for (const QString& entry : import.mid(1) + exported.mid(1)) EXPECT_TRUE(categoryCode(entry).has_value());
    EXPECT_FALSE(categoryCode(u"servicii").has_value());
    EXPECT_FALSE(categoryCode(u"").has_value());
}

TEST(Presence, trimsOrdinaryBlanksAlone) {
    EXPECT_FALSE(isPresent(u""));
    EXPECT_FALSE(isPresent(u"   "));
    EXPECT_TRUE(isPresent(u" a "));
    EXPECT_TRUE(isPresent(u"\t"));
    EXPECT_TRUE(isPresent(u"\u00A0"));
}

}  // namespace
}  // namespace velcoran::filters
