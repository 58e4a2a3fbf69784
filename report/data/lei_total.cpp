#include "lei_total.h"

#include <limits>

namespace velcoran::report {

namespace {

constexpr int kLeiPlaces = 2;

/// The currencies that are lei.
std::vector<bool> leiCurrencies(const TextPool& pool) {
    std::vector<bool> isLei(pool.size(), false);
    for (std::uint32_t number = 1; number < pool.size(); ++number) {
        const QStringView name = toView(pool.text(number)).trimmed();
        for (const QStringView lei : {QStringView(u"RON"), QStringView(u"LEI"), QStringView(u"ROL")}) {
            if (name.compare(lei, Qt::CaseInsensitive) == 0) isLei[number] = true;
        }
    }
    return isLei;
}

/// Walks a column row by row without looking for the block each time.
class Cursor {
public:
    explicit Cursor(const AmountColumn& column) : m_block(column.blocks().begin()), m_end(column.blocks().end()) {}

    /// @param row  0, 1, 2 and so on
    std::optional<ShortDecimal> next(std::uint32_t row) {
        while (m_block != m_end && row >= m_block->firstRow + m_block->rowCount) ++m_block;
        if (m_block == m_end) return std::nullopt;
        const std::uint32_t index = row - m_block->firstRow;
        if (m_block->isNull(index)) return std::nullopt;
        return ShortDecimal{m_block->mantissa(index), m_block->scale};
    }

private:
    std::vector<AmountColumn::Block>::const_iterator m_block;
    std::vector<AmountColumn::Block>::const_iterator m_end;
};

}  // namespace

LeiTotal leiTotal(const RowStore& store) {
    const RepeatedTextColumn& moneda = store.text(ColumnRole::Moneda);
    const std::vector<bool> isLei = leiCurrencies(moneda.pool);
    const AmountColumn& grossColumn = store.amount(ColumnRole::ValoareBruta);
    const AmountColumn& rateColumn = store.amount(ColumnRole::CursValutar);
    Cursor gross(grossColumn);
    Cursor rate(rateColumn);
    const int scale = grossColumn.scale() + rateColumn.scale();
    AmountSum sum;
    LeiTotal result;
    for (std::uint32_t row = 0; row < store.rowCount; ++row) {
        const std::optional<ShortDecimal> amount = gross.next(row);
        std::optional<ShortDecimal> factor = rate.next(row);
        if (isLei[moneda.numbers[row]]) factor = ShortDecimal{1, 0};
        if (!factor || factor->mantissa == 0) {
            ++result.rowsWithoutRate;
            continue;
        }
        if (!amount) continue;
        Int128 product = 0;
        if (__builtin_mul_overflow(amount->mantissa, factor->mantissa, &product)) {
            sum.add(base::Decimal(*amount) * *factor);
        } else {
            sum.add(ShortDecimal{product, amount->scale + factor->scale}, scale);
        }
    }
    result.value = sum.value(scale).rounded(kLeiPlaces);
    return result;
}

}  // namespace velcoran::report
