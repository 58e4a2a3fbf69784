#pragma once

#include "amount_column.h"
#include "columns.h"
#include "report_data.h"
#include "sum_column.h"
#include "text_column.h"

#include <array>
#include <vector>

namespace velcoran::report {

/// The rows as they came.
struct RowStore {
    std::uint32_t rowCount = 0;
    std::array<RepeatedTextColumn, kRepeatedTextCount> texts;
    PlainTextColumn numarFactura;
    std::array<AmountColumn, kAmountCount> amounts;
    /// Rates that are no number, by row in rising order: shown as they stand.
    std::vector<std::pair<std::uint32_t, std::uint32_t>> oddRates;
    TextPool oddRateTexts;

    [[nodiscard]] const RepeatedTextColumn& text(ColumnRole role) const {
        return texts[static_cast<std::size_t>(role)];
    }
    [[nodiscard]] const AmountColumn& amount(ColumnRole role) const { return amounts[amountIndex(role)]; }
    /// A text of a row; empty for null. Not for amounts.
    [[nodiscard]] std::u16string_view textOf(ColumnRole role, std::uint32_t row) const {
        return role == ColumnRole::NumarFactura ? numarFactura.at(row) : text(role).at(row);
    }
    /// A rate that is no number, as it stands; else empty.
    [[nodiscard]] std::u16string_view oddRate(std::uint32_t row) const;
    [[nodiscard]] std::size_t memoryUsed() const;
};

/// One line of totals: a currency of a group.
struct TotalCell {
    std::uint32_t currency = TextPool::kNull;  ///< number in the pool of Moneda
    std::uint32_t rowCount = 0;
};

/// Groups in the order of the report, the rows of each in the statement's order, and their totals.
struct GroupIndex {
    struct Key {
        std::uint32_t first = TextPool::kNull;   ///< number of the partner code or of the day
        std::uint32_t second = TextPool::kNull;  ///< number of the partner name
    };
    std::vector<Key> keys;
    std::vector<std::uint32_t> starts;      ///< into rows, one more than groups
    std::vector<std::uint32_t> rows;        ///< numbers of rows
    std::vector<std::uint32_t> cellStarts;  ///< into cells, one more than groups
    std::vector<TotalCell> cells;           ///< of each group by currency, in code point order
    std::array<SumColumn, kSumCount> sums;  ///< of the cells: ValoareNeta to ValoareBruta

    [[nodiscard]] std::uint32_t groupCount() const { return static_cast<std::uint32_t>(keys.size()); }
    [[nodiscard]] std::uint32_t rowsOf(std::uint32_t group) const { return starts[group + 1] - starts[group]; }
    [[nodiscard]] std::uint32_t linesOf(std::uint32_t group) const { return cellStarts[group + 1] - cellStarts[group]; }
    [[nodiscard]] std::size_t memoryUsed() const;
};

struct ReportData::Content {
    Grouping grouping = Grouping::Partner;
    RowStore store;
    GroupIndex index;
    std::vector<CurrencyTotal> totals;
    LeiTotal lei;
};

/// Text of a group's key: what stands for null, null and all.
[[nodiscard]] QStringList keyTexts(const ReportData::Content& content, std::uint32_t group);

}  // namespace velcoran::report
