// A million rows of a report through an ODBC driver: the provider's blocks, consumed as the report engine consumes
// them, against a bare loop over the same driver with bound columns. The provider is to take at most half as long
// again.

#include "report_table.h"

#include "db/odbc/connection.h"

#include <benchmark/benchmark.h>

#include <thread>
#include <vector>

#include <sql.h>
#include <sqlext.h>
#include <sqlucode.h>

namespace {

using namespace Qt::StringLiterals;
using namespace velcoran;

constexpr auto kDriver = "/usr/lib/x86_64-linux-gnu/odbc/libsqlite3odbc.so";
QString connectionText() {
    return u"Driver=%1;Database=%2"_s.arg(QString::fromLatin1(kDriver), bench::tableDatabase());
}

struct BoundColumn {
    SQLSMALLINT type;
    std::size_t bytes;
};

/// What the provider binds for these columns.
constexpr BoundColumn kColumns[] = {{SQL_C_WCHAR, 38}, {SQL_C_WCHAR, 54}, {SQL_C_WCHAR, 206}, {SQL_C_WCHAR, 46},
                                    {SQL_C_CHAR, 48},  {SQL_C_CHAR, 48},  {SQL_C_CHAR, 48},   {SQL_C_CHAR, 48},
                                    {SQL_C_WCHAR, 18}, {SQL_C_CHAR, 48},  {SQL_C_CHAR, 48}};

/// @return the number of rows
SQLULEN fetchBareTable(std::size_t rowset) {
    const std::u16string text = connectionText().toStdU16String();
    SQLHENV environment = nullptr;
    SQLHDBC connection = nullptr;
    SQLHSTMT statement = nullptr;
    SQLAllocHandle(SQL_HANDLE_ENV, nullptr, &environment);
    SQLSetEnvAttr(environment, SQL_ATTR_ODBC_VERSION, reinterpret_cast<SQLPOINTER>(SQL_OV_ODBC3), 0);
    SQLAllocHandle(SQL_HANDLE_DBC, environment, &connection);
    SQLDriverConnectW(connection, nullptr, reinterpret_cast<SQLWCHAR*>(const_cast<char16_t*>(text.c_str())), SQL_NTS,
                      nullptr, 0, nullptr, SQL_DRIVER_NOPROMPT);
    SQLAllocHandle(SQL_HANDLE_STMT, connection, &statement);
    SQLExecDirect(statement, reinterpret_cast<SQLCHAR*>(const_cast<char*>(bench::kTableStatement)), SQL_NTS);
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
    SQLFreeHandle(SQL_HANDLE_STMT, statement);
    SQLDisconnect(connection);
    SQLFreeHandle(SQL_HANDLE_DBC, connection);
    SQLFreeHandle(SQL_HANDLE_ENV, environment);
    return rows;
}

/// On a thread of its own, as a program with a window must: a driver is slower there, where memory and locks are
/// shared.
void fetchBare(benchmark::State& state) {
    for (auto _ : state) {
        SQLULEN rows = 0;
        std::thread([&] { rows = fetchBareTable(static_cast<std::size_t>(state.range(0))); }).join();
        if (rows != bench::kTableRows) state.SkipWithError("rows are missing");
    }
}
BENCHMARK(fetchBare)->Arg(1)->Arg(1400)->Unit(benchmark::kMillisecond)->Iterations(3)->UseRealTime();

void fetchBlocks(benchmark::State& state) {
    const QString text = connectionText();
    for (auto _ : state) {
        const db::Connection connection(odbc::openConnection(text));
        std::int64_t sum = 0;
        if (bench::fetchTable(connection, sum) != bench::kTableRows) state.SkipWithError("rows are missing");
        benchmark::DoNotOptimize(sum);
    }
}
BENCHMARK(fetchBlocks)->Unit(benchmark::kMillisecond)->Iterations(3)->UseRealTime();

}  // namespace

BENCHMARK_MAIN();
