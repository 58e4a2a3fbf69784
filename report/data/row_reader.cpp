#include "row_reader.h"

#include "base/real_text.h"

#include <QDateTime>

#include <algorithm>
#include <charconv>
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

QString toText(std::u16string_view text) {
    return QString(reinterpret_cast<const QChar*>(text.data()), static_cast<qsizetype>(text.size()));
}

std::u16string_view toView(const QString& text) {
    return {reinterpret_cast<const char16_t*>(text.utf16()), static_cast<std::size_t>(text.size())};
}

/// A decimal that 128 bits hold; trailing zeros behind the point do not count.
std::optional<Amount> narrowed(const base::Decimal& value) {
    const std::optional<base::Decimal> shortest = base::Decimal::parse(value.toShortestText());
    if (!shortest || shortest->scale() > kMaxInt128Power) return std::nullopt;
    const auto& mantissa = shortest->mantissa();
    if (abs(mantissa) > base::Decimal::fromInt128(powerOfTen(kMaxInt128Power) - 1, 0).mantissa()) return std::nullopt;
    return Amount{static_cast<Int128>(mantissa), shortest->scale()};
}

/// A text as a number is written: with a point, no blanks around.
QString numberText(std::u16string_view text) {
    QString number = toText(text).trimmed();
    if (!number.contains(u'.')) number.replace(u',', u'.');
    return number;
}

/// A binary floating point number that a provider wrote with an exponent, having no decimal for it.
std::optional<double> parseReal(const QString& text) {
    const qsizetype exponentAt = text.indexOf(u'e', 0, Qt::CaseInsensitive);
    if (exponentAt < 0) return std::nullopt;
    const auto digitCount =
        std::count_if(text.begin(), text.begin() + exponentAt, [](QChar one) { return one.isDigit(); });
    if (digitCount > base::kRealDigits) return std::nullopt;
    bool isReal = false;
    const double value = text.toDouble(&isReal);
    return isReal && std::isfinite(value) ? std::optional(value) : std::nullopt;
}

/// The number of a finite double, to 15 digits. Nothing for one that 128 bits do not hold.
std::optional<Amount> amountOf(double value) {
    std::array<char, 32> buffer{};
    const auto end = std::to_chars(buffer.data(), buffer.data() + buffer.size(), value, std::chars_format::scientific,
                                   base::kRealDigits - 1);
    Int128 mantissa = 0;
    const char* at = buffer.data();
    for (; *at != 'e'; ++at) {
        if (*at >= '0' && *at <= '9') mantissa = mantissa * 10 + (*at - '0');
    }
    if (mantissa == 0) return Amount{};
    int exponent = 0;
    std::from_chars(at[1] == '+' ? at + 2 : at + 1, end.ptr, exponent);
    int scale = base::kRealDigits - 1 - exponent;
    for (; scale > 0 && mantissa % 10 == 0; --scale) mantissa /= 10;
    if (scale > kMaxInt128Power + base::kRealDigits) return Amount{};
    if (scale > kMaxInt128Power) {
        mantissa /= powerOfTen(scale - kMaxInt128Power);
        scale = kMaxInt128Power;
    }
    if (scale < base::kRealDigits - kMaxInt128Power) return std::nullopt;
    if (scale < 0) mantissa *= powerOfTen(-scale);
    return Amount{value < 0 ? -mantissa : mantissa, std::max(scale, 0)};
}

QString numberText(const ColumnBlock& column, std::uint32_t row) {
    switch (column.type) {
        case ColumnType::Int64:
            return QString::number(static_cast<const std::int64_t*>(column.values)[row]);
        case ColumnType::Decimal64:
            return base::Decimal::fromInt64(static_cast<const std::int64_t*>(column.values)[row], column.scale)
                .toShortestText();
        case ColumnType::Decimal128:
            return base::Decimal::fromInt128(wideAt(column, row), column.scale).toShortestText();
        case ColumnType::Double:
            return base::realText(static_cast<const double*>(column.values)[row]);
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
    void add(Amount amount) {
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
        Int128 raised = 0;
        if (__builtin_mul_overflow(mantissa, powerOfTen(places), &raised)) return false;
        mantissa = raised;
        return true;
    }
    /// Brings the amount and what was gathered to one scale. @return false when a mantissa is too long for that
    bool matchScales(Amount& amount) {
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
std::optional<Amount> mixedAmount(const ColumnBlock& column, std::uint32_t row, bool& isNumber) {
    if (column.type == ColumnType::Double) {
        const double value = static_cast<const double*>(column.values)[row];
        isNumber = std::isfinite(value);
        return isNumber ? amountOf(value) : std::nullopt;
    }
    if (column.type != ColumnType::Text) return std::nullopt;
    const QString text = numberText(textAt(column, row));
    if (const std::optional<double> real = parseReal(text)) {
        isNumber = true;
        return amountOf(*real);
    }
    const std::optional<base::Decimal> number = base::Decimal::parse(text);
    isNumber = number.has_value();
    return number ? narrowed(*number) : std::nullopt;
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
        m_store.oddRates.emplace_back(m_store.rowCount + row, m_store.oddRateTexts.intern(toView(shown)));
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
        const std::optional<Amount> amount = mixedAmount(block.columns[*source], row, isNumber);
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
            append(toView(convertedText(block.columns[*source], row)));
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
