#include "layout.h"

#include "layout_table.h"

#include <algorithm>

namespace velcoran::form {

std::span<const LayoutRow> layoutRows() { return {designed::kLayout.begin(), designed::kLayout.end()}; }

const LayoutRow& layoutOf(Ctl control) { return designed::kLayout[control]; }

std::optional<Ctl> controlNamed(QStringView name) {
    const auto* row = std::ranges::find(designed::kLayout, name, &LayoutRow::name);
    return row == designed::kLayout.end() ? std::nullopt : std::optional(row->control);
}

namespace {

/// The text boxes of the lookup fields, found while the library is compiled.
constexpr base::EnumArray<Ctl, filters::LookupField, filters::kLookupFieldCount> kFieldControls = [] {
    base::EnumArray<Ctl, filters::LookupField, filters::kLookupFieldCount> controls;
    for (const filters::LookupFieldRow& row : filters::kLookupFields) controls[row.field] = controlOfName(row.control);
    return controls;
}();

}  // namespace

Ctl controlOf(filters::LookupField field) { return kFieldControls[field]; }

std::span<const FieldLabel> fieldLabels() { return kFieldLabels; }

ResizedPlaces placesFor(base::Twips innerWidth, base::Twips innerHeight) {
    constexpr base::Twips kTop{75};
    constexpr base::Twips kMargin{500};
    const base::TwipsRect viz = layoutOf(Ctl::cmdViz).place;
    const base::TwipsRect setup = layoutOf(Ctl::Command1).place;
    const base::Twips vizLeft = innerWidth - viz.width - kMargin;
    return {{{0}, {0}, innerWidth, innerHeight},
            {vizLeft, kTop, viz.width, viz.height},
            {vizLeft - setup.width, kTop, setup.width, setup.height}};
}

}  // namespace velcoran::form
