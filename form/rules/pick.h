#pragma once

#include "filters/lookup_fields.h"

#include <QString>
#include <QStringView>

#include <functional>

namespace velcoran::form {

/// The window as the picker changes it.
class IPickTarget {
public:
    virtual ~IPickTarget() = default;
    /// Empties sCautare.
    virtual void emptySearchText() = 0;
    /// Assigns a field's text; its change behaviour runs at once.
    virtual void setFieldText(filters::LookupField field, const QString& text) = 0;
    virtual void setCode(filters::CodeVariable code, const QString& value) = 0;
    /// Sets the field's DataChanged to false.
    virtual void clearDataChanged(filters::LookupField field) = 0;
    /// Hides fraGrid and enables frmEnable.
    virtual void closePicker() = 0;
    virtual void focusControl(QStringView objectName) = 0;
};

/// Enter or a click in the grid: writes the current row back and moves on. The text goes in before its code, because a
/// field's change empties the code.
/// @param tag   of the open picker; one that is none of the nine only empties the search text
/// @param cell  text of a data column of the current row, counted from 1
void pick(QStringView tag, const std::function<QString(int)>& cell, IPickTarget& target);

/// Esc in the grid: closes it and gives the focus back to its field.
void cancelPick(QStringView tag, IPickTarget& target);

}  // namespace velcoran::form
