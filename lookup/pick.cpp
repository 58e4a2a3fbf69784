#include "pick.h"

#include "filters/lookup_fields.h"

namespace velcoran::lookup {

using filters::CodeVariable;
using filters::LookupField;

const std::array<PickRow, filters::kLookupFieldCount>& pickRows() {
    static constexpr std::array<PickRow, filters::kLookupFieldCount> kRows{{
        {u"Producatori", LookupField::txtProducator, 2, CodeVariable::sCodProducator, {}, u"cmbCategorie"},
        {u"Tip Produs", LookupField::txtTipProdus, 1, {}, {}, u"txtGrupaProdus"},
        {u"Grupa Produs",
         LookupField::txtGrupaProdus,
         1,
         {},
         {LookupField::txtSubGrupaProdus, LookupField::txtCodProdus},
         u"txtSubGrupaProdus"},
        {u"Subgrupa Produs", LookupField::txtSubGrupaProdus, 1, {}, {LookupField::txtCodProdus}, u"txtCodProdus"},
        {u"Coduri Produse", LookupField::txtCodProdus, 2, CodeVariable::sCodProdus, {}, u"txtTipClient"},
        {u"Tip Client", LookupField::txtTipClient, 1, {}, {}, u"txtCatClient"},
        {u"Categorie Client", LookupField::txtCatClient, 1, {}, {}, u"txtCodClient"},
        {u"Clienti", LookupField::txtCodClient, 2, CodeVariable::sCodClient, {}, u"cmbDepozit"},
        {u"Agenti", LookupField::txtCodAgent, 2, CodeVariable::sCodAgent, {}, u"cmbSelectie"},
    }};
    return kRows;
}

const PickRow* pickRowOf(QStringView tag) {
    for (const PickRow& row : pickRows()) {
        if (row.tag == tag) return &row;
    }
    return nullptr;
}

void pick(QStringView tag, const std::function<QString(int)>& cell, IPickTarget& target) {
    constexpr int kCodeColumn = 1;
    target.emptySearchText();
    const PickRow* row = pickRowOf(tag);
    if (row == nullptr) return;
    target.setFieldText(row->field, cell(row->textColumn));
    if (row->code.has_value()) target.setCode(*row->code, cell(kCodeColumn));
    target.clearDataChanged(row->field);
    target.closePicker();
    for (const std::optional<LookupField>& field : row->cleared) {
        if (field.has_value()) target.setFieldText(*field, QString());
    }
    target.focusControl(row->nextControl);
}

void cancelPick(QStringView tag, IPickTarget& target) {
    target.emptySearchText();
    target.closePicker();
    if (const PickRow* row = pickRowOf(tag)) target.focusControl(filters::controlName(row->field));
}

}  // namespace velcoran::lookup
