#pragma once

#include "base/enum_table.h"

#include <QStringView>

#include <array>
#include <cstdint>
#include <optional>

namespace velcoran::filters {

/// The nine lookup text fields, in the forward order of the window.
enum class LookupField : std::uint8_t {
    txtProducator,
    txtTipProdus,
    txtGrupaProdus,
    txtSubGrupaProdus,
    txtCodProdus,
    txtTipClient,
    txtCatClient,
    txtCodClient,
    txtCodAgent
};
constexpr std::size_t kLookupFieldCount = 9;

/// The codes of picked values whose fields show names, in the order in which a run looks after them.
enum class CodeVariable : std::uint8_t { sCodProdus, sCodClient, sCodAgent, sCodProducator };
inline constexpr std::array kCodeVariables{CodeVariable::sCodProdus, CodeVariable::sCodClient, CodeVariable::sCodAgent,
                                           CodeVariable::sCodProducator};

/// A text that speaks of suppliers or of clients.
struct PartnerText {
    constexpr PartnerText(const char16_t* both) : supplier(both), client(both) {}
    constexpr PartnerText(const char16_t* ofSuppliers, const char16_t* ofClients)
        : supplier(ofSuppliers), client(ofClients) {}

    QStringView supplier;
    QStringView client;
    [[nodiscard]] constexpr QStringView of(bool isSupplierSide) const { return isSupplierSide ? supplier : client; }
};

/// All that is particular to a lookup field.
struct LookupFieldRow {
    LookupField field;
    QStringView control;                                ///< object name of its text box
    bool isOfProducts;                                  ///< narrows products; a total report knows none
    QStringView label;                                  ///< in the message about modified filters, as its first entry
    QStringView laterLabel;                             ///< in the same message, behind another entry
    PartnerText filterLine;                             ///< in the lines on the filters in force
    QStringView tag;                                    ///< identifier of its lookup
    PartnerText caption;                                ///< of the picker's frame
    std::optional<CodeVariable> code;                   ///< of the picked row, where the field shows its name
    std::array<std::optional<LookupField>, 2> emptied;  ///< by a pick, in this order
    QStringView forward;   ///< object name of the control that follows, by the keyboard and after a pick
    QStringView backward;  ///< object name of the control in front of it, while that can be had
};

/// The nine fields. In the message about modified filters the labels speak of clients on both sides, and a sales agent
/// behind another entry is called "Denumire Client": users know it that way.
// clang-format off
inline constexpr base::EnumTable<&LookupFieldRow::field, kLookupFieldCount> kLookupFields{{{
    {LookupField::txtProducator, u"txtProducator", true, u"Producator", u"Producator", u"Producator",
     u"Producatori", u"Producatori", CodeVariable::sCodProducator, {}, u"cmbCategorie", u"Ladata"},
    {LookupField::txtTipProdus, u"txtTipProdus", true, u"Tip Produs", u"Tip Produs", u"Tip de Produse",
     u"Tip Produs", u"Tipuri Produse", {}, {}, u"txtGrupaProdus", u"cmbCategorie"},
    {LookupField::txtGrupaProdus, u"txtGrupaProdus", true, u"Grupa Produs", u"Grupa Produs", u"Grupa de Produse",
     u"Grupa Produs", u"Grupa Produs", {}, {LookupField::txtSubGrupaProdus, LookupField::txtCodProdus},
     u"txtSubGrupaProdus", u"txtTipProdus"},
    {LookupField::txtSubGrupaProdus, u"txtSubGrupaProdus", true, u"Subgrupa Produs", u"Subgrupa Produs",
     u"Subgrupa de Produse", u"Subgrupa Produs", u"Subgrupa Produs", {}, {LookupField::txtCodProdus},
     u"txtCodProdus", u"txtGrupaProdus"},
    {LookupField::txtCodProdus, u"txtCodProdus", true, u"Cod Produs", u"Cod Produs", u"Denumire Produs",
     u"Coduri Produse", u"Coduri Produse", CodeVariable::sCodProdus, {}, u"txtTipClient", u"txtSubGrupaProdus"},
    {LookupField::txtTipClient, u"txtTipClient", false, u"Tip Client", u"Tip Client", {u"Tip Furnizor", u"Tip Client"},
     u"Tip Client", {u"Tip Furnizor", u"Tip Client"}, {}, {}, u"txtCatClient", u"txtCodProdus"},
    {LookupField::txtCatClient, u"txtCatClient", false, u"Categorie Client", u"Categorie Client",
     {u"Categorie Furnizor", u"Categorie Client"}, u"Categorie Client", {u"Categorie Furnizor", u"Categorie Client"},
     {}, {}, u"txtCodClient", u"txtTipClient"},
    {LookupField::txtCodClient, u"txtCodClient", false, u"Denumire Client", u"Denumire Client",
     {u"Denumire Furnizor", u"Denumire Client"}, u"Clienti", {u"Furnizori", u"Clienti"}, CodeVariable::sCodClient, {},
     u"cmbDepozit", u"txtCatClient"},
    {LookupField::txtCodAgent, u"txtCodAgent", false, u"Denumire Agent", u"Denumire Client", u"Agent",
     u"Agenti", u"Agenti", CodeVariable::sCodAgent, {}, u"cmbSelectie", u"cmbDepozit"},
}}};
// clang-format on

/// The field of an object name; nothing for any other control.
[[nodiscard]] std::optional<LookupField> lookupFieldNamed(QStringView control);
/// The field of a tag; nothing for a text that is none of the nine.
[[nodiscard]] std::optional<LookupField> lookupFieldOfTag(QStringView tag);
/// The field that shows the name of a code.
[[nodiscard]] LookupField fieldOfCode(CodeVariable code);

}  // namespace velcoran::filters
