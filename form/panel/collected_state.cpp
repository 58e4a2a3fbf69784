#include "collected_state.h"

#include "control_tree.h"
#include "filters/lookup_fields.h"
#include "members.h"

namespace velcoran::form {

filters::FilterState collectState(const Members& members, const ControlTree& controls) {
    filters::FilterState state;
    state.sTipRaport = members.sTipRaport;
    state.sSoc = members.sSoc;
    for (const filters::LookupFieldRow& one : filters::kLookupFields) {
        const controls::TextBox& box = controls.textBox(one.field);
        state.fields[one.field] = {box.text(), box.isDataChanged()};
    }
    state.codes = members.codes;
    state.cmbTipRaport = controls.list(Ctl::cmbTipRaport).text();
    state.cmbSortare = controls.list(Ctl::cmbSortare).text();
    state.cmbCategorieIndex = controls.list(Ctl::cmbCategorie).index();
    state.cmbCategorie = controls.list(Ctl::cmbCategorie).text();
    const controls::TickList& warehouses = controls.warehouses();
    const QStringList items = warehouses.items();
    for (const int index : warehouses.ticked()) state.depozite.append(items.at(index));
    state.chkTotale = controls.checkBox(Ctl::chkTotale).value();
    state.chkLohn = controls.checkBox(Ctl::chkLohn).value();
    state.deLaData = controls.datePicker(Ctl::Deladata).value();
    state.laData = controls.datePicker(Ctl::Ladata).value();
    return state;
}

}  // namespace velcoran::form
