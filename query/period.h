#pragma once

#include "filters/filter_state.h"

#include <QLocale>
#include <QString>
#include <QStringView>

namespace velcoran::query {

/// The date separator of the user's system locale; see dateSeparatorOf. Reads the settings anew each time.
[[nodiscard]] QString systemDateSeparator();

/// What separates the parts of a locale's short date: the first mark that is no letter, no blank and not quoted; "/"
/// where there is none, as in the C locale.
[[nodiscard]] QString dateSeparatorOf(const QLocale& locale);

/// The period as the report shows it: "= 01/07/2003 - 31/07/2003 =", with the given separator.
[[nodiscard]] QString periodText(const filters::FilterState& state, QStringView separator);

/// The same as a string constant of the engine's formula language, in single quotes.
[[nodiscard]] QString periodSource(const filters::FilterState& state, QStringView separator);

}  // namespace velcoran::query
