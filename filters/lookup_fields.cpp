#include "lookup_fields.h"

#include <algorithm>

namespace velcoran::filters {

namespace {

std::optional<LookupField> fieldWith(QStringView LookupFieldRow::*name, QStringView text) {
    const auto* row = std::ranges::find(kLookupFields, text, name);
    return row == kLookupFields.end() ? std::nullopt : std::optional(row->field);
}

}  // namespace

std::optional<LookupField> lookupFieldNamed(QStringView control) {
    return fieldWith(&LookupFieldRow::control, control);
}

std::optional<LookupField> lookupFieldOfTag(QStringView tag) { return fieldWith(&LookupFieldRow::tag, tag); }

LookupField fieldOfCode(CodeVariable code) {
    return std::ranges::find(kLookupFields, std::optional(code), &LookupFieldRow::code)->field;
}

}  // namespace velcoran::filters
