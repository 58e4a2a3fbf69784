#include "statement_database.h"

#include "db/sqlite/database.h"
#include "support/direct_call_runner.h"
#include "support/test_data.h"

#include <gtest/gtest.h>
#include <sqlite3.h>

namespace velcoran::tests {

using namespace Qt::StringLiterals;

StatementDatabase::StatementDatabase() {
    const QString path = m_folder.filePath(u"statements.db"_s);
    sqlite3* handle = nullptr;
    EXPECT_EQ(sqlite3_open(path.toUtf8().constData(), &handle), SQLITE_OK);
    const QByteArray script = readData(u"statements/database.sql"_s);
    EXPECT_EQ(sqlite3_exec(handle, script.constData(), nullptr, nullptr, nullptr), SQLITE_OK) << sqlite3_errmsg(handle);
    sqlite3_close(handle);
    m_connection = db::Connection(sqlite::openDatabase(path));
}

db::RowSet StatementDatabase::run(const QString& sql) const {
    db::RowSet rows;
    tests::DirectCallRunner runner;
    rows.open(m_connection, sql, runner);
    return rows;
}

QString StatementDatabase::column(const QString& sql, const QString& name) const {
    const db::RowSet rows = run(sql);
    const auto number = static_cast<int>(rows.columns().indexOf(name));
    EXPECT_GE(number, 0) << "no column " << name.toStdString();
    QStringList texts;
    for (qsizetype row = 0; row < rows.recordCount(); ++row) texts.append(rows.cell(row, number));
    return texts.join(u' ');
}

}  // namespace velcoran::tests
