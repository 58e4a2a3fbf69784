#pragma once

#include "report_kind.h"

#include <QString>
#include <QStringList>
#include <QStringView>

#include <array>
#include <optional>
#include <span>

namespace velcoran::filters {

/// A product category: TipuriProduse.Fel and the name that lists and statements give it.
struct Category {
    int fel;
    QStringView name;
};

/// The nine categories, in the order of their codes.
inline constexpr std::array<Category, 9> kCategories{{
    {0, u"Materiale Stocate cu NIR"},
    {1, u"Materiale Stocate fara NIR"},
    {2, u"Materiale Nestocate"},
    {3, u"Produse Finite"},
    {4, u"Produse Finite in Consignatie"},
    {5, u"Servicii"},
    {6, u"Alte Cheltuieli"},
    {7, u"Mijloace Fixe"},
    {8, u"Produse in Lohn"},
}};

/// Code of a category name, compared exactly; nothing for a name that is none.
[[nodiscard]] std::optional<int> categoryCode(QStringView name);

/// The statements' translation of a category code into its name: "CASE WHEN [TipuriProduse].[Fel]=0 THEN '...' ...
/// END", without a blank at either end.
[[nodiscard]] QString categoryExpression();

/// Entries of cmbCategorie for a report kind: the empty one first; nothing but that for a kind that is neither Import
/// nor Export.
[[nodiscard]] QStringList categoryEntries(ReportKind kind);

/// Categories of a report with no category chosen; kTemporaryCategory joins them with the temporary documents.
[[nodiscard]] std::span<const int> defaultCategories(bool isSupplierSide);
constexpr int kTemporaryCategory = 8;

/// Document kind codes, CapDocIntE.EC: the invoice and the temporary import or export.
struct DocumentKinds {
    int invoice;
    int temporary;
};

[[nodiscard]] constexpr DocumentKinds documentKinds(bool isSupplierSide) {
    return isSupplierSide ? DocumentKinds{63, 89} : DocumentKinds{13, 79};
}

}  // namespace velcoran::filters
