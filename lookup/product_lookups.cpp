#include "builders.h"

#include "filters/codes.h"
#include "filters/fragments.h"

namespace velcoran::lookup {

using filters::categoryExpression;
using filters::FilterState;
using filters::joinFragments;
using filters::LookupField;

namespace {

constexpr QStringView kQuote = u"'";
constexpr QStringView kFrom = u" FROM ";

constexpr QStringView kProductJoin =
    u" FROM GrupeProdus INNER JOIN (TipuriProduse INNER JOIN (Subgrupeprodus INNER JOIN CoduriProdus ON "
    u"Subgrupeprodus.[Subgrupa Produs] = CoduriProdus.[Subgrupa Produs]) ON TipuriProduse.[Tip Produs] = "
    u"CoduriProdus.[Tip Produs]) ON GrupeProdus.[Grupa Produs] = Subgrupeprodus.[Grupa Produs] ";
constexpr QStringView kTypeCondition = u" AND TipuriProduse.[Tip Produs]='";
constexpr QStringView kGroupCondition = u" AND GrupeProdus.[Grupa Produs]='";
constexpr QStringView kSubgroupCondition = u" AND Subgrupeprodus.[Subgrupa Produs]='";
constexpr QStringView kProducerCondition = u" and CoduriProdus.p='";
constexpr QStringView kCategoryAnd = u" AND ";
constexpr QStringView kCategoryEquals = u" = '";

constexpr QStringView kTypeSelectSearch = u" SELECT [TipuriProduse].[Tip Produs], ";
constexpr QStringView kTypeSelectAll = u" SELECT [TipuriProduse].[Tip Produs] , ";
constexpr QStringView kTypeSelectEnd = u" as [Categorie Produs] ";
constexpr QStringView kTypeJoin = u"[TipuriProduse] inner join ";
constexpr QStringView kTypeOnSearch = u"CoduriProdus on CoduriProdus.[Tip Produs]=[TipuriProduse].[Tip Produs]  ";
constexpr QStringView kTypeOnAll = u"CoduriProdus on CoduriProdus.[Tip Produs]=[TipuriProduse].[Tip Produs] ";
constexpr QStringView kTypeLike = u" WHERE [TipuriProduse].[Tip Produs] Like '";
constexpr QStringView kTypeWhere = u" WHERE ";
constexpr QStringView kTypeWhereAll = u" WHERE TipuriProduse.fel in (0,1,3,4,7,8)";
constexpr QStringView kTypeGroupBy = u" group by [TipuriProduse].[Tip Produs], ";
constexpr QStringView kTypeGroupByEnd = u" ";
constexpr QStringView kTypeOrderBy = u" ORDER BY  [TipuriProduse].[Tip Produs] ";

constexpr QStringView kGroupSelect = u" SELECT Grupeprodus.[Grupa Produs], Grupeprodus.Descriere ";
constexpr QStringView kGroupLike = u" WHERE GrupeProdus.[Grupa Produs] Like '";
constexpr QStringView kGroupAll = u" WHERE 1=1 ";
constexpr QStringView kGroupGroupBy = u"  GROUP BY Grupeprodus.[Grupa Produs], Grupeprodus.Descriere ";
constexpr QStringView kGroupOrderBy = u" ORDER BY  GrupeProdus.[Grupa Produs] ";

constexpr QStringView kSubgroupSelect = u" SELECT SubGrupeprodus.[SubGrupa Produs], SubGrupeprodus.Descriere ";
constexpr QStringView kSubgroupWhere = u" WHERE 1 = 1 ";
constexpr QStringView kSubgroupLike = u" AND (Subgrupeprodus.[Subgrupa Produs] Like '";
constexpr QStringView kSubgroupLikeEnd = u"')";
constexpr QStringView kSubgroupGroupBy =
    u" GROUP BY Subgrupeprodus.[Subgrupa Produs], Subgrupeprodus.Descriere ORDER BY "
    u"Subgrupeprodus.[Subgrupa Produs] ;";

constexpr QStringView kProductSelect = u" SELECT CoduriProdus.[Cod Produs], CoduriProdus.[Denumire Produs] ";
constexpr QStringView kProductWhere = u" WHERE 1=1 ";
constexpr QStringView kProductLike = u" AND CoduriProdus.[Denumire Produs] Like '";
constexpr QStringView kProductGroupBy =
    u" GROUP BY CoduriProdus.[Cod Produs], CoduriProdus.[Denumire Produs] ORDER BY CoduriProdus.[Cod Produs];";

constexpr QStringView kProducerSelect = u" SELECT p as Cod, Denumire  ";
constexpr QStringView kProducerTable = u"CPP ";
constexpr QStringView kProducerLike = u" WHERE Denumire Like '";
constexpr QStringView kProducerOrderBy = u" ORDER BY p ";

/// What a report kind narrows the product lookups to while no category is chosen; a kind that is not here to nothing.
/// The two "Import" lists differ, and both are wanted.
struct KindRow {
    QStringView reportKind;
    QStringView typeLookup;
    QStringView otherLookups;
};
constexpr KindRow kKindRows[] = {
    {u"Achizitii", u"", u""},
    {u"Vanzari", u"", u""},
    {u"Profit", u" AND TipuriProduse.fel in (3,4) ", u" AND TipuriProduse.fel in (3,4) "},
    {u"NIR", u" AND TipuriProduse.fel in (0,3,4,7) ", u" AND TipuriProduse.fel in (0,3,4,7) "},
    {u"Import", u" AND TipuriProduse.fel in (2,3,5,6,7,8)", u" AND TipuriProduse.fel in (3,5,6,7)"},
    {u"Export", u" AND TipuriProduse.fel in (3,4,5,7,8)", u" AND TipuriProduse.fel in (3,4,5,7,8)"},
};

/// A fragment that opens a quote, a value and the quote's end; nothing while the field that decides is empty.
QString quotedUnlessEmpty(QStringView fragment, const QString& deciding, const QString& value) {
    if (deciding.isEmpty()) return {};
    return joinFragments({fragment, value, kQuote});
}

QString fieldCondition(QStringView fragment, const FilterState& state, LookupField field) {
    return quotedUnlessEmpty(fragment, state.text(field), state.text(field));
}

/// The producer's field decides, its picked code is the value.
QString producerCondition(const FilterState& state) {
    return quotedUnlessEmpty(kProducerCondition, state.text(LookupField::txtProducator), state.sCodProducator);
}

bool hasCategory(const FilterState& state) { return state.cmbCategorieIndex != 0; }

QString categoryOrKind(const FilterState& state, QStringView KindRow::*lookup) {
    if (hasCategory(state))
        return joinFragments({kCategoryAnd, categoryExpression(), kCategoryEquals, state.cmbCategorie, kQuote});
    for (const KindRow& row : kKindRows) {
        if (row.reportKind == state.sTipRaport) return (row.*lookup).toString();
    }
    return {};
}

QString typeSearch(const FilterState& state) {
    return joinFragments({kTypeSelectSearch, categoryExpression(), kTypeSelectEnd, kFrom, state.sSoc, kTypeJoin,
                          state.sSoc, kTypeOnSearch, kTypeLike, openPattern(state.text(LookupField::txtTipProdus)),
                          kQuote, categoryOrKind(state, &KindRow::typeLookup)});
}

/// Without a text the report kind plays no part.
QString typeList(const FilterState& state) {
    QString sql = joinFragments(
        {kTypeSelectAll, categoryExpression(), kTypeSelectEnd, kFrom, state.sSoc, kTypeJoin, state.sSoc, kTypeOnAll});
    if (!hasCategory(state)) return sql += kTypeWhereAll;
    return sql += joinFragments({kTypeWhere, categoryExpression(), kCategoryEquals, state.cmbCategorie, kQuote});
}

}  // namespace

QString productTypeStatement(const FilterState& state) {
    const bool isSearch = !state.text(LookupField::txtTipProdus).isEmpty();
    return joinFragments({isSearch ? typeSearch(state) : typeList(state), producerCondition(state), kTypeGroupBy,
                          categoryExpression(), kTypeGroupByEnd, kTypeOrderBy});
}

QString productGroupStatement(const FilterState& state) {
    const QString& text = state.text(LookupField::txtGrupaProdus);
    const QString search =
        text.isEmpty() ? kGroupAll.toString() : joinFragments({kGroupLike, openPattern(text), kQuote});
    return joinFragments(
        {kGroupSelect, kProductJoin, search, fieldCondition(kTypeCondition, state, LookupField::txtTipProdus),
         categoryOrKind(state, &KindRow::otherLookups), producerCondition(state), kGroupGroupBy, kGroupOrderBy});
}

QString productSubgroupStatement(const FilterState& state) {
    const QString& text = state.text(LookupField::txtSubGrupaProdus);
    const QString search =
        text.isEmpty() ? QString() : joinFragments({kSubgroupLike, closedPattern(text), kSubgroupLikeEnd});
    return joinFragments({kSubgroupSelect, kProductJoin, kSubgroupWhere,
                          fieldCondition(kGroupCondition, state, LookupField::txtGrupaProdus),
                          fieldCondition(kTypeCondition, state, LookupField::txtTipProdus),
                          categoryOrKind(state, &KindRow::otherLookups), producerCondition(state), search,
                          kSubgroupGroupBy});
}

// The producer does not narrow this lookup, although it narrows the report: users find a product by its name whoever
// makes it.
QString productStatement(const FilterState& state) {
    const QString& text = state.text(LookupField::txtCodProdus);
    return joinFragments({kProductSelect, kProductJoin, kProductWhere,
                          fieldCondition(kGroupCondition, state, LookupField::txtGrupaProdus),
                          fieldCondition(kSubgroupCondition, state, LookupField::txtSubGrupaProdus),
                          fieldCondition(kTypeCondition, state, LookupField::txtTipProdus),
                          categoryOrKind(state, &KindRow::otherLookups),
                          quotedUnlessEmpty(kProductLike, text, closedPattern(text)), kProductGroupBy});
}

QString producerStatement(const FilterState& state) {
    const QString& text = state.text(LookupField::txtProducator);
    return joinFragments({kProducerSelect, kFrom, state.sSoc, kProducerTable,
                          quotedUnlessEmpty(kProducerLike, text, openPattern(text)), kProducerOrderBy});
}

}  // namespace velcoran::lookup
