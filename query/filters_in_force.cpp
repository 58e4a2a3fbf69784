#include "filters_in_force.h"

#include "filters/fragments.h"

namespace velcoran::query {

using namespace Qt::StringLiterals;
using filters::CodeVariable;
using filters::FilterState;
using filters::LookupField;
using filters::LookupFieldRow;

namespace {

/// "Denumire Client: ALFA (C1)".
QString fieldLine(const LookupFieldRow& row, const FilterState& state) {
    QStringList value{state.text(row.field).trimmed()};
    if (row.code) value.append(u"(%1)"_s.arg(state.codes[*row.code].trimmed()));
    value.removeAll(QString());
    return u"%1: %2"_s.arg(row.filterLine.of(state.isSupplierSide()), value.join(u' '));
}

// A filter is in force where the statement has its condition: the producer by its code, every other field by its text,
// and no product at all in a total report.
bool isInForce(const LookupFieldRow& row, const FilterState& state) {
    if (row.isOfProducts && state.chkTotale) return false;
    if (row.code == CodeVariable::sCodProducator) return !state.codes[*row.code].isEmpty();
    return filters::isPresent(state.text(row.field));
}

}  // namespace

QStringList filtersInForce(const FilterState& state) {
    QStringList lines;
    for (const LookupFieldRow& row : filters::kLookupFields) {
        if (isInForce(row, state)) lines.append(fieldLine(row, state));
        const bool isInFrontOfCategory = row.field == LookupField::txtProducator;
        if (isInFrontOfCategory && !state.chkTotale && state.cmbCategorieIndex != 0)
            lines.append(u"Categorie de Produse: "_s + state.cmbCategorie);
    }
    if (!state.depozite.isEmpty()) lines.append(u"Depozite: "_s + state.depozite.join(u", "_s));
    if (state.chkLohn)
        lines.append(state.isSupplierSide() ? u"Inclusiv importurile temporare"_s
                                            : u"Inclusiv exporturile temporare"_s);
    return lines;
}

}  // namespace velcoran::query
