#pragma once

#include "context.h"
#include "form/rules/cascade.h"

namespace velcoran::form {

/// The filter panel's own behaviour: focus colours, refused characters, and what a change of one control does to the
/// others.
class FilterPanel final : public ICascadeTarget {
public:
    explicit FilterPanel(const Context& context);

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

    const Context& m_context;
};

}  // namespace velcoran::form
