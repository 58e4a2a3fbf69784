#pragma once

#include "report/data/amount_column.h"

#include <QByteArray>
#include <QStringView>

#include <optional>

namespace velcoran::report {

/// An amount with all its digits: no grouping, trailing zeros dropped down to a number of places.
[[nodiscard]] QByteArray exactText(const ShortDecimal& amount, int minimumPlaces, char decimalSeparator);
[[nodiscard]] QByteArray exactText(const base::Decimal& amount, int minimumPlaces, char decimalSeparator);

/// The nearest binary number; nothing for more than 15 significant digits, which it could not hold.
[[nodiscard]] std::optional<double> spreadsheetNumber(const ShortDecimal& amount);
[[nodiscard]] std::optional<double> spreadsheetNumber(const base::Decimal& amount);

/// Day number of a spreadsheet for a text dd/mm/yyyy; nothing for any other text and for days before March 1900, which
/// spreadsheets count differently.
[[nodiscard]] std::optional<double> spreadsheetDay(QStringView text);

}  // namespace velcoran::report
