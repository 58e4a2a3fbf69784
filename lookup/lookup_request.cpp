#include "lookup_request.h"

#include "base/enum_table.h"
#include "filters/codes.h"
#include "filters/fragments.h"

namespace velcoran::lookup {

using filters::categoryExpression;
using filters::CodeVariable;
using filters::FilterState;
using filters::joinFragments;
using filters::LookupField;
using filters::ReportKind;

namespace {

// --- patterns --------------------------------------------------------------------------------------------------------

/// Search pattern of a text with "%" for each "/" and nothing behind it: without a "/" the match is exact.
QString closedPattern(const QString& text) { return QString(text).replace(u'/', u'%'); }

/// Search pattern of a text: "%" behind it, unless it places its own wildcards with "/".
QString openPattern(const QString& text) { return text.contains(u'/') ? closedPattern(text) : text + u'%'; }

// --- products --------------------------------------------------------------------------------------------------------

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

/// What a report kind narrows the product lookups to while no category is chosen. The two lists of Import differ, and
/// both are wanted.
struct KindRow {
    ReportKind kind;
    QStringView typeLookup;
    QStringView otherLookups;
};
constexpr base::EnumTable<&KindRow::kind, filters::kReportKindCount> kKindRows{{{
    {ReportKind::Import, u" AND TipuriProduse.fel in (2,3,5,6,7,8)", u" AND TipuriProduse.fel in (3,5,6,7)"},
    {ReportKind::Export, u" AND TipuriProduse.fel in (3,4,5,7,8)", u" AND TipuriProduse.fel in (3,4,5,7,8)"},
    {ReportKind::Achizitii, u"", u""},
    {ReportKind::Vanzari, u"", u""},
    {ReportKind::Profit, u" AND TipuriProduse.fel in (3,4) ", u" AND TipuriProduse.fel in (3,4) "},
    {ReportKind::Nir, u" AND TipuriProduse.fel in (0,3,4,7) ", u" AND TipuriProduse.fel in (0,3,4,7) "},
    {ReportKind::Other, u"", u""},
}}};

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
    return quotedUnlessEmpty(kProducerCondition, state.text(LookupField::txtProducator),
                             state.codes[CodeVariable::sCodProducator]);
}

bool hasCategory(const FilterState& state) { return state.cmbCategorieIndex != 0; }

QString categoryOrKind(const FilterState& state, QStringView KindRow::*lookup) {
    if (hasCategory(state))
        return joinFragments({kCategoryAnd, categoryExpression(), kCategoryEquals, state.cmbCategorie, kQuote});
    return (kKindRows[state.sTipRaport.kind].*lookup).toString();
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

QString producerStatement(const FilterState& state) {
    const QString& text = state.text(LookupField::txtProducator);
    return joinFragments({kProducerSelect, kFrom, state.sSoc, kProducerTable,
                          quotedUnlessEmpty(kProducerLike, text, openPattern(text)), kProducerOrderBy});
}

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

// --- partners --------------------------------------------------------------------------------------------------------

/// A list with a code and a description: searched by its code, narrowed by nothing.
struct ListFragments {
    QStringView search;
    QStringView all;
    QStringView orderBy;
};

constexpr QStringView kListSearchEnd = u"')";

constexpr ListFragments kClientTypes{
    u"SELECT [Tip Client].[Tip Client], [Tip Client].Descriere FROM [Tip Client] WHERE ([Tip Client].[Tip Client] "
    u"Like '",
    u"SELECT [Tip Client].[Tip Client], [Tip Client].Descriere FROM [Tip Client] ",
    u" ORDER BY  [Tip Client].[Tip Client] "};
constexpr ListFragments kSupplierTypes{
    u"SELECT [Tip Furnizor].[Tip Furnizor], [Tip Furnizor].Descriere FROM [Tip Furnizor] WHERE "
    u"([Tip Furnizor].[Tip Furnizor] Like '",
    u"SELECT [Tip Furnizor].[Tip Furnizor], [Tip Furnizor].Descriere FROM [Tip Furnizor] ",
    u" ORDER BY  [Tip Furnizor].[Tip Furnizor] "};
constexpr ListFragments kClientCategories{
    u"SELECT [Categorie Client].[Categorie Client], [Categorie Client].Descriere FROM [Categorie Client] WHERE "
    u"([Categorie Client].[Categorie Client] Like '",
    u"SELECT [Categorie Client].[Categorie Client], [Categorie Client].Descriere FROM [Categorie Client] ",
    u" ORDER BY  [Categorie Client].[Categorie Client] "};
constexpr ListFragments kSupplierCategories{
    u"SELECT [Categorie Furnizor].[Categorie Furnizor], [Categorie Furnizor].Descriere FROM [Categorie Furnizor] WHERE "
    u"([Categorie Furnizor].[Categorie Furnizor] Like '",
    u"SELECT [Categorie Furnizor].[Categorie Furnizor], [Categorie Furnizor].Descriere FROM [Categorie Furnizor] ",
    u" ORDER BY  [Categorie Furnizor].[Categorie Furnizor] "};

/// Clients or suppliers: searched by name, narrowed by type and category, active ones alone.
struct PartnerFragments {
    QStringView type;
    QStringView category;
    QStringView search;
    QStringView searchActive;
    QStringView all;
    QStringView orderBy;
};

constexpr QStringView kPartnerSearchEnd = u" ) ";
constexpr QStringView kPartnerAllEnd = u")";

constexpr PartnerFragments kClients{
    u" AND Magazine.[Tip Client] = '",
    u" AND Magazine.[Categorie Client] = '",
    u"SELECT Magazine.Magazin AS [Cod Client], Magazine.[Denumire Magazin] AS [Denumire Client] FROM Magazine WHERE "
    u"(Magazine.[Denumire Magazin] Like '",
    u"' AND Magazine.Inactiv = 0  ",
    u"SELECT Magazine.Magazin AS [Cod Client], Magazine.[Denumire Magazin] AS [Denumire Client] FROM Magazine WHERE  "
    u"(Magazine.Inactiv = 0 ",
    u" ORDER BY  Magazine.[Denumire Magazin] "};
constexpr PartnerFragments kSuppliers{
    u" AND Furnizori.[Tip Furnizor] = '",
    u" AND Furnizori.[Categorie Furnizor] = '",
    u"SELECT Furnizori.Furnizor AS [Cod Furnizor], Furnizori.[Denumire Furnizor] AS [Denumire Furnizor] FROM Furnizori "
    u"WHERE (Furnizori.[Denumire Furnizor] Like '",
    u"' AND Furnizori.Inactiv = 0  ",
    u"SELECT Furnizori.Furnizor AS [Cod Furnizor], Furnizori.[Denumire Furnizor] AS [Denumire Furnizor] FROM Furnizori "
    u"WHERE  (Furnizori.Inactiv = 0 ",
    u" ORDER BY  Furnizori.[Denumire Furnizor] "};

constexpr QStringView kAgentSearch =
    u"SELECT Agenti.Agent, Agenti.[Denumire Agent] FROM Agenti WHERE (Agenti.[Denumire Agent] Like '";
constexpr QStringView kAgentSearchEnd = u"' AND Agenti.Inactiv = 0) ";
constexpr QStringView kAgentAll = u"SELECT Agenti.Agent, Agenti.[Denumire Agent] FROM Agenti WHERE Agenti.Inactiv = 0 ";
constexpr QStringView kAgentOrderBy = u" ORDER BY Agenti.[Denumire Agent]";

QString listStatement(const ListFragments& fragments, const QString& text) {
    if (text.isEmpty()) return joinFragments({fragments.all, fragments.orderBy});
    return joinFragments({fragments.search, openPattern(text), kListSearchEnd, fragments.orderBy});
}

QString partnerTypeStatement(const FilterState& state) {
    return listStatement(state.isSupplierSide() ? kSupplierTypes : kClientTypes, state.text(LookupField::txtTipClient));
}

QString partnerCategoryStatement(const FilterState& state) {
    return listStatement(state.isSupplierSide() ? kSupplierCategories : kClientCategories,
                         state.text(LookupField::txtCatClient));
}

QString partnerStatement(const FilterState& state) {
    const PartnerFragments& fragments = state.isSupplierSide() ? kSuppliers : kClients;
    const QString& text = state.text(LookupField::txtCodClient);
    const QString narrowed = fieldCondition(fragments.type, state, LookupField::txtTipClient) +
                             fieldCondition(fragments.category, state, LookupField::txtCatClient);
    if (text.isEmpty()) return joinFragments({fragments.all, narrowed, kPartnerAllEnd, fragments.orderBy});
    return joinFragments({fragments.search, closedPattern(text), fragments.searchActive, narrowed, kPartnerSearchEnd,
                          fragments.orderBy});
}

QString agentStatement(const FilterState& state) {
    const QString& text = state.text(LookupField::txtCodAgent);
    if (text.isEmpty()) return joinFragments({kAgentAll, kAgentOrderBy});
    return joinFragments({kAgentSearch, closedPattern(text), kAgentSearchEnd, kAgentOrderBy});
}

// --- the nine --------------------------------------------------------------------------------------------------------

struct Builder {
    LookupField field;
    QString (*statement)(const FilterState&);
};
constexpr base::EnumTable<&Builder::field, filters::kLookupFieldCount> kBuilders{{{
    {LookupField::txtProducator, producerStatement},
    {LookupField::txtTipProdus, productTypeStatement},
    {LookupField::txtGrupaProdus, productGroupStatement},
    {LookupField::txtSubGrupaProdus, productSubgroupStatement},
    {LookupField::txtCodProdus, productStatement},
    {LookupField::txtTipClient, partnerTypeStatement},
    {LookupField::txtCatClient, partnerCategoryStatement},
    {LookupField::txtCodClient, partnerStatement},
    {LookupField::txtCodAgent, agentStatement},
}}};

}  // namespace

LookupRequest buildLookup(LookupField field, const FilterState& state) {
    const filters::LookupFieldRow& row = filters::kLookupFields[field];
    return {kBuilders[field].statement(state), row.caption.of(state.isSupplierSide()).toString(), row.tag.toString()};
}

}  // namespace velcoran::lookup
