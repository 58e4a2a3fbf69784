#include "builders.h"

#include "filters/fragments.h"

namespace velcoran::lookup {

using filters::FilterState;
using filters::joinFragments;
using filters::LookupField;

namespace {

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

QString narrowing(QStringView fragment, const QString& text) {
    return text.isEmpty() ? QString() : joinFragments({fragment, text, u"'"});
}

}  // namespace

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
    const QString narrowed = narrowing(fragments.type, state.text(LookupField::txtTipClient)) +
                             narrowing(fragments.category, state.text(LookupField::txtCatClient));
    if (text.isEmpty()) return joinFragments({fragments.all, narrowed, kPartnerAllEnd, fragments.orderBy});
    return joinFragments({fragments.search, closedPattern(text), fragments.searchActive, narrowed, kPartnerSearchEnd,
                          fragments.orderBy});
}

QString agentStatement(const FilterState& state) {
    const QString& text = state.text(LookupField::txtCodAgent);
    if (text.isEmpty()) return joinFragments({kAgentAll, kAgentOrderBy});
    return joinFragments({kAgentSearch, closedPattern(text), kAgentSearchEnd, kAgentOrderBy});
}

}  // namespace velcoran::lookup
