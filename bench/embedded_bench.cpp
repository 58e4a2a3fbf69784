// A million rows through the embedded provider against a bare loop of steps that reads every column. The provider is to
// take at most 1.15 times as long.
#include "report_table.h"

#include "db/sqlite/database.h"

#include <benchmark/benchmark.h>

namespace {

using namespace velcoran;

void stepBare(benchmark::State& state) {
    for (auto _ : state) {
        sqlite3* database = nullptr;
        sqlite3_stmt* statement = nullptr;
        sqlite3_open_v2(bench::tableDatabase().toUtf8().constData(), &database, SQLITE_OPEN_READONLY, nullptr);
        sqlite3_prepare_v2(database, bench::kTableStatement, -1, &statement, nullptr);
        int rows = 0;
        double sum = 0;
        for (; sqlite3_step(statement) == SQLITE_ROW; ++rows) {
            for (int column = 0; column < 11; ++column) {
                switch (sqlite3_column_type(statement, column)) {
                    case SQLITE_TEXT:
                        sum += sqlite3_column_text(statement, column)[0];
                        sum += sqlite3_column_bytes(statement, column);
                        break;
                    case SQLITE_INTEGER:
                        sum += static_cast<double>(sqlite3_column_int64(statement, column));
                        break;
                    default:
                        sum += sqlite3_column_double(statement, column);
                        break;
                }
            }
        }
        benchmark::DoNotOptimize(sum);
        if (rows != bench::kTableRows) state.SkipWithError("rows are missing");
        sqlite3_finalize(statement);
        sqlite3_close(database);
    }
}
BENCHMARK(stepBare)->Unit(benchmark::kMillisecond)->Iterations(5)->UseRealTime();

void fetchBlocks(benchmark::State& state) {
    for (auto _ : state) {
        const db::Connection connection(sqlite::openDatabase(bench::tableDatabase()));
        std::int64_t sum = 0;
        if (bench::fetchTable(connection, sum) != bench::kTableRows) state.SkipWithError("rows are missing");
        benchmark::DoNotOptimize(sum);
    }
}
BENCHMARK(fetchBlocks)->Unit(benchmark::kMillisecond)->Iterations(5)->UseRealTime();

}  // namespace

BENCHMARK_MAIN();
