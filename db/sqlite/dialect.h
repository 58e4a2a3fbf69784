#pragma once

#include <QString>
#include <QStringList>

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

/// Names of the result columns as a server gives them: a column without an alias has its name as the statement writes
/// it, whatever the letters' case in the table. One text for each entry of the first select list, empty where the entry
/// is no plain column; nothing when the list is not that of the whole result (a common table expression, a "*").
[[nodiscard]] QStringList writtenColumnNames(const QString& text);

/// True when nothing but blanks, comments and ";" stand in a text.
[[nodiscard]] bool isEmptyStatement(QStringView text);

}  // namespace velcoran::sqlite
