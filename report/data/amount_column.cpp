#include "amount_column.h"

#include <algorithm>

namespace velcoran::report {

namespace {

constexpr std::uint32_t kBlockRows = 4096;

void widen(AmountColumn::Block& block) {
    block.isWide = true;
    block.wide.reserve(kBlockRows);
    block.wide.assign(block.narrow.begin(), block.narrow.end());
    block.narrow = std::vector<std::int64_t>();  // an empty list would keep the room
}

void appendNulls(AmountColumn::Block& block, const std::uint8_t* nulls, std::uint32_t count) {
    if (nulls == nullptr || std::none_of(nulls, nulls + count, [](std::uint8_t null) { return null != 0; })) return;
    if (block.nulls.empty()) block.nulls.resize(kBlockRows / 64);
    for (std::uint32_t i = 0; i < count; ++i) {
        const std::uint32_t index = block.rowCount + i;
        if (nulls[i] != 0) block.nulls[index >> 6U] |= std::uint64_t{1} << (index & 63U);
    }
}

}  // namespace

AmountColumn::Block& AmountColumn::blockFor(int scale) {
    if (m_blocks.empty() || m_blocks.back().rowCount == kBlockRows || m_blocks.back().scale != scale) {
        Block block;
        block.firstRow = m_rowCount;
        block.scale = scale;
        m_blocks.push_back(std::move(block));
    }
    return m_blocks.back();
}

void AmountColumn::append(const Int128* mantissas, const std::uint8_t* nulls, std::uint32_t count, int scale) {
    m_scale = std::max(m_scale, scale);
    while (count > 0) {
        Block& block = blockFor(scale);
        const std::uint32_t part = std::min(count, kBlockRows - block.rowCount);
        if (!block.isWide && !std::all_of(mantissas, mantissas + part, base::fits64)) widen(block);
        if (!block.isWide) {
            for (std::uint32_t i = 0; i < part; ++i) block.narrow.push_back(static_cast<std::int64_t>(mantissas[i]));
        } else {
            block.wide.insert(block.wide.end(), mantissas, mantissas + part);
        }
        appendNulls(block, nulls, part);
        block.rowCount += part;
        m_rowCount += part;
        mantissas += part;
        if (nulls != nullptr) nulls += part;
        count -= part;
    }
}

const AmountColumn::Block* AmountColumn::blockOf(std::uint32_t row) const {
    // Nearly always every block is full, and the place of a row is known.
    const std::size_t likely = row / kBlockRows;
    if (likely < m_blocks.size() && row - m_blocks[likely].firstRow < m_blocks[likely].rowCount)
        return &m_blocks[likely];
    const auto after = std::upper_bound(m_blocks.begin(), m_blocks.end(), row,
                                        [](std::uint32_t value, const Block& block) { return value < block.firstRow; });
    return after == m_blocks.begin() ? nullptr : &*std::prev(after);
}

std::optional<ShortDecimal> AmountColumn::at(std::uint32_t row) const {
    const Block* block = blockOf(row);
    if (block == nullptr) return std::nullopt;
    const std::uint32_t index = row - block->firstRow;
    if (index >= block->rowCount || block->isNull(index)) return std::nullopt;
    return ShortDecimal{block->mantissa(index), block->scale};
}

std::size_t AmountColumn::memoryUsed() const {
    std::size_t bytes = m_blocks.capacity() * sizeof(Block);
    for (const Block& block : m_blocks) {
        bytes += block.narrow.capacity() * sizeof(std::int64_t) + block.wide.capacity() * sizeof(Int128) +
                 block.nulls.capacity() * sizeof(std::uint64_t);
    }
    return bytes;
}

void AmountSum::spill(int scale) {
    if (!m_wide) m_wide = std::make_unique<base::Decimal>();
    *m_wide += ShortDecimal{m_low, scale};
    m_low = 0;
}

void AmountSum::add(const ShortDecimal& amount, int scale) {
    const auto mantissa = base::timesPowerOfTen(amount.mantissa, scale - amount.scale);
    if (mantissa) {
        add(*mantissa, scale);
    } else {
        add(base::Decimal(amount));
    }
}

void AmountSum::add(const base::Decimal& amount) {
    if (!m_wide) m_wide = std::make_unique<base::Decimal>();
    *m_wide += amount;
}

base::Decimal AmountSum::value(int scale) const {
    const base::Decimal low = ShortDecimal{m_low, scale};
    return m_wide ? low + *m_wide : low;
}

}  // namespace velcoran::report
