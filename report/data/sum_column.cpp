#include "sum_column.h"

#include <algorithm>
#include <limits>

namespace velcoran::report {

void SumColumn::spill(std::uint32_t index) { m_huge[index] += base::Decimal::fromInt128(m_long[index], m_scale); }

void SumColumn::add(std::uint32_t index, const Amount& amount) {
    const int missing = m_scale - amount.scale;
    Int128 mantissa = amount.mantissa;
    if (missing <= kMaxInt128Power && !__builtin_mul_overflow(mantissa, powerOfTen(missing), &mantissa)) {
        add(index, mantissa);
    } else {
        m_huge[index] += amount.toDecimal();
    }
}

void SumColumn::finish() {
    constexpr std::int64_t kLeast = std::numeric_limits<std::int64_t>::min();
    constexpr std::int64_t kMost = std::numeric_limits<std::int64_t>::max();
    const auto isShort = [](Int128 sum) { return sum >= kLeast && sum <= kMost; };
    if (!std::all_of(m_long.begin(), m_long.end(), isShort)) return;
    m_short.reserve(m_long.size());
    for (const Int128 sum : m_long) m_short.push_back(static_cast<std::int64_t>(sum));
    m_long = std::vector<Int128>();  // an empty list would keep the room
}

base::Decimal SumColumn::value(std::uint32_t index) const {
    const base::Decimal sum = base::Decimal::fromInt128(low(index), m_scale);
    const auto huge = m_huge.find(index);
    return huge == m_huge.end() ? sum : sum + huge->second;
}

std::optional<Amount> SumColumn::amount(std::uint32_t index) const {
    if (!m_huge.empty() && m_huge.contains(index)) return std::nullopt;
    return Amount{low(index), m_scale};
}

std::size_t SumColumn::memoryUsed() const {
    constexpr std::size_t kNode = sizeof(std::pair<std::uint32_t, base::Decimal>) + 2 * sizeof(void*);
    return m_long.capacity() * sizeof(Int128) + m_short.capacity() * sizeof(std::int64_t) + m_huge.size() * kNode;
}

}  // namespace velcoran::report
