#pragma once

#include "base/decimal.h"

#include <QString>
#include <QStringList>

#include <memory>
#include <vector>

namespace velcoran::engine {

/// Sums of one currency.
struct CurrencyTotal {
    QString currency;  ///< as the documents hold it; empty for null
    qint64 rows = 0;
    base::Decimal valoareNeta, valoareTVA, valoareTaxe, valoareBruta;
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
class ReportData;

}  // namespace velcoran::engine
