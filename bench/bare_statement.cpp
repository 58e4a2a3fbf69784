// The floor of a report: the statement of the window, rewritten for the embedded database with the database's own
// functions in place of ours, stepped to its end with every column read.
//
//     bare_statement DATABASE < STATEMENT        prints the rows and the seconds
#include "db/sqlite/dialect.h"

#include <QRegularExpression>

#include <sqlite3.h>

#include <chrono>
#include <cstdio>
#include <iostream>
#include <iterator>

using namespace Qt::StringLiterals;

namespace {

QByteArray bareText(const std::string& statement) {
    static const QRegularExpression day(u"day_text\\(([^()]*)\\)"_s);
    static const QRegularExpression number(u"str\\(([^(),]*),len\\([^()]*\\),0\\)"_s);
    return velcoran::sqlite::rewrite(QString::fromStdString(statement))
        .replace(day, u"substr(\\1,9,2)||'/'||substr(\\1,6,2)||'/'||substr(\\1,1,4)"_s)
        .replace(number, u"\\1"_s)
        .toUtf8();
}

/// Reads every column as the kind of value that it holds. @return the number of rows, -1 for a failure
long stepThrough(sqlite3_stmt* statement) {
    long rows = 0;
    volatile double sum = 0;
    int result = sqlite3_step(statement);
    for (; result == SQLITE_ROW; result = sqlite3_step(statement), ++rows) {
        for (int column = 0; column < sqlite3_column_count(statement); ++column) {
            if (sqlite3_column_type(statement, column) == SQLITE_TEXT) {
                const auto* const text = static_cast<const char16_t*>(sqlite3_column_text16(statement, column));
                sum = sum + text[0] + sqlite3_column_bytes16(statement, column);
            } else {
                sum = sum + sqlite3_column_double(statement, column);
            }
        }
    }
    return result == SQLITE_DONE ? rows : -1;
}

}  // namespace

int main(int argc, char** argv) {
    if (argc != 2) return 2;
    const std::string text{std::istreambuf_iterator<char>(std::cin), {}};
    sqlite3* database = nullptr;
    if (sqlite3_open_v2(argv[1], &database, SQLITE_OPEN_READONLY, nullptr) != SQLITE_OK) return 1;
    sqlite3_exec(database, "PRAGMA cache_size = -65536", nullptr, nullptr, nullptr);
    const auto start = std::chrono::steady_clock::now();
    sqlite3_stmt* statement = nullptr;
    long rows = -1;
    if (sqlite3_prepare_v2(database, bareText(text).constData(), -1, &statement, nullptr) == SQLITE_OK)
        rows = stepThrough(statement);
    const std::chrono::duration<double> taken = std::chrono::steady_clock::now() - start;
    if (rows < 0) std::fprintf(stderr, "%s\n", sqlite3_errmsg(database));
    sqlite3_finalize(statement);
    sqlite3_close(database);
    std::printf("%ld %.6f\n", rows, taken.count());
    return rows < 0 ? 1 : 0;
}
