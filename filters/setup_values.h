#pragma once

#include "report_kind.h"

#include <QDate>
#include <QString>
#include <QStringList>

#include <cstdint>
#include <optional>

namespace velcoran::filters {

/// The working year of a field's text, rounded half to even as the conversion to a 16-bit integer does.
/// @param text  nothing for null
/// @throws Error kInvalidUseOfNull for null, kTypeMismatch for a text that is no number, kOverflow beyond 16 bits
[[nodiscard]] std::int16_t yearOf(const std::optional<QString>& text);

/// Bounds and values of the two date pickers.
struct Period {
    QDate minimum, maximum;  ///< of both
    QDate deLaData, laData;
    friend bool operator==(const Period&, const Period&) = default;
};

/// The default period: from the first day of the working date's month, in the working year whatever the working date's
/// own, to the working date, or to the minimum when that is out of bounds. It may run one month into the next year.
/// @throws Error kOverflow for the year 32767, kInvalidProcedureCall for a year that has no date
[[nodiscard]] Period periodOf(std::int16_t iAn, QDate workingDate);

/// Entries of the lists for a report kind. The first test is for Export, the second for Import: a kind that is
/// neither gets "Furnizor" in one and "Client" in the other.
[[nodiscard]] QStringList reportEntries(ReportKind kind);
[[nodiscard]] QStringList sortEntries(ReportKind kind);

}  // namespace velcoran::filters
