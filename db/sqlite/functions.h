#pragma once

struct sqlite3;

namespace velcoran::sqlite {

/// Registers what the component's statements call and the embedded database lacks or has otherwise:
///
///     str(number [, length [, decimals]])  right-justified text; stars where it does not fit; 10 and 0 when not given
///     len(value)                           characters without the blanks at the end
///     day_text(date [, length])            "dd/mm/yyyy" of a "yyyy-mm-dd..." text; null for what is no date
///     like(pattern, text [, escape])       the LIKE operator, as LikePattern has it
///     avg(number)                          as ExactAverage has it; nulls are left out, null for none
///
/// A null argument gives null.
/// @throws Error kProviderFailure
void registerFunctions(sqlite3* database);

}  // namespace velcoran::sqlite
