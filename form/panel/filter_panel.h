#pragma once

#include "control_tree.h"
#include "form/busy/handler_guard.h"
#include "form/rules/cascade.h"

namespace velcoran::form {

/// The filter panel's own behaviour: focus colours, refused characters, and what a change of one control does to the
/// others.
class FilterPanel final : public ICascadeTarget {
public:
    /// All of them outlive this. @param codes  those that a change of a field empties
    FilterPanel(const ControlTree& controls, filters::Codes& codes, HandlerGuard& handlers);

    void emptyField(filters::LookupField field) override;
    void emptyCode(filters::CodeVariable code) override;
    void markChanged(filters::LookupField field) override;
    void resetCategory() override;
    void enableProducts(bool isEnabled) override;

    /// Sets a field's DataChanged to false.
    void clearDataChanged(filters::LookupField field);

private:
    void connectField(filters::LookupField field);
    void connectLists();
    void colourOnFocus(controls::Control& control);
    void onSelection(int index);

    const ControlTree& m_controls;
    filters::Codes& m_codes;
    HandlerGuard& m_handlers;
};

}  // namespace velcoran::form
