#include "row_reader.h"

#include <QDateTime>

#include <algorithm>
#include <cmath>
#include <cstring>
#include <limits>

namespace velcoran::report {

using namespace Qt::StringLiterals;

namespace {

bool isNull(const ColumnBlock& column, std::uint32_t row) { return column.nulls != nullptr && column.nulls[row] != 0; }

std::u16string_view textAt(const ColumnBlock& column, std::uint32_t row) {
    const auto* characters = static_cast<const char16_t*>(column.values);
    return {characters + column.offsets[row], column.offsets[row + 1] - column.offsets[row]};
}

Int128 wideAt(const ColumnBlock& column, std::uint32_t row) {
    Int128 mantissa = 0;
    std::memcpy(&mantissa, static_cast<const char*>(column.values) + sizeof(Int128) * row, sizeof(Int128));
    return mantissa;
}

std::u16string_view unitsOf(const QString& text) {
    return {reinterpret_cast<const char16_t*>(text.utf16()), static_cast<std::size_t>(text.size())};
}

/// A text as a number is written: with a point, no blanks around.
std::string numberText(std::u16string_view text) {
    QString number = toText(text).trimmed();
    if (!number.contains(u'.')) number.replace(u',', u'.');
    return number.toLatin1().toStdString();
}

/// The number of a finite double, to 15 digits and 38 places. Nothing for one that 128 bits do not hold.
std::optional<ShortDecimal> amountOf(double value) {
    const std::optional<ShortDecimal> amount = ShortDecimal::ofReal(value);
    if (amount || std::fabs(value) >= 1) return amount;
    const std::optional<ShortDecimal> raised = ShortDecimal::ofReal(value * base::kRealPowers[base::kMaxRealPower]);
    if (!raised) return ShortDecimal{};
    const std::optional<ShortDecimal> rest = raised->rounded(base::kMaxDigits - base::kMaxRealPower);
    return rest && rest->mantissa != 0 ? ShortDecimal{rest->mantissa, base::kMaxDigits} : ShortDecimal{};
}

/// The number of a text that is none of at most 38 digits: a binary floating point number that a provider wrote with
/// an exponent may be small, and is dropped behind its last place; no other is changed to be held.
/// @param isNumber  set when the text is a number
std::optional<ShortDecimal> oddAmount(const std::string& text, bool& isNumber) {
    const double value = QByteArray::fromRawData(text.data(), static_cast<qsizetype>(text.size())).toDouble(&isNumber);
    isNumber = isNumber && std::isfinite(value);
    const std::size_t exponentAt = std::min(text.find_first_of("eE"), text.size());
    const auto isDigit = [](char one) { return one >= '0' && one <= '9'; };
    const auto digits = std::count_if(text.data(), text.data() + exponentAt, isDigit);
    const bool isReal = isNumber && exponentAt != text.size() && digits <= base::kRealDigits;
    return isReal ? amountOf(value) : std::nullopt;
}

QString shown(const ShortDecimal& amount) { return QString::fromStdString(amount.toText()); }

QString numberText(const ColumnBlock& column, std::uint32_t row) {
    switch (column.type) {
        case ColumnType::Int64:
            return QString::number(static_cast<const std::int64_t*>(column.values)[row]);
        case ColumnType::Decimal64:
            return shown(ShortDecimal{static_cast<const std::int64_t*>(column.values)[row], column.scale});
        case ColumnType::Decimal128:
            return shown(ShortDecimal{wideAt(column, row), column.scale});
        case ColumnType::Double:
            return QString::fromStdString(base::realText(static_cast<const double*>(column.values)[row]));
        default:
            return {};
    }
}

QString dateText(std::int64_t microseconds) {
    constexpr std::int64_t kMicrosecondsADay = 86'400'000'000;
    std::int64_t days = microseconds / kMicrosecondsADay;
    if (microseconds % kMicrosecondsADay < 0) --days;
    return QDate(1970, 1, 1).addDays(days).toString(u"dd/MM/yyyy"_s);
}

/// One value of a column that is no text, as a text.
QString convertedText(const ColumnBlock& column, std::uint32_t row) {
    if (column.type == ColumnType::DateTime) return dateText(static_cast<const std::int64_t*>(column.values)[row]);
    return numberText(column, row);
}

/// Gathers rows of changing scale and hands them to a column in runs of one scale each.
class AmountRuns {
public:
    AmountRuns(AmountColumn& column, std::vector<Int128>& mantissas, std::vector<std::uint8_t>& nulls)
        : m_column(column), m_mantissas(mantissas), m_nulls(nulls) {
        m_mantissas.clear();
        m_nulls.clear();
    }

    void addNull() {
        m_mantissas.push_back(0);
        m_nulls.push_back(1);
    }
    void add(ShortDecimal amount) {
        if (amount.scale != m_scale && !matchScales(amount)) {
            flush();
            m_scale = amount.scale;
        }
        m_mantissas.push_back(amount.mantissa);
        m_nulls.push_back(0);
    }
    void flush() {
        m_column.append(m_mantissas.data(), m_nulls.data(), static_cast<std::uint32_t>(m_mantissas.size()), m_scale);
        m_mantissas.clear();
        m_nulls.clear();
    }

private:
    static bool raise(Int128& mantissa, int places) {
        const std::optional<Int128> raised = base::timesPowerOfTen(mantissa, places);
        mantissa = raised.value_or(mantissa);
        return raised.has_value();
    }
    /// Brings the amount and what was gathered to one scale. @return false when a mantissa is too long for that
    bool matchScales(ShortDecimal& amount) {
        if (amount.scale < m_scale) return raise(amount.mantissa, m_scale - amount.scale);
        std::vector<Int128> raised = m_mantissas;
        for (Int128& mantissa : raised) {
            if (!raise(mantissa, amount.scale - m_scale)) return false;
        }
        m_mantissas = std::move(raised);
        m_scale = amount.scale;
        return true;
    }

