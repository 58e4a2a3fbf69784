#include "validation.h"

#include "filters/fragments.h"

namespace velcoran::query {

using filters::CodeVariable;

std::optional<QString> modifiedFiltersMessage(const filters::FilterState& state) {
    QString list;
    for (const filters::LookupFieldRow& one : filters::kLookupFields) {
        const filters::LookupValue& value = state.fields[one.field];
        if (value.text.isEmpty() || !value.dataChanged) continue;
        list += list.isEmpty() ? one.label.toString() : filters::joinFragments({u", ", one.laterLabel});
    }
    if (list.isEmpty()) return std::nullopt;
    return filters::joinFragments({u" Urmatoarele filtrari au fost modificate ulterior selectiei:\r\n - ", list,
                                   u"\r\n Pentru a putea continua repetati selectiile! "});
}

QList<CodeVariable> tidyCodes(const filters::FilterState& state) {
    QList<CodeVariable> stale;
    for (const CodeVariable code : filters::kCodeVariables) {
        if (state.text(filters::fieldOfCode(code)).isEmpty()) stale.append(code);
    }
    return stale;
}

}  // namespace velcoran::query
