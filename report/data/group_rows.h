#pragma once

#include "report_content.h"

#include <atomic>

namespace velcoran::report {

/// Groups and totals of rows that have all come.
/// @param stop  ends the work with base::Cancelled
/// @throws Error kOverflow when a total does not fit 256 bits
[[nodiscard]] std::unique_ptr<const ReportData::Content> groupRows(RowStore store, Grouping grouping,
                                                                   const std::atomic_bool& stop);

/// Day of a text dd/mm/yyyy of the calendar, as a number that rises with the days; nothing for any other text.
[[nodiscard]] std::optional<std::uint32_t> dayOf(std::u16string_view text);

}  // namespace velcoran::report
