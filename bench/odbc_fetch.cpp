// A million rows of a report through an ODBC driver: the provider's blocks, consumed as the report engine consumes
// them, against a bare loop over the same driver with bound columns. The provider is to take at most half as long
// again.

#include "db/connection.h"
#include "db/odbc/connection.h"

#include <QString>
#include <QTemporaryDir>

#include <benchmark/benchmark.h>
#include <sqlite3.h>

#include <cstdlib>
#include <cstring>
#include <vector>

#include <sql.h>
#include <sqlext.h>
#include <sqlucode.h>

namespace {

using namespace Qt::StringLiterals;
using namespace velcoran;

constexpr auto kDriver = "/usr/lib/x86_64-linux-gnu/odbc/libsqlite3odbc.so";
constexpr auto kStatement = "SELECT * FROM raport";
constexpr int kRows = 1'000'000;

/// Eleven columns, as the report statement has them.
constexpr auto kScript =
    "CREATE TABLE raport(TipRaport VARCHAR(8), CodClient VARCHAR(12), NumeClient VARCHAR(50), DataDoc VARCHAR(10),"
    " NumarFactura INTEGER, ValoareNeta NUMERIC, ValoareTVA NUMERIC, ValoareBruta NUMERIC, Moneda VARCHAR(3),"
    " CursValutar NUMERIC, ValoareTaxe NUMERIC);"
    "WITH RECURSIVE s(n) AS (SELECT 1 UNION ALL SELECT n+1 FROM s LIMIT 1000000)"
    "INSERT INTO raport SELECT 'Furnizor', printf('F%05d', n % 3000), printf('Țesătorie și comerț %d SRL', n % 3000),"
    " printf('%02d/%02d/2026', n % 28 + 1, n % 12 + 1), n, n % 100000 / 100.0, n % 19000 / 100.0, n % 119000 / 100.0,"
    " 'EUR', 4.9765, n % 700 / 100.0 FROM s;";

QString databasePath() {
    static const QTemporaryDir folder;
    static const QString path = [] {
        const QString name = folder.filePath(u"raport.db"_s);
        sqlite3* database = nullptr;
        if (sqlite3_open(name.toUtf8().constData(), &database) != SQLITE_OK ||
            sqlite3_exec(database, kScript, nullptr, nullptr, nullptr) != SQLITE_OK)
            std::abort();
        sqlite3_close(database);
        return name;
    }();
    return path;
}

QString connectionText() { return u"Driver=%1;Database=%2"_s.arg(QString::fromLatin1(kDriver), databasePath()); }

struct BoundColumn {
    SQLSMALLINT type;
    std::size_t bytes;
};

/// What the provider binds for these columns.
constexpr BoundColumn kColumns[] = {{SQL_C_WCHAR, 38}, {SQL_C_WCHAR, 54}, {SQL_C_WCHAR, 206}, {SQL_C_WCHAR, 46},
                                    {SQL_C_CHAR, 48},  {SQL_C_CHAR, 48},  {SQL_C_CHAR, 48},   {SQL_C_CHAR, 48},
                                    {SQL_C_WCHAR, 18}, {SQL_C_CHAR, 48},  {SQL_C_CHAR, 48}};

void fetchBare(benchmark::State& state) {
    const auto rowset = static_cast<std::size_t>(state.range(0));
    const std::u16string text = connectionText().toStdU16String();
    for (auto _ : state) {
        SQLHENV environment = nullptr;
        SQLHDBC connection = nullptr;
        SQLHSTMT statement = nullptr;
        SQLAllocHandle(SQL_HANDLE_ENV, nullptr, &environment);
        SQLSetEnvAttr(environment, SQL_ATTR_ODBC_VERSION, reinterpret_cast<SQLPOINTER>(SQL_OV_ODBC3), 0);
        SQLAllocHandle(SQL_HANDLE_DBC, environment, &connection);
        SQLDriverConnectW(connection, nullptr, reinterpret_cast<SQLWCHAR*>(const_cast<char16_t*>(text.c_str())),
                          SQL_NTS, nullptr, 0, nullptr, SQL_DRIVER_NOPROMPT);
        SQLAllocHandle(SQL_HANDLE_STMT, connection, &statement);
        SQLExecDirect(statement, reinterpret_cast<SQLCHAR*>(const_cast<char*>(kStatement)), SQL_NTS);
        SQLULEN fetched = 0;
        SQLSetStmtAttr(statement, SQL_ATTR_ROW_ARRAY_SIZE, reinterpret_cast<SQLPOINTER>(rowset), 0);
        SQLSetStmtAttr(statement, SQL_ATTR_ROWS_FETCHED_PTR, &fetched, 0);
        std::vector<std::vector<char>> values;
        std::vector<std::vector<SQLLEN>> lengths;
        for (const BoundColumn& column : kColumns) {
            values.emplace_back(column.bytes * rowset);
            lengths.emplace_back(rowset);
            SQLBindCol(statement, static_cast<SQLUSMALLINT>(values.size()), column.type, values.back().data(),
                       static_cast<SQLLEN>(column.bytes), lengths.back().data());
        }
        SQLULEN rows = 0;
        SQLLEN units = 0;
        while (SQL_SUCCEEDED(SQLFetch(statement))) {
            rows += fetched;
            for (const auto& column : lengths)
                for (SQLULEN row = 0; row < fetched; ++row) units += column[row];
        }
        benchmark::DoNotOptimize(units);
        if (rows != kRows) state.SkipWithError("rows are missing");
        SQLFreeHandle(SQL_HANDLE_STMT, statement);
        SQLDisconnect(connection);
        SQLFreeHandle(SQL_HANDLE_DBC, connection);
        SQLFreeHandle(SQL_HANDLE_ENV, environment);
    }
}
BENCHMARK(fetchBare)->Arg(1)->Arg(1400)->Unit(benchmark::kMillisecond)->Iterations(3)->UseRealTime();

/// Totals of amounts and lengths of texts: every value is looked at.
std::int64_t consume(const RowBlock& block) {
    std::int64_t sum = 0;
    for (std::uint32_t i = 0; i < block.columnCount; ++i) {
        const ColumnBlock& column = block.columns[i];
        if (column.type == ColumnType::Text) {
            for (std::uint32_t row = 0; row < block.rowCount; ++row)
                sum += column.offsets[row + 1] - column.offsets[row];
        } else if (column.type == ColumnType::Int64 || column.type == ColumnType::Decimal64) {
            const auto* const values = static_cast<const std::int64_t*>(column.values);
            for (std::uint32_t row = 0; row < block.rowCount; ++row) sum += values[row];
        }
    }
    return sum;
}

void fetchBlocks(benchmark::State& state) {
    const QString text = connectionText();
    for (auto _ : state) {
        const db::Connection connection(odbc::openConnection(text));
        const db::Rows rows = connection.execute(QString::fromLatin1(kStatement));
        std::uint64_t count = 0;
        std::int64_t sum = 0;
        while (const RowBlock* block = rows.fetch()) {
            count += block->rowCount;
            sum += consume(*block);
        }
        benchmark::DoNotOptimize(sum);
        if (count != kRows) state.SkipWithError("rows are missing");
    }
}
BENCHMARK(fetchBlocks)->Unit(benchmark::kMillisecond)->Iterations(3)->UseRealTime();

}  // namespace

BENCHMARK_MAIN();
