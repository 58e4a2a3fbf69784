#pragma once

#include "base/enum_table.h"

#include <QStringView>

#include <cstdint>
#include <optional>

namespace velcoran::report {

/// The columns of the report statement: texts first, those whose texts repeat from row to row in front, then amounts,
/// those that are added up in front.
enum class ColumnRole : std::uint8_t {
    TipRaport,
    CodClient,
    NumeClient,
    DataDoc,
    Moneda,
    NumarFactura,
    ValoareNeta,
    ValoareTVA,
    ValoareTaxe,
    ValoareBruta,
    CursValutar,
};
constexpr std::size_t kRepeatedTextCount = 5;  ///< TipRaport to Moneda
constexpr std::size_t kAmountCount = 5;        ///< ValoareNeta to CursValutar
constexpr std::size_t kSumCount = 4;           ///< ValoareNeta to ValoareBruta
constexpr std::size_t kColumnCount = kRepeatedTextCount + 1 + kAmountCount;

/// What the cells of a column are.
enum class CellKind : std::uint8_t { Text, Date, Amount, Rate };

/// All that is particular to a column.
struct ColumnRow {
    ColumnRole role;
    QStringView name;     ///< as the statement has it
    CellKind kind;        ///< amounts are added up, rates are not
    QStringView heading;  ///< of an exported table; %1 for the partner: "furnizor", "client"
    int width;            ///< of an exported table, in characters
    int onPage;           ///< place among the columns of a page, from 0; -1 for none
    int inStatement;      ///< place in the statement, from 0
};

/// The eleven columns.
inline constexpr base::EnumTable<&ColumnRow::role, kColumnCount> kColumns{{{
    {ColumnRole::TipRaport, u"TipRaport", CellKind::Text, u"Tip raport", 10, -1, 0},
    {ColumnRole::CodClient, u"CodClient", CellKind::Text, u"Cod %1", 14, 0, 1},
    {ColumnRole::NumeClient, u"NumeClient", CellKind::Text, u"Denumire %1", 40, 1, 2},
    {ColumnRole::DataDoc, u"DataDoc", CellKind::Date, u"Data document", 14, 3, 3},
    {ColumnRole::Moneda, u"Moneda", CellKind::Text, u"Moneda", 9, 4, 8},
    {ColumnRole::NumarFactura, u"NumarFactura", CellKind::Text, u"Numar document", 18, 2, 4},
    {ColumnRole::ValoareNeta, u"ValoareNeta", CellKind::Amount, u"Valoare neta", 18, 6, 5},
    {ColumnRole::ValoareTVA, u"ValoareTVA", CellKind::Amount, u"Valoare TVA", 18, 7, 6},
    {ColumnRole::ValoareTaxe, u"ValoareTaxe", CellKind::Amount, u"Valoare taxe", 18, 8, 10},
    {ColumnRole::ValoareBruta, u"ValoareBruta", CellKind::Amount, u"Valoare bruta", 18, 9, 7},
    {ColumnRole::CursValutar, u"CursValutar", CellKind::Rate, u"Curs valutar", 13, 5, 9},
}}};

/// True for a column of numbers.
[[nodiscard]] constexpr bool isAmount(ColumnRole role) { return role >= ColumnRole::ValoareNeta; }
/// The place of a column of numbers among them, from 0; the first kSumCount are added up.
[[nodiscard]] constexpr std::size_t amountIndex(ColumnRole role) {
    return static_cast<std::size_t>(role) - static_cast<std::size_t>(ColumnRole::ValoareNeta);
}
/// The column of a name, whatever the case of its letters.
[[nodiscard]] std::optional<ColumnRole> columnOf(QStringView name);

}  // namespace velcoran::report
