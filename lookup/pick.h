#pragma once

#include "filters/filter_state.h"

#include <QString>
#include <QStringView>

#include <array>
#include <functional>
#include <optional>

namespace velcoran::lookup {

/// What a pick does for one tag. Columns count from 1, as the grid's data columns do.
struct PickRow {
    QStringView tag;
    filters::LookupField field;                 ///< gets the picked text; gets the focus back on cancel
    int textColumn;                             ///< cell written into the field
    std::optional<filters::CodeVariable> code;  ///< gets the cell of column 1
    std::array<std::optional<filters::LookupField>, 2> cleared;  ///< emptied afterwards, in this order
    QStringView nextControl;                                     ///< object name of what gets the focus
};

/// The nine rows, in the order of filters::LookupField.
[[nodiscard]] const std::array<PickRow, filters::kLookupFieldCount>& pickRows();

/// The row of a tag; null for a text that is none of the nine.
[[nodiscard]] const PickRow* pickRowOf(QStringView tag);

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

}  // namespace velcoran::lookup
