#pragma once

#include "db/row_set.h"

#include <QString>
#include <QTemporaryDir>

namespace velcoran::tests {

/// The embedded database of tests/data/statements/database.sql, made anew in a folder of its own.
class StatementDatabase {
public:
    StatementDatabase();

    [[nodiscard]] const db::Connection& connection() const { return m_connection; }
    /// Rows of a statement, read to the end. @throws Error of the provider
    [[nodiscard]] db::RowSet run(const QString& sql) const;
    /// Texts of a column of a statement, separated by a blank.
    [[nodiscard]] QString column(const QString& sql, const QString& name) const;

private:
    QTemporaryDir m_folder;
    db::Connection m_connection;
};

}  // namespace velcoran::tests
