#pragma once

#include "db/connection.h"

#include <QString>
#include <QTemporaryDir>

#include <sqlite3.h>

#include <cstdlib>

namespace velcoran::bench {

constexpr int kTableRows = 1'000'000;
constexpr auto kTableStatement = "SELECT * FROM raport";

/// Path of a database with a plain table of a million rows and the eleven columns of the report statement; made once a
/// process.
inline QString tableDatabase() {
    constexpr auto kScript =
        "CREATE TABLE raport(TipRaport VARCHAR(8), CodClient VARCHAR(12), NumeClient VARCHAR(50), DataDoc VARCHAR(10),"
        " NumarFactura INTEGER, ValoareNeta NUMERIC, ValoareTVA NUMERIC, ValoareBruta NUMERIC, Moneda VARCHAR(3),"
        " CursValutar NUMERIC, ValoareTaxe NUMERIC);"
        "WITH RECURSIVE s(n) AS (SELECT 1 UNION ALL SELECT n+1 FROM s LIMIT 1000000)"
        "INSERT INTO raport SELECT 'Furnizor', printf('F%05d', n % 3000),"
        " printf('Țesătorie și comerț %d SRL', n % 3000), printf('%02d/%02d/2026', n % 28 + 1, n % 12 + 1), n,"
        " n % 100000 / 100.0, n % 19000 / 100.0, n % 119000 / 100.0, 'EUR', 4.9765, n % 700 / 100.0 FROM s;";
    static const QTemporaryDir folder;
    static const QString path = [] {
        const QString name = folder.filePath(QStringLiteral("raport.db"));
        sqlite3* database = nullptr;
        if (sqlite3_open(name.toUtf8().constData(), &database) != SQLITE_OK ||
            sqlite3_exec(database, kScript, nullptr, nullptr, nullptr) != SQLITE_OK)
            std::abort();
        sqlite3_close(database);
        return name;
    }();
    return path;
}

/// Totals of amounts and lengths of texts: every value of a block is looked at.
inline std::int64_t consume(const RowBlock& block) {
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

/// Fetches the whole table through a provider. @return the number of rows
inline std::uint64_t fetchTable(const db::Connection& connection, std::int64_t& sum) {
    const db::Rows rows = connection.execute(QString::fromLatin1(kTableStatement));
    std::uint64_t count = 0;
    while (const RowBlock* block = rows.fetch()) {
        count += block->rowCount;
        sum += consume(*block);
    }
    return count;
}

}  // namespace velcoran::bench