    AmountColumn& m_column;
    std::vector<Int128>& m_mantissas;
    std::vector<std::uint8_t>& m_nulls;
    int m_scale = 0;
};

/// The amount in a column of numbers with a point that moves, or of texts.
/// @param isNumber  set when the value is a number, also one that 128 bits do not hold
std::optional<ShortDecimal> mixedAmount(const ColumnBlock& column, std::uint32_t row, bool& isNumber) {
    if (column.type == ColumnType::Double) {
        const double value = static_cast<const double*>(column.values)[row];
        isNumber = std::isfinite(value);
        return isNumber ? amountOf(value) : std::nullopt;
    }
    if (column.type != ColumnType::Text) return std::nullopt;
    const std::string text = numberText(textAt(column, row));
    const std::optional<ShortDecimal> number = ShortDecimal::parse(text);
    isNumber = number.has_value();
    return number ? number : oddAmount(text, isNumber);
}

/// Blocks whose rows all have the block's scale.
bool addUniform(AmountColumn& column, const ColumnBlock& block, std::uint32_t count, std::vector<Int128>& scratch) {
    scratch.resize(count);
    if (block.type == ColumnType::Decimal128) {
        for (std::uint32_t row = 0; row < count; ++row) scratch[row] = isNull(block, row) ? 0 : wideAt(block, row);
    } else if (block.type == ColumnType::Int64 || block.type == ColumnType::Decimal64) {
        const auto* values = static_cast<const std::int64_t*>(block.values);
        for (std::uint32_t row = 0; row < count; ++row) scratch[row] = isNull(block, row) ? 0 : values[row];
    } else {
        return false;
    }
    column.append(scratch.data(), block.nulls, count, block.type == ColumnType::Int64 ? 0 : block.scale);
    return true;
}

}  // namespace

/// A number that is no number: a rate is shown as it stands, in an amount nothing but blanks may stand for null.
void RowReader::addOddValue(ColumnRole role, const ColumnBlock& column, std::uint32_t row) {
    const QString shown = column.type == ColumnType::Text ? toText(textAt(column, row)) : convertedText(column, row);
    if (role == ColumnRole::CursValutar) {
        m_store.oddRates.emplace_back(m_store.rowCount + row, m_store.oddRateTexts.intern(unitsOf(shown)));
    } else if (!shown.trimmed().isEmpty()) {
        throw base::Error(base::kTypeMismatch,
                          u"Valoarea „%2” din coloana %1 nu este un număr."_s.arg(kColumns[role].name, shown));
    }
}

void RowReader::addAmounts(ColumnRole role, const RowBlock& block) {
    AmountColumn& column = m_store.amounts[amountIndex(role)];
    const std::optional<int> source = m_binding[role];
    if (source && addUniform(column, block.columns[*source], block.rowCount, m_mantissas)) return;
    AmountRuns runs(column, m_mantissas, m_nulls);
    for (std::uint32_t row = 0; row < block.rowCount; ++row) {
        if (!source || isNull(block.columns[*source], row)) {
            runs.addNull();
            continue;
        }
        bool isNumber = false;
        const std::optional<ShortDecimal> amount = mixedAmount(block.columns[*source], row, isNumber);
        if (amount) {
            runs.add(*amount);
        } else if (isNumber) {
            throw base::Error(base::kOverflow,
                              u"O valoare din coloana %1 are prea multe cifre."_s.arg(kColumns[role].name));
        } else {
            addOddValue(role, block.columns[*source], row);
            runs.addNull();
        }
    }
    runs.flush();
}

void RowReader::addTexts(ColumnRole role, const RowBlock& block) {
    const std::optional<int> source = m_binding[role];
    const bool isPlain = role == ColumnRole::NumarFactura;
    const auto append = [&](std::optional<std::u16string_view> text) {
        if (isPlain) {
            m_store.numarFactura.append(text);
        } else {
            m_store.texts[static_cast<std::size_t>(role)].append(text);
        }
    };
    for (std::uint32_t row = 0; row < block.rowCount; ++row) {
        if (!source || isNull(block.columns[*source], row)) {
            append(std::nullopt);
        } else if (block.columns[*source].type == ColumnType::Text) {
            append(textAt(block.columns[*source], row));
        } else {
            append(unitsOf(convertedText(block.columns[*source], row)));
        }
    }
}

void RowReader::add(const RowBlock& block) {
    if (block.rowCount > std::numeric_limits<std::uint32_t>::max() - 1 - m_store.rowCount) {
        throw base::Error(base::kOverflow, u"Interogarea are prea multe rânduri."_s);
    }
    for (const ColumnRow& column : kColumns) {
        if (isAmount(column.role)) {
            addAmounts(column.role, block);
        } else {
            addTexts(column.role, block);
        }
    }
    m_store.rowCount += block.rowCount;
}

RowStore RowReader::take() { return std::exchange(m_store, RowStore()); }

}  // namespace velcoran::report
