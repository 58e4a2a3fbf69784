#pragma once

#include <QString>
#include <QStringView>

namespace velcoran::db {
class RowSet;
}

namespace velcoran::lookup {

/// What typing in the grid changes besides the rows.
struct TypeAhead {
    QString sCautare;  ///< typed so far; kept by the window object across its close
    QString caption;   ///< of the picker's frame
    friend bool operator==(const TypeAhead&, const TypeAhead&) = default;
};

/// The state after one more character: the first one stands behind " - " in the caption. A text kept from an earlier
/// window continues without the separator.
/// @param character  what the key types, control characters such as Backspace included
[[nodiscard]] TypeAhead typeCharacter(const TypeAhead& state, QStringView character);

/// The state when nothing matches: the caption becomes the tag, which is not always what the picker was opened under.
[[nodiscard]] TypeAhead restartTypeAhead(QStringView tag);

/// "[header] Like 'text%'".
[[nodiscard]] QString filterText(QStringView header, QStringView sCautare);

/// One key in the grid, except Enter and Esc: types the character and narrows the rows; starts anew when none is left.
/// A failing filter ends the key without a word: what was typed stays in state, the rows stay as they were.
/// @param header     of the grid's current column
/// @param tag        of the open picker
/// @param rsLookup   gets the filter
/// @return true when the rows' filter was set anew and the grid is to be read again
bool typeAhead(TypeAhead& state, QStringView character, QStringView header, QStringView tag, db::RowSet& rsLookup);

}  // namespace velcoran::lookup
