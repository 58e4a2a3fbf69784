#include "provider.h"

#include "contract/odbc_driver.h"
#include "contract/postgres_server.h"

#include "db/odbc/connection.h"
#include "db/odbc/connection_text.h"
#include "db/sqlite/database.h"

#include <QDir>
#include <QTemporaryDir>

#include <sqlite3.h>

#include <stdexcept>

namespace velcoran::tests {

using namespace Qt::StringLiterals;

namespace {

/// The embedded database, through our provider or through the driver that Debian has for it.
class SqliteBase : public Provider {
public:
    SqliteBase() {
        sqlite3* database = nullptr;
        sqlite3_open(path().toUtf8().constData(), &database);
        char* message = nullptr;
        sqlite3_exec(
            database,
            "CREATE TABLE valori(id INTEGER, code VARCHAR(10), name VARCHAR(40), amount NUMERIC, rate REAL,"
            " day TEXT, note TEXT);"
            "INSERT INTO valori VALUES(1, '0007', 'Țuică și „ăâî” €', 12.5, 4.9765, '2026-03-15 00:00:00',"
            " replace(hex(zeroblob(4500)), '0', 'ș')), (2, NULL, NULL, NULL, NULL, NULL, NULL),"
            "(3, '', '日本語 😀', -0.0001, 0.5, '2026-12-31 23:59:59', '');"
            "CREATE TABLE reale(cod FLOAT, cota FLOAT, mare NUMERIC); INSERT INTO reale VALUES(1e5, 0.1, 1e40);"
            "CREATE TABLE numere(n INTEGER, name VARCHAR(20));"
            "WITH RECURSIVE s(n) AS (SELECT 1 UNION ALL SELECT n+1 FROM s LIMIT 50000)"
            "INSERT INTO numere SELECT n, 'rand ' || n FROM s;",
            nullptr, nullptr, &message);
        const std::string problem = message == nullptr ? "" : message;
        sqlite3_free(message);
        sqlite3_close(database);
        if (!problem.empty()) throw std::runtime_error(problem);
    }
    [[nodiscard]] QString path() const { return m_folder.filePath(u"contract.db"_s); }
    [[nodiscard]] QString values() const override { return u"SELECT * FROM valori ORDER BY id"_s; }
    [[nodiscard]] std::vector<ColumnType> types() const override {
        return {ColumnType::Int64,     ColumnType::Text, ColumnType::Text, ColumnType::Decimal64,
                ColumnType::Decimal64, ColumnType::Text, ColumnType::Text};
    }
    [[nodiscard]] std::optional<QString> bigNumber() const override { return std::nullopt; }
    [[nodiscard]] QString floats() const override { return u"SELECT * FROM reale"_s; }
    [[nodiscard]] QString series(int count) const override {
        return u"SELECT n, name FROM numere WHERE n <= %1 ORDER BY n"_s.arg(count);
    }
    [[nodiscard]] QString slow() const override {
        return u"SELECT Count(*) AS c FROM numere AS a, numere AS b, numere AS c WHERE a.n = b.n + c.n + 1"_s;
    }
    [[nodiscard]] std::optional<QString> failingLate() const override { return std::nullopt; }

private:
    QTemporaryDir m_folder{QDir::currentPath() + u"/contract-XXXXXX"_s};
};

class Embedded final : public SqliteBase {
public:
    com::Ref<IConnection> open() override { return sqlite::openDatabase(path()); }
    void close(const com::Ref<IConnection>& connection) override { sqlite::closeDatabase(connection); }
    [[nodiscard]] std::vector<FailingStatement> failing() const override {
        return {{u"SELECT FROM numere"_s, base::kStatementError},
                {u"SELECT x FROM nu_exista"_s, base::kNoSuchObject},
                {u"SELECT nu_exista FROM numere"_s, base::kStatementError}};
    }
};

class SqliteDriver final : public SqliteBase {
public:
    com::Ref<IConnection> open() override {
        return odbc::openConnection(driverText(u"SQLite3"_s, u"libsqliteodbc"_s) + u"Database="_s + path());
    }
    void close(const com::Ref<IConnection>& connection) override { odbc::closeConnection(connection); }
    /// The driver gives all errors of the database one state.
    [[nodiscard]] std::vector<FailingStatement> failing() const override {
        return {{u"SELECT FROM numere"_s, base::kStatementError},
                {u"SELECT x FROM nu_exista"_s, base::kStatementError},
                {u"SELECT nu_exista FROM numere"_s, base::kStatementError}};
    }
};

class PostgresDriver final : public Provider {
public:
    com::Ref<IConnection> open() override { return odbc::openConnection(PostgresServer::instance().connectionText()); }
    void close(const com::Ref<IConnection>& connection) override { odbc::closeConnection(connection); }
    [[nodiscard]] QString values() const override {
        return u"SELECT * FROM (VALUES (1::int, '0007'::varchar(10), 'Țuică și „ăâî” €'::varchar(40),"
               " 12.5::numeric(18,4), 4.9765::float8, '2026-03-15'::timestamp, repeat('ș', 9000)),"
               " (2, null, null, null, null, null, null),"
               " (3, '', '日本語 😀', -0.0001, 0.5, '2026-12-31 23:59:59', ''))"
               " AS v(id, code, name, amount, rate, day, note) ORDER BY id"_s;
    }
    [[nodiscard]] std::vector<ColumnType> types() const override {
        return {ColumnType::Int64,  ColumnType::Text,     ColumnType::Text, ColumnType::Decimal64,
                ColumnType::Double, ColumnType::DateTime, ColumnType::Text};
    }
    [[nodiscard]] std::optional<QString> bigNumber() const override {
        return u"SELECT '%1'::numeric(38,8) AS v"_s.arg(bigNumberText());
    }
    [[nodiscard]] QString floats() const override {
        return u"SELECT 100000::float8 AS cod, 0.1::float4 AS cota, 1e40::numeric AS mare"_s;
    }
    [[nodiscard]] QString series(int count) const override {
        return u"SELECT n, ('rand ' || n)::varchar(20) AS name FROM generate_series(1, %1) AS n"_s.arg(count);
    }
    [[nodiscard]] QString slow() const override { return u"SELECT pg_sleep(300)"_s; }
    [[nodiscard]] std::vector<FailingStatement> failing() const override {
        return {{u"SELECT FROM WHERE"_s, base::kStatementError},
                {u"SELECT x FROM nu_exista"_s, base::kNoSuchObject},
                {u"SELECT nu_exista FROM pg_class"_s, base::kStatementError}};
    }
    [[nodiscard]] std::optional<QString> failingLate() const override {
        return u"SELECT 1 / (9000 - n) AS v FROM generate_series(1, 20000) AS n"_s;
    }
};

/// The connection that VELCORAN_TEST_ODBC names, to a server that speaks SQL Server's language.
class GivenConnection final : public Provider {
public:
    com::Ref<IConnection> open() override {
        return odbc::openConnection(odbc::resolveConnectionText(qEnvironmentVariable("VELCORAN_TEST_ODBC")));
    }
    void close(const com::Ref<IConnection>& connection) override { odbc::closeConnection(connection); }
    [[nodiscard]] QString values() const override {
        return u"SELECT CAST(1 AS int) AS id, CAST(N'0007' AS nvarchar(10)) AS code,"
               " CAST(N'Țuică și „ăâî” €' AS nvarchar(40)) AS name, CAST(12.5 AS decimal(18,4)) AS amount,"
               " CAST(4.9765 AS float) AS rate, CAST('2026-03-15T00:00:00' AS datetime) AS day,"
               " REPLICATE(CAST(N'ș' AS nvarchar(max)), 9000) AS note"
               " UNION ALL SELECT 2, NULL, NULL, NULL, NULL, NULL, NULL"
               " UNION ALL SELECT 3, N'', N'日本語 😀', -0.0001, 0.5, CAST('2026-12-31T23:59:59' AS datetime), N''"
               " ORDER BY id"_s;
    }
    [[nodiscard]] std::vector<ColumnType> types() const override {
        return {ColumnType::Int64,  ColumnType::Text,     ColumnType::Text, ColumnType::Decimal64,
                ColumnType::Double, ColumnType::DateTime, ColumnType::Text};
    }
    [[nodiscard]] std::optional<QString> bigNumber() const override {
        return u"SELECT CAST('%1' AS decimal(38,8)) AS v"_s.arg(bigNumberText());
    }
    /// The server has no numbers of 41 digits but binary ones.
    [[nodiscard]] QString floats() const override {
        return u"SELECT CAST(100000 AS float) AS cod, CAST(0.1 AS real) AS cota, STR(1e40, 41) AS mare"_s;
    }
    [[nodiscard]] QString series(int count) const override {
        return u"SELECT TOP (%1) s.n, CAST('rand ' + CAST(s.n AS varchar(10)) AS varchar(20)) AS name FROM"
               " (SELECT CAST(ROW_NUMBER() OVER (ORDER BY a.object_id) AS int) AS n"
               " FROM sys.all_columns AS a CROSS JOIN sys.all_columns AS b) AS s ORDER BY s.n"_s.arg(count);
    }
    [[nodiscard]] QString slow() const override { return u"WAITFOR DELAY '00:05:00' SELECT 1 AS v"_s; }
    [[nodiscard]] std::vector<FailingStatement> failing() const override {
        return {{u"SELECT FROM WHERE"_s, base::kStatementError},
                {u"SELECT x FROM nu_exista"_s, base::kNoSuchObject},
                {u"SELECT nu_exista FROM sys.objects"_s, base::kStatementError}};
    }
    [[nodiscard]] std::optional<QString> failingLate() const override {
        return u"SELECT 1 / (900 - s.n) AS v FROM (%1) AS s"_s.arg(
            u"SELECT TOP 2000 CAST(ROW_NUMBER() OVER (ORDER BY a.object_id) AS int) AS n FROM sys.all_columns AS a"_s);
    }
};

template <class Made>
std::unique_ptr<Provider> make() {
    return std::make_unique<Made>();
}

}  // namespace

std::vector<ProviderCase> providerCases() {
    std::vector<ProviderCase> cases = {
        {"Embedded", make<Embedded>}, {"SqliteDriver", make<SqliteDriver>}, {"PostgresDriver", make<PostgresDriver>}};
    if (qEnvironmentVariableIsSet("VELCORAN_TEST_ODBC")) cases.push_back({"GivenConnection", make<GivenConnection>});
    return cases;
}

}  // namespace velcoran::tests
