#include "lookup_fields.h"

namespace velcoran::filters {

std::optional<LookupField> lookupFieldNamed(QStringView control) {
    for (const LookupFieldNames& one : kLookupFields) {
        if (one.control == control) return one.field;
    }
    return std::nullopt;
}

}  // namespace velcoran::filters
