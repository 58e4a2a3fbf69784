#include "test_file.h"

#include "db/row_set.h"
#include "db/sqlite/database.h"
#include "support/direct_call_runner.h"

#include <sqlite3.h>

#include <gtest/gtest.h>

#include <thread>

namespace velcoran::sqlite {

TestFile::TestFile(const char* script) {
    sqlite3* database = nullptr;
    EXPECT_EQ(sqlite3_open(path().toUtf8().constData(), &database), SQLITE_OK);
    const std::string whole = std::string("PRAGMA synchronous = OFF; PRAGMA user_version = 1;") + script;
    EXPECT_EQ(sqlite3_exec(database, whole.c_str(), nullptr, nullptr, nullptr), SQLITE_OK) << sqlite3_errmsg(database);
    sqlite3_close(database);
    m_connection = db::Connection(openDatabase(path()));
}

TestFile::Writer::Writer(const TestFile& file) {
    EXPECT_EQ(sqlite3_open(file.path().toUtf8().constData(), &m_database), SQLITE_OK);
    run("PRAGMA synchronous = OFF");  // no test pulls the plug
}

TestFile::Writer::~Writer() { sqlite3_close(m_database); }

int TestFile::Writer::tryRun(const char* script) const {
    return sqlite3_exec(m_database, script, nullptr, nullptr, nullptr);
}

void TestFile::Writer::run(const char* script) const {
    EXPECT_EQ(tryRun(script), SQLITE_OK) << sqlite3_errmsg(m_database);
}

void TestFile::awaitReader() const {
    const Writer writer(*this);
    int result = SQLITE_OK;
    while ((result = writer.tryRun("BEGIN EXCLUSIVE")) == SQLITE_OK) {
        writer.run("ROLLBACK");
        std::this_thread::yield();
    }
    EXPECT_EQ(result, SQLITE_BUSY);
}

QString TestFile::value(const QString& statement) const {
    db::RowSet rows;
    tests::DirectCallRunner runner;
    rows.open(m_connection, statement, runner);
    return rows.field(0).value_or(QStringLiteral("<null>"));
}

std::int32_t TestFile::errorNumber(const QString& statement) const {
    try {
        const db::Rows rows = m_connection.execute(statement);
        while (rows.fetch() != nullptr) {
        }
    } catch (const base::Error& error) {
        EXPECT_FALSE(error.description().isEmpty());
        return error.number();
    }
    return 0;
}

}  // namespace velcoran::sqlite
