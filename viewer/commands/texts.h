#pragma once

#include <QString>

namespace velcoran::viewer {

/// A number as it is written in Romanian, with points between thousands: "12.345".
[[nodiscard]] QString groupedNumber(qint64 number);
/// A number of rows with the noun in its right form: "1 rând", "2 rânduri", "20 de rânduri".
[[nodiscard]] QString rowsText(qint64 rows);
/// Minutes and seconds, "0:07"; hours in front where there are any.
[[nodiscard]] QString durationText(qint64 milliseconds);
/// "3 din 57".
[[nodiscard]] QString pageText(int page, int pageCount);
/// The page that a person means by "3", "3 din 57" or " 3/57"; 0 for anything else.
[[nodiscard]] int pageOfText(const QString& text);

}  // namespace velcoran::viewer
