#include "validation.h"

#include "filters/fragments.h"
#include "filters/lookup_fields.h"

namespace velcoran::query {

using filters::CodeVariable;
using filters::LookupField;

std::optional<QString> modifiedFiltersMessage(const filters::FilterState& state) {
    QString list;
    for (const filters::LookupFieldNames& one : filters::kLookupFields) {
        const filters::LookupValue& value = state.field(one.field);
        if (value.text.isEmpty() || !value.dataChanged) continue;
        list += list.isEmpty() ? one.label.toString() : filters::joinFragments({u", ", one.laterLabel});
    }
    if (list.isEmpty()) return std::nullopt;
    return filters::joinFragments({u" Urmatoarele filtrari au fost modificate ulterior selectiei:\r\n - ", list,
                                   u"\r\n Pentru a putea continua repetati selectiile! "});
}

QList<CodeVariable> tidyCodes(const filters::FilterState& state) {
    struct Pair {
        LookupField field;
        CodeVariable code;
    };
    constexpr Pair kPairs[] = {
        {LookupField::txtCodProdus, CodeVariable::sCodProdus},
        {LookupField::txtCodClient, CodeVariable::sCodClient},
        {LookupField::txtCodAgent, CodeVariable::sCodAgent},
        {LookupField::txtProducator, CodeVariable::sCodProducator},
    };
    QList<CodeVariable> stale;
    for (const Pair& pair : kPairs) {
        if (state.text(pair.field).isEmpty()) stale.append(pair.code);
    }
    return stale;
}

}  // namespace velcoran::query
