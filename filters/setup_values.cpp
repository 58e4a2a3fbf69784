#include "setup_values.h"

#include "base/error.h"

#include <cmath>
#include <limits>

namespace velcoran::filters {

using namespace Qt::StringLiterals;

namespace {

/// The years of SQL Server's date-times; the period runs a month into the year after the last.
constexpr std::int16_t kFirstYear = 1753;
constexpr std::int16_t kLastYear = 9998;

[[noreturn]] void throwOverflow() { throw base::Error(base::kOverflow, u"Anul de lucru este prea mare."_s); }

}  // namespace

std::int16_t yearOf(const std::optional<QString>& text) {
    using Limits = std::numeric_limits<std::int16_t>;
    if (!text.has_value()) throw base::Error(base::kInvalidUseOfNull, u"Anul de lucru lipsește din tabela An."_s);
    bool isNumber = false;
    const double value = text->toDouble(&isNumber);
    if (!isNumber || std::isnan(value))
        throw base::Error(base::kTypeMismatch, u"Anul de lucru din tabela An nu este un număr."_s);
    const double rounded = std::nearbyint(value);
    if (rounded < Limits::min() || rounded > Limits::max()) throwOverflow();
    return static_cast<std::int16_t>(rounded);
}

Period periodOf(std::int16_t iAn, QDate workingDate) {
    if (iAn == std::numeric_limits<std::int16_t>::max()) throwOverflow();
    if (iAn < kFirstYear || iAn > kLastYear) {
        throw base::Error(base::kInvalidProcedureCall, u"Anul de lucru %1 nu poate fi folosit."_s.arg(iAn));
    }
    const Period period{QDate(iAn, 1, 1), QDate(iAn + 1, 1, 31), QDate(iAn, workingDate.month(), 1), workingDate};
    Period bounded = period;
    if (workingDate < period.minimum || workingDate > period.maximum) bounded.laData = period.minimum;
    return bounded;
}

QStringList reportEntries(ReportKind kind) {
    return {kind == ReportKind::Export ? u"Client"_s : u"Furnizor"_s, u"Zi"_s};
}

QStringList sortEntries(ReportKind kind) {
    return {u"Data"_s, u"Numar Document"_s, kind == ReportKind::Import ? u"Furnizor"_s : u"Client"_s};
}

}  // namespace velcoran::filters
