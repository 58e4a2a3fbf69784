#include "form/setup_values.h"

#include "base/error.h"

#include <cmath>
#include <limits>

namespace velcoran::form {

using namespace Qt::StringLiterals;

namespace {

[[noreturn]] void throwOverflow() { throw base::Error(base::kOverflow, u"Overflow"_s); }

}  // namespace

std::int16_t yearOf(const std::optional<QString>& text) {
    using Limits = std::numeric_limits<std::int16_t>;
    if (!text.has_value()) throw base::Error(base::kInvalidUseOfNull, u"Invalid use of Null"_s);
    bool isNumber = false;
    const double value = text->toDouble(&isNumber);
    if (!isNumber || std::isnan(value)) throw base::Error(base::kTypeMismatch, u"Type mismatch"_s);
    const double rounded = std::nearbyint(value);
    if (rounded < Limits::min() || rounded > Limits::max()) throwOverflow();
    return static_cast<std::int16_t>(rounded);
}

Period periodOf(std::int16_t iAn, QDate workingDate) {
    if (iAn == std::numeric_limits<std::int16_t>::max()) throwOverflow();
    const Period period{QDate(iAn, 1, 1), QDate(iAn + 1, 1, 31), QDate(iAn, workingDate.month(), 1), workingDate};
    if (!period.minimum.isValid() || !period.maximum.isValid() || !period.deLaData.isValid())
        throw base::Error(base::kInvalidProcedureCall, u"Invalid procedure call or argument"_s);
    Period bounded = period;
    if (workingDate < period.minimum || workingDate > period.maximum) bounded.laData = period.minimum;
    return bounded;
}

QStringList reportEntries(QStringView reportKind) {
    return {reportKind == u"Export" ? u"Client"_s : u"Furnizor"_s, u"Zi"_s};
}

QStringList sortEntries(QStringView reportKind) {
    return {u"Data"_s, u"Numar Document"_s, reportKind == u"Import" ? u"Furnizor"_s : u"Client"_s};
}

}  // namespace velcoran::form
