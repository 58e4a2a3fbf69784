#pragma once

#include <QString>
#include <QStringList>

namespace velcoran::odbc {

/// The connection text behind a command line argument: "@FILE" is the content of a file, "env:NAME" the value of an
/// environment variable, anything else the text itself. Line ends and blanks around the text are dropped.
/// @throws Error kPathAccess when the file cannot be read, kInvalidProcedureCall when the variable is not set or the
///         text is empty; the error never shows the text
[[nodiscard]] QString resolveConnectionText(const QString& argument);

/// What a connection text keeps secret - passwords, tokens - and how it is kept out of texts that people see.
class Secrets {
public:
    Secrets() = default;
    explicit Secrets(const QString& connectionText);

    /// The text with each secret value, and each value behind a secret keyword, written as "***".
    [[nodiscard]] QString scrub(QString text) const;

private:
    QStringList m_values;  ///< longest first, so that a secret inside another one leaves no rest
};

}  // namespace velcoran::odbc
