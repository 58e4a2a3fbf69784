#include "sum_column.h"

#include <algorithm>

namespace velcoran::report {

void SumColumn::spill(std::uint32_t index) { m_huge[index] += ShortDecimal{m_long[index], m_scale}; }

void SumColumn::add(std::uint32_t index, const ShortDecimal& amount) {
    const auto mantissa = base::timesPowerOfTen(amount.mantissa, m_scale - amount.scale);
    if (mantissa) {
        add(index, *mantissa);
    } else {
        m_huge[index] += amount;
    }
}

void SumColumn::finish() {
    if (!std::all_of(m_long.begin(), m_long.end(), base::fits64)) return;
    m_short.reserve(m_long.size());
    for (const Int128 sum : m_long) m_short.push_back(static_cast<std::int64_t>(sum));
    m_long = std::vector<Int128>();  // an empty list would keep the room
}

base::Decimal SumColumn::value(std::uint32_t index) const {
    const base::Decimal sum = ShortDecimal{low(index), m_scale};
    const auto huge = m_huge.find(index);
    return huge == m_huge.end() ? sum : sum + huge->second;
}

std::optional<ShortDecimal> SumColumn::amount(std::uint32_t index) const {
    if (!m_huge.empty() && m_huge.contains(index)) return std::nullopt;
    return ShortDecimal{low(index), m_scale};
}

std::size_t SumColumn::memoryUsed() const {
    constexpr std::size_t kNode = sizeof(std::pair<std::uint32_t, base::Decimal>) + 2 * sizeof(void*);
    return m_long.capacity() * sizeof(Int128) + m_short.capacity() * sizeof(std::int64_t) + m_huge.size() * kNode;
}

}  // namespace velcoran::report
