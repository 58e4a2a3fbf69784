#include "request.h"

#include "base/error.h"
#include "filters/codes.h"
#include "filters/fragments.h"

#include <array>

namespace velcoran::query {

using namespace Qt::StringLiterals;
using filters::CodeVariable;
using filters::FilterState;
using filters::isPresent;
using filters::joinFragments;
using filters::LookupField;

namespace {

constexpr QStringView kWhereKind = u" WHERE CapDocIntE.EC in (";
constexpr QStringView kSupplierType = u" AND Furnizori.[Tip Furnizor]='";
constexpr QStringView kClientType = u" AND Magazine.[Tip Client]='";
constexpr QStringView kSupplierCategory = u" AND Furnizori.[Categorie Furnizor]='";
constexpr QStringView kClientCategory = u" AND Magazine.[Categorie Client]='";
constexpr QStringView kPartner = u" AND CapDocIntE.[Furnizor]='";
constexpr QStringView kWarehouses = u" AND CapDocIntE.Depozit in ";
constexpr QStringView kFirstWarehouse = u" (";
constexpr QStringView kNextWarehouse = u", ";
constexpr QStringView kWarehouseSeparator = u" - ";
constexpr QStringView kAgent = u" AND CapDocIntE.[Agent]=";
constexpr QStringView kAnd = u" AND";
constexpr QStringView kCategoryList = u" TipuriProduse.Fel in (";
constexpr QStringView kCategory = u" TipuriProduse.Fel=";
constexpr QStringView kProductType = u" TipuriProduse.[Tip Produs]='";
constexpr QStringView kProductGroup = u" GrupeProdus.[Grupa Produs]='";
constexpr QStringView kProductSubgroup = u" Subgrupeprodus.[Subgrupa Produs]='";
constexpr QStringView kProduct = u" CoduriProdus.[Cod Produs]='";
constexpr QStringView kProducer = u" CoduriProdus.P='";
constexpr QStringView kHaving = u" Having";
constexpr QStringView kFrom = u" CapDocIntE.[Data Documentului] >= '";
constexpr QStringView kTo = u" AND CapDocIntE.[Data Documentului] <= '";
constexpr QStringView kQuote = u"'";
constexpr QStringView kQuoteBlank = u"' ";

QString kindCondition(const FilterState& state) {
    const filters::DocumentKinds kinds = filters::documentKinds(state.isSupplierSide());
    QString condition = joinFragments({kWhereKind, QString::number(kinds.invoice)});
    if (state.chkLohn) condition += joinFragments({u",", QString::number(kinds.temporary)});
    return condition += u')';
}

QString warehouseList(const QStringList& items) {
    QString list;
    for (const QString& item : items) {
        const qsizetype end = item.indexOf(kWarehouseSeparator);
        if (end < 0)
            throw base::Error(base::kInvalidProcedureCall, u"Depozitul „%1” nu are „ - ” după cod."_s.arg(item));
        list += joinFragments({list.isEmpty() ? kFirstWarehouse : kNextWarehouse, QStringView(item).first(end)});
    }
    if (!list.isEmpty()) list += u')';
    return list;
}

/// Everything of the where text behind the document kind and before the period.
QString headerConditions(const FilterState& state, const QString& sDepozite) {
    const bool isSupplierSide = state.isSupplierSide();
    const QString& type = state.text(LookupField::txtTipClient);
    const QString& category = state.text(LookupField::txtCatClient);
    QString text;
    if (isPresent(type)) text += joinFragments({isSupplierSide ? kSupplierType : kClientType, type, kQuote});
    if (isPresent(category))
        text += joinFragments({isSupplierSide ? kSupplierCategory : kClientCategory, category, kQuote});
    if (isPresent(state.text(LookupField::txtCodClient)))
        text += joinFragments({kPartner, state.codes[CodeVariable::sCodClient], kQuote});
    if (!sDepozite.isEmpty()) text += joinFragments({kWarehouses, sDepozite});
    if (isPresent(state.text(LookupField::txtCodAgent)))
        text += joinFragments({kAgent, state.codes[CodeVariable::sCodAgent]});
    return text;
}

QString categoryCondition(const FilterState& state) {
    if (state.cmbCategorieIndex != 0) {
        // A text that is no category leaves the condition without its code: the database refuses it.
        const std::optional<int> code = filters::categoryCode(state.cmbCategorie);
        return joinFragments({kCategory, code.has_value() ? QString::number(*code) : QString()});
    }
    QStringList codes;
    for (const int code : filters::defaultCategories(state.isSupplierSide())) codes.append(QString::number(code));
    if (state.chkLohn) codes.append(QString::number(filters::kTemporaryCategory));
    return joinFragments({kCategoryList, codes.join(u','), u")"});
}

QString productCondition(const FilterState& state) {
    struct Part {
        QStringView fragment;
        bool isApplied;
        const QString& value;
    };
    const QString& type = state.text(LookupField::txtTipProdus);
    const QString& group = state.text(LookupField::txtGrupaProdus);
    const QString& subgroup = state.text(LookupField::txtSubGrupaProdus);
    const QString& producer = state.codes[CodeVariable::sCodProducator];
    const Part parts[] = {
        {kProductType, isPresent(type), type},
        {kProductGroup, isPresent(group), group},
        {kProductSubgroup, isPresent(subgroup), subgroup},
        {kProduct, isPresent(state.text(LookupField::txtCodProdus)), state.codes[CodeVariable::sCodProdus]},
        {kProducer, !producer.isEmpty(), producer},
    };
    QString condition = categoryCondition(state);
    for (const Part& part : parts) {
        if (!part.isApplied) continue;
        if (!condition.isEmpty()) condition += kAnd;
        condition += joinFragments({part.fragment, part.value, kQuote});
    }
    return condition;
}

QString periodCondition(const FilterState& state, QStringView opening) {
    return joinFragments({opening, kFrom, state.deLaData.toString(Qt::ISODate), kQuoteBlank, kTo,
                          state.laData.toString(Qt::ISODate), kQuoteBlank});
}

}  // namespace

Request buildRequest(const FilterState& state) {
    Request request;
    request.sDepozite = warehouseList(state.depozite);
    request.sWhere = kindCondition(state) + headerConditions(state, request.sDepozite);
    request.sProdus = productCondition(state);
    if (state.chkTotale) {
        request.sWhere += periodCondition(state, kAnd);
    } else {
        request.sHaving = periodCondition(state, kHaving);
    }
    return request;
}

}  // namespace velcoran::query
