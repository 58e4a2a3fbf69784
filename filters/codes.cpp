#include "codes.h"

#include "fragments.h"

namespace velcoran::filters {

namespace {

constexpr std::array<int, 6> kSupplierCategories{0, 2, 3, 5, 6, 7};
constexpr std::array<int, 5> kClientCategories{2, 3, 4, 5, 7};

// Entries of the list are categories by code, so that a name is written once.
constexpr std::array<int, 5> kImportEntries{3, 5, 6, 7, 8};
constexpr std::array<int, 5> kExportEntries{3, 4, 5, 7, 8};

}  // namespace

std::optional<int> categoryCode(QStringView name) {
    for (const Category& one : kCategories) {
        if (one.name == name) return one.fel;
    }
    return std::nullopt;
}

QString categoryExpression() {
    QString expression = joinFragments({u"CASE"});
    for (const Category& one : kCategories) {
        expression +=
            joinFragments({u" WHEN [TipuriProduse].[Fel]=", QString::number(one.fel), u" THEN '", one.name, u"'"});
    }
    return expression += u" END";
}

QStringList categoryEntries(ReportKind kind) {
    QStringList entries{QString()};
    std::span<const int> codes;
    if (kind == ReportKind::Import) codes = kImportEntries;
    if (kind == ReportKind::Export) codes = kExportEntries;
    for (const int fel : codes) entries.append(kCategories[static_cast<std::size_t>(fel)].name.toString());
    return entries;
}

std::span<const int> defaultCategories(bool isSupplierSide) {
    if (isSupplierSide) return kSupplierCategories;
    return kClientCategories;
}

}  // namespace velcoran::filters
