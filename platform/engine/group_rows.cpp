#include "platform/engine/group_rows.h"

#include "platform/engine/lei_total.h"

#include "base/error.h"

#include <QDate>

#include <algorithm>
#include <numeric>

namespace velcoran::engine {

namespace {

using Key = GroupIndex::Key;

void stopIfAsked(const std::atomic_bool& stop) {
    if (stop.load(std::memory_order_relaxed)) throw base::Cancelled();
}

/// Small numbers for pairs of small numbers, in the order of their first appearance.
class PairIndex {
public:
    PairIndex() : m_slots(kFirstSlots, 0) {}

    std::uint32_t numberOf(std::uint32_t first, std::uint32_t second) {
        const std::uint64_t key = (std::uint64_t{first} << 32U) | second;
        if (!m_keys.empty() && m_keys[m_last] == key) return m_last;
        std::size_t slot = slotOf(key);
        for (; m_slots[slot] != 0; slot = (slot + 1) & (m_slots.size() - 1)) {
            if (m_keys[m_slots[slot] - 1] == key) return m_last = m_slots[slot] - 1;
        }
        m_last = static_cast<std::uint32_t>(m_keys.size());
        m_keys.push_back(key);
        m_slots[slot] = m_last + 1;
        if (m_keys.size() * 2 > m_slots.size()) grow();
        return m_last;
    }
    [[nodiscard]] std::uint32_t size() const { return static_cast<std::uint32_t>(m_keys.size()); }
    [[nodiscard]] std::uint32_t first(std::uint32_t number) const {
        return static_cast<std::uint32_t>(m_keys[number] >> 32U);
    }
    [[nodiscard]] std::uint32_t second(std::uint32_t number) const {
        return static_cast<std::uint32_t>(m_keys[number]);
    }

private:
    static constexpr std::size_t kFirstSlots = 256;

    [[nodiscard]] std::size_t slotOf(std::uint64_t key) const {
        constexpr std::uint64_t kGoldenRatio = 0x9E3779B97F4A7C15U;  // spreads neighbouring numbers
        return static_cast<std::size_t>((key * kGoldenRatio) >> 24U) & (m_slots.size() - 1);
    }
    void grow() {
        m_slots.assign(m_slots.size() * 2, 0);
        for (std::uint32_t number = 0; number < m_keys.size(); ++number) {
            std::size_t slot = slotOf(m_keys[number]);
            while (m_slots[slot] != 0) slot = (slot + 1) & (m_slots.size() - 1);
            m_slots[slot] = number + 1;
        }
    }

