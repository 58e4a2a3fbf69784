#pragma once

#include "amount_column.h"

#include <QString>

namespace velcoran::report {

/// An amount as people here write it, "1.234,56": rounded to two decimals, half away from zero.
[[nodiscard]] QString amountText(const base::Decimal& amount);
[[nodiscard]] QString amountText(const ShortDecimal& amount);

/// An amount with all its digits, at least two decimals: "1.234,5678".
[[nodiscard]] QString wholeAmountText(const base::Decimal& amount);

/// A rate: at least four decimals, six at most, "4,9750".
[[nodiscard]] QString rateText(const ShortDecimal& rate);
constexpr int kRatePlaces = 6;

/// A count: "1.234".
[[nodiscard]] QString countText(qint64 count);

}  // namespace velcoran::report
