#pragma once

#include "filters/filter_state.h"

#include <span>

namespace velcoran::form {

/// What runs a cascade: a change of a lookup field, of the category, a tick or untick of the totals box.
enum class Trigger {
    txtProducator,  // the nine fields in the order of filters::LookupField
    txtTipProdus,
    txtGrupaProdus,
    txtSubGrupaProdus,
    txtCodProdus,
    txtTipClient,
    txtCatClient,
    txtCodClient,
    txtCodAgent,
    cmbCategorie,
    totalsTicked,
    totalsUnticked,
};
[[nodiscard]] constexpr Trigger triggerOf(filters::LookupField field) { return static_cast<Trigger>(field); }

/// The window as a cascade changes it.
class ICascadeTarget {
public:
    virtual ~ICascadeTarget() = default;
    /// Assigns the empty text; a field that held text runs its own change at once, an empty one runs nothing.
    virtual void emptyField(filters::LookupField field) = 0;
    virtual void emptyCode(filters::CodeVariable code) = 0;
    /// Sets the field's DataChanged.
    virtual void markChanged(filters::LookupField field) = 0;
    /// Chooses the empty entry of cmbCategorie; from another entry this is a change of the category.
    virtual void resetCategory() = 0;
    /// Enables or disables the category and the four product fields, in that order.
    virtual void enableProducts(bool isEnabled) = 0;
};

/// Runs what a trigger does, step by step.
void runCascade(Trigger trigger, ICascadeTarget& target);

}  // namespace velcoran::form
