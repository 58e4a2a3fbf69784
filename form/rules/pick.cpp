#include "pick.h"

namespace velcoran::form {

using filters::LookupField;

void pick(QStringView tag, const std::function<QString(int)>& cell, IPickTarget& target) {
    constexpr int kCodeColumn = 1;
    constexpr int kNameColumn = 2;
    target.emptySearchText();
    const std::optional<LookupField> field = filters::lookupFieldOfTag(tag);
    if (!field.has_value()) return;
    const filters::LookupFieldRow& row = filters::kLookupFields[*field];
    target.setFieldText(*field, cell(row.code.has_value() ? kNameColumn : kCodeColumn));
    if (row.code.has_value()) target.setCode(*row.code, cell(kCodeColumn));
    target.clearDataChanged(*field);
    target.closePicker();
    for (const std::optional<LookupField>& emptied : row.emptied) {
        if (emptied.has_value()) target.setFieldText(*emptied, QString());
    }
    target.focusControl(row.forward);
}

void cancelPick(QStringView tag, IPickTarget& target) {
    target.emptySearchText();
    target.closePicker();
    if (const auto field = filters::lookupFieldOfTag(tag)) target.focusControl(filters::kLookupFields[*field].control);
}

}  // namespace velcoran::form
