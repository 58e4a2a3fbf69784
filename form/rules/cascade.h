#pragma once

#include "filters/lookup_fields.h"

#include <cstdint>

namespace velcoran::form {

/// What runs a cascade besides a change of a lookup field: a change of the category, a tick or untick of the totals
/// box.
enum class Trigger : std::uint8_t { cmbCategorie, totalsTicked, totalsUnticked };

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

/// Runs what a change of a field or another trigger does, step by step.
void runCascade(filters::LookupField field, ICascadeTarget& target);
void runCascade(Trigger trigger, ICascadeTarget& target);

}  // namespace velcoran::form
