#pragma once

#include <QString>

namespace velcoran::tests {

/// What is wrong with a text that the fence has let through, found by a scanner of another build: one expression for
/// the tokens of SQL Server's dialect, and the rules on its tokens. Empty when nothing is.
[[nodiscard]] QString faultOfPassed(const QString& statement);

}  // namespace velcoran::tests
