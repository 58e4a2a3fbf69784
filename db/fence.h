#pragma once

#include <QString>
#include <QStringView>

#include <velcoran/connection.h>

#include <optional>

namespace velcoran::db {

/// Looks whether a text is one plain question: values go into the window's statements as they were typed, and a typed
/// text must not become a statement of its own.
///
/// What passes: the first word is SELECT and is the only one; of SQL Server's reserved words only those that the
/// window's statements are made of follow, END only where it closes a CASE; a semicolon stands only at the end. Outside
/// quotes and brackets there is no comment, no brace, backtick or backslash, no variable, no letter but N glued to a
/// quote, and beyond ASCII only letters. A text in quotes or a name in brackets may hold anything, and each is closed.
/// Texts are read by SQL Server's rules: '' is a quote inside quotes, ]] a bracket inside brackets. A value that leaves
/// its quotes and only widens the question passes: rights are the login's matter.
/// @return why the text does not pass, in a sentence for the user; nothing when it does
[[nodiscard]] std::optional<QString> fenceRefusal(QStringView statement);

/// A connection that lets only such texts through. Any other fails with kStatementError before it reaches the
/// connection inside; all else is handed on.
/// @return null for null
[[nodiscard]] com::Ref<IConnection> fenceConnection(com::Ref<IConnection> connection);

}  // namespace velcoran::db
