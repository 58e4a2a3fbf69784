#pragma once

#include "filters/filter_state.h"

#include <QStringView>

#include <array>

namespace velcoran::lookup {

/// The words of a field's picker.
struct LookupWords {
    filters::LookupField field;
    QStringView tag;              ///< identifier of the lookup
    QStringView caption;          ///< of the picker's frame
    QStringView supplierCaption;  ///< the same for the report kind "Import"
};

/// One row a field, in the order of filters::LookupField.
inline constexpr std::array<LookupWords, filters::kLookupFieldCount> kLookupWords{{
    {filters::LookupField::txtProducator, u"Producatori", u"Producatori", u"Producatori"},
    {filters::LookupField::txtTipProdus, u"Tip Produs", u"Tipuri Produse", u"Tipuri Produse"},
    {filters::LookupField::txtGrupaProdus, u"Grupa Produs", u"Grupa Produs", u"Grupa Produs"},
    {filters::LookupField::txtSubGrupaProdus, u"Subgrupa Produs", u"Subgrupa Produs", u"Subgrupa Produs"},
    {filters::LookupField::txtCodProdus, u"Coduri Produse", u"Coduri Produse", u"Coduri Produse"},
    {filters::LookupField::txtTipClient, u"Tip Client", u"Tip Client", u"Tip Furnizor"},
    {filters::LookupField::txtCatClient, u"Categorie Client", u"Categorie Client", u"Categorie Furnizor"},
    {filters::LookupField::txtCodClient, u"Clienti", u"Clienti", u"Furnizori"},
    {filters::LookupField::txtCodAgent, u"Agenti", u"Agenti", u"Agenti"},
}};

}  // namespace velcoran::lookup
