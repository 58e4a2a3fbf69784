#pragma once

#include "filter_state.h"

#include <QStringView>

#include <array>
#include <optional>

namespace velcoran::filters {

/// A lookup text field as the window and its messages call it.
struct LookupFieldNames {
    LookupField field;
    QStringView control;     ///< object name of the text box
    QStringView label;       ///< in the message about modified filters, as its first entry
    QStringView laterLabel;  ///< in the same message, behind another entry
};

/// The nine fields, in the order in which the message names them. The labels speak of clients on both sides, and a
/// sales agent behind another entry is called "Denumire Client": users know the message that way.
inline constexpr std::array<LookupFieldNames, kLookupFieldCount> kLookupFields{{
    {LookupField::txtProducator, u"txtProducator", u"Producator", u"Producator"},
    {LookupField::txtTipProdus, u"txtTipProdus", u"Tip Produs", u"Tip Produs"},
    {LookupField::txtGrupaProdus, u"txtGrupaProdus", u"Grupa Produs", u"Grupa Produs"},
    {LookupField::txtSubGrupaProdus, u"txtSubGrupaProdus", u"Subgrupa Produs", u"Subgrupa Produs"},
    {LookupField::txtCodProdus, u"txtCodProdus", u"Cod Produs", u"Cod Produs"},
    {LookupField::txtTipClient, u"txtTipClient", u"Tip Client", u"Tip Client"},
    {LookupField::txtCatClient, u"txtCatClient", u"Categorie Client", u"Categorie Client"},
    {LookupField::txtCodClient, u"txtCodClient", u"Denumire Client", u"Denumire Client"},
    {LookupField::txtCodAgent, u"txtCodAgent", u"Denumire Agent", u"Denumire Client"},
}};

/// Object name of a field's text box.
[[nodiscard]] constexpr QStringView controlName(LookupField field) {
    return kLookupFields[static_cast<std::size_t>(field)].control;
}

/// The field of an object name; nothing for any other control.
[[nodiscard]] std::optional<LookupField> lookupFieldNamed(QStringView control);

}  // namespace velcoran::filters
