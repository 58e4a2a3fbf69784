#include "statement.h"

#include "filters/fragments.h"
#include "request.h"

namespace velcoran::query {

using filters::FilterState;
using filters::joinFragments;

namespace {

constexpr QStringView kSelectPartner = u" SELECT 'Furnizor' AS TipRaport, ";
constexpr QStringView kSelectDay = u" SELECT 'Zi' AS TipRaport, ";
constexpr QStringView kGroupedColumns =
    u"CapDocIntE.Furnizor AS CodClient, CapDocIntE.[Denumire Furnizor] AS NumeClient, "
    u"CONVERT(NVARCHAR,CapDocIntE.[Data Documentului],103) AS DataDoc, CapDocIntE.Document AS NumarFactura, "
    u"Avg(CapDocIntE.[Valoare Neta]) AS ValoareNeta, Avg(CapDocIntE.[Valoare TVA]) AS ValoareTVA, "
    u"Avg(CapDocIntE.[Valoare Neta]+ CapDocIntE.[Valoare TVA]+CapDocIntE.[Valoare Taxe]) AS ValoareBruta, "
    u"CapDocIntE.[Tip Valuta] AS Moneda, CapDocIntE.[Curs Valutar] AS CursValutar, "
    u"Avg(CapDocIntE.[Valoare Taxe]) AS ValoareTaxe ";
constexpr QStringView kGroupedFrom =
    u" FROM TipuriProduse INNER JOIN (GrupeProdus INNER JOIN (Subgrupeprodus INNER JOIN (((CapDocIntE INNER JOIN ";
constexpr QStringView kGroupedOn = u" ON CapDocIntE.Furnizor = ";
constexpr QStringView kGroupedJoins =
    u") INNER JOIN [Linii DocIntE] ON CapDocIntE.Document = [Linii DocIntE].Document) INNER JOIN CoduriProdus ON "
    u"[Linii DocIntE].[Cod Produs] = CoduriProdus.[Cod Produs]) ON Subgrupeprodus.[Subgrupa Produs] = "
    u"CoduriProdus.[Subgrupa Produs]) ON GrupeProdus.[Grupa Produs] = Subgrupeprodus.[Grupa Produs]) ON "
    u"TipuriProduse.[Tip Produs] = CoduriProdus.[Tip Produs] ";
constexpr QStringView kPartnerGroupBy = u" GROUP BY ";
constexpr QStringView kDayGroupBy = u" GROUP BY  ";
constexpr QStringView kGroupColumns =
    u"CapDocIntE.Furnizor, CapDocIntE.[Denumire Furnizor], CONVERT(NVARCHAR,CapDocIntE.[Data Documentului],103), "
    u"CapDocIntE.Document, CapDocIntE.[Tip Valuta], CapDocIntE.[Curs Valutar], CapDocIntE.[Data Documentului] ";
constexpr QStringView kProductTest = u" AND Sum(CASE WHEN ";
constexpr QStringView kProductTestEnd = u" THEN 1 ELSE 0 END)>0";

constexpr QStringView kTotalSelect =
    u" SELECT 'Total' AS TipRaport, CapDocIntE.Furnizor AS CodClient, CapDocIntE.[Denumire Furnizor] AS NumeClient, "
    u"CONVERT(NVARCHAR,CapDocIntE.[Data Documentului],103) AS DataDoc, CapDocIntE.Document AS NumarFactura, "
    u"CapDocIntE.[Valoare Neta] AS ValoareNeta, CapDocIntE.[Valoare TVA] AS ValoareTVA, "
    u"CapDocIntE.[Valoare Neta]+ CapDocIntE.[Valoare TVA]+CapDocIntE.[Valoare Taxe] AS ValoareBruta, "
    u"CapDocIntE.[Tip Valuta] AS Moneda, CapDocIntE.[Curs Valutar] AS CursValutar, "
    u"CapDocIntE.[Valoare Taxe] AS ValoareTaxe ";
constexpr QStringView kTotalFrom = u" FROM CapDocIntE  INNER JOIN ";
constexpr QStringView kTotalOn = u" ON  CapDocIntE.Furnizor = ";

constexpr QStringView kSupplierTable = u" Furnizori ";
constexpr QStringView kClientTable = u"Magazine ";
constexpr QStringView kSupplierKey = u" Furnizori.Furnizor ";
constexpr QStringView kClientKey = u"Magazine.Magazin ";
constexpr QStringView kTransferred = u" AND CapDocIntE.Transferat in ('F','T','S','R') ";

constexpr QStringView kOrderByDate = u" ORDER BY CapDocIntE.[Data Documentului]";

/// The sort entries that have an order. "Numar Document", which the list offers, is not among them and leaves the
/// statement without one.
struct SortRow {
    QStringView entry;
    QStringView fragment;
};
constexpr SortRow kSortRows[] = {
    {u"Data", kOrderByDate},
    {u"Numar Factura", u" ORDER BY CapDocIntE.Document"},
    {u"Furnizor", u" ORDER BY CapDocIntE.Furnizor"},
    {u"Client", u" ORDER BY CapDocIntE.Furnizor"},
};

QStringView sortFragment(QStringView entry) {
    for (const SortRow& row : kSortRows) {
        if (row.entry == entry) return row.fragment;
    }
    return {};
}

/// The partner table of a statement with what comes with it.
struct PartnerSide {
    QStringView table;
    QStringView key;
    QStringView transferCondition;
};

constexpr PartnerSide partnerSide(bool isSupplier) {
    return isSupplier ? PartnerSide{kSupplierTable, kSupplierKey, kTransferred}
                      : PartnerSide{kClientTable, kClientKey, QStringView()};
}

QString assembleGrouped(const FilterState& state, const Request& request, bool isPartner) {
    // The partner variant follows the list's text, the day variant the report kind: a kind that is neither "Import" nor
    // "Export" gets different tables in the two.
    const PartnerSide side = partnerSide(isPartner ? state.cmbTipRaport == u"Furnizor" : state.isSupplierSide());
    QString sql = joinFragments({isPartner ? kSelectPartner : kSelectDay, kGroupedColumns, kGroupedFrom, side.table,
                                 kGroupedOn, side.key, kGroupedJoins, request.sWhere, side.transferCondition,
                                 isPartner ? kPartnerGroupBy : kDayGroupBy, kGroupColumns, request.sHaving});
    if (!request.sProdus.isEmpty()) sql += joinFragments({kProductTest, request.sProdus, kProductTestEnd});
    return sql += sortFragment(state.cmbSortare);
}

QString assembleTotal(const FilterState& state, const Request& request) {
    const PartnerSide side = partnerSide(state.isSupplierSide());
    return joinFragments({kTotalSelect, kTotalFrom, side.table, kTotalOn, side.key, request.sWhere,
                          side.transferCondition, kOrderByDate});
}

}  // namespace

bool isPartnerEntry(QStringView tipRaport) { return tipRaport == u"Client" || tipRaport == u"Furnizor"; }

Variant chooseVariant(const FilterState& state) {
    if (state.chkTotale) return Variant::Total;
    return isPartnerEntry(state.cmbTipRaport) ? Variant::Partner : Variant::Day;
}

QString assembleStatement(const FilterState& state, const Request& request) {
    const Variant variant = chooseVariant(state);
    if (variant == Variant::Total) return assembleTotal(state, request);
    return assembleGrouped(state, request, variant == Variant::Partner);
}

}  // namespace velcoran::query
