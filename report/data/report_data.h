#pragma once

#include "base/decimal.h"
#include "columns.h"

#include <QString>
#include <QStringList>

#include <array>
#include <memory>
#include <vector>

namespace velcoran::report {

/// How documents are presented: in groups of a partner or of a day.
enum class Grouping : std::uint8_t { Partner, Day };

/// Sums of one currency.
struct CurrencyTotal {
    QString currency;  ///< as the documents hold it; empty for null
    qint64 rows = 0;
    std::array<base::Decimal, kSumCount> sums;  ///< ValoareNeta to ValoareBruta
    [[nodiscard]] const base::Decimal& sum(ColumnRole role) const { return sums[amountIndex(role)]; }
};

/// One group of the report, in its order.
struct GroupTotal {
    QStringList key;  ///< partner code and name, or the day dd/mm/yyyy
    qint64 rows = 0;
    std::vector<CurrencyTotal> totals;  ///< by currency, in code point order
};

/// The total in lei at the documents' rates.
struct LeiTotal {
    base::Decimal value;  ///< rounded to two decimals
    qint64 rowsWithoutRate = 0;
};

/// Everything a finished run holds: rows in columns, groups, totals. Immutable; shared by viewer, printing and exports,
/// readable from any thread.
class ReportData {
public:
    struct Content;
    explicit ReportData(std::unique_ptr<const Content> content);
    ~ReportData();

    [[nodiscard]] qint64 rowCount() const;
    [[nodiscard]] qint64 groupCount() const;
    /// Key and totals of a group, made when asked for. @param group  0 to groupCount() - 1
    [[nodiscard]] GroupTotal group(qint64 group) const;
    /// Totals of the report by currency, in code point order.
    [[nodiscard]] const std::vector<CurrencyTotal>& totals() const;
    [[nodiscard]] const LeiTotal& leiTotal() const;
    /// Bytes of memory that rows, groups and totals take.
    [[nodiscard]] qint64 memoryUsed() const;

    /// The columns, for those who lay out and export.
    [[nodiscard]] const Content& content() const { return *m_content; }

private:
    std::unique_ptr<const Content> m_content;
};

}  // namespace velcoran::report