    std::vector<std::uint64_t> m_keys;
    std::vector<std::uint32_t> m_slots;
    std::uint32_t m_last = 0;
};

/// Places of the days: null, then what is no day by code points, then the calendar.
std::vector<std::uint32_t> dayRanks(const TextPool& pool) {
    const std::vector<std::uint32_t> textRanks = pool.ranks();
    std::vector<std::uint32_t> ranks(pool.size());
    for (std::uint32_t number = 0; number < pool.size(); ++number) {
        const auto day = number == TextPool::kNull ? std::nullopt : dayOf(pool.text(number));
        ranks[number] = day ? pool.size() + *day : textRanks[number];
    }
    return ranks;
}

/// Order of the groups by their keys: their numbers, sorted.
std::vector<std::uint32_t> sortedGroups(const PairIndex& pairs, const RowStore& store, Grouping grouping) {
    const bool isDay = grouping == Grouping::Day;
    const std::vector<std::uint32_t> first =
        isDay ? dayRanks(store.text(ColumnRole::DataDoc).pool) : store.text(ColumnRole::CodClient).pool.ranks();
    const std::vector<std::uint32_t> second =
        isDay ? std::vector<std::uint32_t>(1, 0) : store.text(ColumnRole::NumeClient).pool.ranks();
    std::vector<std::pair<std::uint64_t, std::uint32_t>> places(pairs.size());
    for (std::uint32_t group = 0; group < pairs.size(); ++group) {
        places[group] = {(std::uint64_t{first[pairs.first(group)]} << 32U) | second[pairs.second(group)], group};
    }
    std::sort(places.begin(), places.end());
    std::vector<std::uint32_t> order(pairs.size());
    std::transform(places.begin(), places.end(), order.begin(), [](const auto& place) { return place.second; });
    return order;
}

/// Fills keys, starts and rows. @return the group of each row
std::vector<std::uint32_t> indexGroups(const RowStore& store, Grouping grouping, GroupIndex& index) {
    const bool isDay = grouping == Grouping::Day;
    const auto& first = store.text(isDay ? ColumnRole::DataDoc : ColumnRole::CodClient).numbers;
    const auto& second = store.text(ColumnRole::NumeClient).numbers;
    PairIndex pairs;
    std::vector<std::uint32_t> groups(store.rowCount);
    for (std::uint32_t row = 0; row < store.rowCount; ++row) {
        groups[row] = pairs.numberOf(first[row], isDay ? TextPool::kNull : second[row]);
    }
    const std::vector<std::uint32_t> order = sortedGroups(pairs, store, grouping);
    std::vector<std::uint32_t> places(order.size());
    index.keys.reserve(order.size());
    for (std::uint32_t place = 0; place < order.size(); ++place) {
        places[order[place]] = place;
        index.keys.push_back({pairs.first(order[place]), pairs.second(order[place])});
    }
    index.starts.assign(order.size() + 1, 0);
    for (std::uint32_t& group : groups) {
        group = places[group];
        ++index.starts[group + 1];
    }
    std::partial_sum(index.starts.begin(), index.starts.end(), index.starts.begin());
    std::vector<std::uint32_t> next(index.starts.begin(), index.starts.end() - 1);
    index.rows.resize(store.rowCount);
    for (std::uint32_t row = 0; row < store.rowCount; ++row) index.rows[next[groups[row]]++] = row;
    return groups;
}

/// For each currency the number under which it is summed: a null and an empty currency are one.
std::vector<std::uint32_t> summedCurrencies(const TextPool& pool) {
    std::vector<std::uint32_t> summed(pool.size());
    for (std::uint32_t number = 0; number < pool.size(); ++number) {
        summed[number] = pool.text(number).empty() ? TextPool::kNull : number;
    }
    return summed;
}

/// Lays out the cells of all groups. @return the cell of each row
std::vector<std::uint32_t> indexCells(const RowStore& store, const std::vector<std::uint32_t>& groups,
                                      GroupIndex& index) {
    const RepeatedTextColumn& moneda = store.text(ColumnRole::Moneda);
    const std::vector<std::uint32_t> summed = summedCurrencies(moneda.pool);
    PairIndex pairs;
    std::vector<std::uint32_t> cellOfRow(store.rowCount);
    for (std::uint32_t row = 0; row < store.rowCount; ++row) {
        cellOfRow[row] = pairs.numberOf(groups[row], summed[moneda.numbers[row]]);
    }
    const std::vector<std::uint32_t> ranks = moneda.pool.ranks();
    std::vector<std::pair<std::uint64_t, std::uint32_t>> order(pairs.size());
    for (std::uint32_t cell = 0; cell < pairs.size(); ++cell) {
        order[cell] = {(std::uint64_t{pairs.first(cell)} << 32U) | ranks[pairs.second(cell)], cell};
    }
    std::sort(order.begin(), order.end());
    index.cells.resize(pairs.size());
    index.cellStarts.assign(index.keys.size() + 1, 0);
    std::vector<std::uint32_t> places(pairs.size());
    for (std::uint32_t place = 0; place < order.size(); ++place) {
        const std::uint32_t cell = order[place].second;
        places[cell] = place;
        index.cells[place].currency = pairs.second(cell);
        ++index.cellStarts[pairs.first(cell) + 1];
    }
    std::partial_sum(index.cellStarts.begin(), index.cellStarts.end(), index.cellStarts.begin());
    for (std::uint32_t& cell : cellOfRow) {
        cell = places[cell];
        ++index.cells[cell].rowCount;
    }
    return cellOfRow;
}

void sumColumn(const AmountColumn& column, std::size_t sum, const std::vector<std::uint32_t>& cellOfRow,
               std::vector<TotalCell>& cells) {
    const int scale = column.scale();
    for (const AmountColumn::Block& block : column.blocks()) {
        const bool isSameScale = block.scale == scale;
        for (std::uint32_t i = 0; i < block.rowCount; ++i) {
            if (block.isNull(i)) continue;
            AmountSum& target = cells[cellOfRow[block.firstRow + i]].sums[sum];
            if (isSameScale) {
                target.add(block.mantissa(i), scale);
            } else {
                target.add(Amount{block.mantissa(i), block.scale}, scale);
            }
        }
    }
}

std::vector<CurrencyTotal> reportTotals(const RowStore& store, const GroupIndex& index) {
    const TextPool& pool = store.text(ColumnRole::Moneda).pool;
    const std::vector<std::uint32_t> ranks = pool.ranks();
    std::vector<TotalCell> sums(pool.size());
    for (const TotalCell& cell : index.cells) {
        TotalCell& sum = sums[ranks[cell.currency]];
        sum.currency = cell.currency;
        sum.rowCount += cell.rowCount;
        for (std::size_t i = 0; i < kSumCount; ++i) sum.sums[i].add(cell.sums[i], store.amounts[i].scale());
    }
    std::vector<CurrencyTotal> totals;
    for (const TotalCell& sum : sums) {
        if (sum.rowCount == 0) continue;
        const std::u16string_view text = pool.text(sum.currency);
        totals.push_back({QString(reinterpret_cast<const QChar*>(text.data()), static_cast<qsizetype>(text.size())),
                          sum.rowCount, sum.sums[0].value(store.amounts[0].scale()),
                          sum.sums[1].value(store.amounts[1].scale()), sum.sums[2].value(store.amounts[2].scale()),
                          sum.sums[3].value(store.amounts[3].scale())});
    }
    return totals;
}

int twoDigits(std::u16string_view text, std::size_t at) { return (text[at] - u'0') * 10 + (text[at + 1] - u'0'); }

}  // namespace

std::optional<std::uint32_t> dayOf(std::u16string_view text) {
    if (text.size() != 10 || text[2] != u'/' || text[5] != u'/') return std::nullopt;
    for (const std::size_t at : {0U, 1U, 3U, 4U, 6U, 7U, 8U, 9U}) {
        if (text[at] < u'0' || text[at] > u'9') return std::nullopt;
    }
    const int year = twoDigits(text, 6) * 100 + twoDigits(text, 8);
    const QDate date(year, twoDigits(text, 3), twoDigits(text, 0));
    if (!date.isValid() || year == 0) return std::nullopt;
    return static_cast<std::uint32_t>(date.toJulianDay());
}

std::unique_ptr<const ReportData::Content> groupRows(RowStore store, Grouping grouping, const std::atomic_bool& stop) {
    auto content = std::make_unique<ReportData::Content>();
    content->grouping = grouping;
    content->store = std::move(store);
    GroupIndex& index = content->index;
    stopIfAsked(stop);
    std::vector<std::uint32_t> groups = indexGroups(content->store, grouping, index);
    stopIfAsked(stop);
    const std::vector<std::uint32_t> cellOfRow = indexCells(content->store, groups, index);
    groups = {};
    for (std::size_t sum = 0; sum < kSumCount; ++sum) {
        stopIfAsked(stop);
        sumColumn(content->store.amounts[sum], sum, cellOfRow, index.cells);
    }
    content->totals = reportTotals(content->store, index);
    stopIfAsked(stop);
    content->lei = leiTotal(content->store);
    return content;
}

}  // namespace velcoran::engine
