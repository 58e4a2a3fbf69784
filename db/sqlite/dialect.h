#pragma once

#include <QString>

namespace velcoran::sqlite {

/// Turns a statement of the component's dialect into the embedded database's: token by token, and only
///
///     CONVERT(NVARCHAR, x, 103)       day_text(x); with a length, NVARCHAR(n), day_text(x, n)
///     a + b, where one is a text      a || b
///
/// A text is a literal, a call of a function that gives one (str, CONVERT to NVARCHAR among them), a CASE that gives
/// one, a "+" chain with one of these in it, and any of them in parentheses; a "+" between anything else adds numbers.
/// All the rest, comments and blanks included, stays as it is; what the tokenizer cannot finish is passed on for the
/// database to refuse in its own words.
[[nodiscard]] QString rewrite(const QString& text);

/// True when nothing but blanks, comments and ";" stand in a text.
[[nodiscard]] bool isEmptyStatement(QStringView text);

}  // namespace velcoran::sqlite
