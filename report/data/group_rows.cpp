#include "group_rows.h"

#include "lei_total.h"

#include "base/error.h"

#include <QDate>

#include <algorithm>
#include <numeric>

namespace velcoran::report {

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

/// Null first, then by code points.
bool isNameBefore(const TextPool& pool, std::uint32_t one, std::uint32_t other) {
    if (one == TextPool::kNull || other == TextPool::kNull) return one == TextPool::kNull && other != TextPool::kNull;
    return isBefore(pool.text(one), pool.text(other));
}

/// Order of the groups by their keys: their numbers, sorted. Names are compared where codes are equal alone: sorting
/// all names would take longer than everything else.
std::vector<std::uint32_t> sortedGroups(const PairIndex& pairs, const RowStore& store, Grouping grouping) {
    const std::vector<std::uint32_t> ranks = grouping == Grouping::Day ? dayRanks(store.text(ColumnRole::DataDoc).pool)
                                                                       : store.text(ColumnRole::CodClient).pool.ranks();
    const TextPool& names = store.text(ColumnRole::NumeClient).pool;
    struct Place {
        std::uint32_t rank, name, group;
    };
    std::vector<Place> places(pairs.size());
    for (std::uint32_t group = 0; group < pairs.size(); ++group) {
        places[group] = {ranks[pairs.first(group)], pairs.second(group), group};
    }
    std::sort(places.begin(), places.end(), [&names](const Place& one, const Place& other) {
        return one.rank != other.rank ? one.rank < other.rank : isNameBefore(names, one.name, other.name);
    });
    std::vector<std::uint32_t> order(pairs.size());
    std::transform(places.begin(), places.end(), order.begin(), [](const Place& place) { return place.group; });
    return order;
}

/// Fills keys, starts and rows.
void indexGroups(const RowStore& store, Grouping grouping, GroupIndex& index) {
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
}

/// For each currency the number under which it is summed: a null and an empty currency are one.
std::vector<std::uint32_t> summedCurrencies(const TextPool& pool) {
    std::vector<std::uint32_t> summed(pool.size());
    for (std::uint32_t number = 0; number < pool.size(); ++number) {
        summed[number] = pool.text(number).empty() ? TextPool::kNull : number;
    }
    return summed;
}

/// Finds the currencies of one group after the other.
class CellIndexer {
public:
    CellIndexer(const RowStore& store, GroupIndex& index)
        : m_numbers(store.text(ColumnRole::Moneda).numbers),
          m_summed(summedCurrencies(store.text(ColumnRole::Moneda).pool)),
          m_ranks(store.text(ColumnRole::Moneda).pool.ranks()),
          m_index(index),
          m_groupOf(m_summed.size(), kNoGroup),
          m_cellOf(m_summed.size(), 0) {}

    /// Appends the cells of a group, in the order of its currencies, and notes the cell of each of its rows.
    void add(std::uint32_t group, std::vector<std::uint32_t>& cellOfRow) {
        const auto first = static_cast<std::uint32_t>(m_index.cells.size());
        const std::uint32_t* const from = m_index.rows.data() + m_index.starts[group];
        const std::uint32_t* const to = m_index.rows.data() + m_index.starts[group + 1];
        for (const std::uint32_t* row = from; row != to; ++row) {
            const std::uint32_t currency = m_summed[m_numbers[*row]];
            if (m_groupOf[currency] != group) {
                m_groupOf[currency] = group;
                m_index.cells.push_back({currency, 0});
            }
        }
        std::sort(m_index.cells.begin() + first, m_index.cells.end(),
                  [this](const TotalCell& one, const TotalCell& other) {
                      return m_ranks[one.currency] < m_ranks[other.currency];
                  });
        for (auto cell = first; cell < m_index.cells.size(); ++cell) m_cellOf[m_index.cells[cell].currency] = cell;
        for (const std::uint32_t* row = from; row != to; ++row) {
            const std::uint32_t cell = m_cellOf[m_summed[m_numbers[*row]]];
            cellOfRow[*row] = cell;
            ++m_index.cells[cell].rowCount;
        }
    }

private:
    static constexpr std::uint32_t kNoGroup = 0xFFFFFFFFU;

    const std::vector<std::uint32_t>& m_numbers;
    std::vector<std::uint32_t> m_summed;
    std::vector<std::uint32_t> m_ranks;
    GroupIndex& m_index;
    std::vector<std::uint32_t> m_groupOf;  ///< for each currency the last group that has it
    std::vector<std::uint32_t> m_cellOf;   ///< and its cell there
};

/// Lays out the cells of all groups. @return the cell of each row
std::vector<std::uint32_t> indexCells(const RowStore& store, GroupIndex& index) {
    std::vector<std::uint32_t> cellOfRow(store.rowCount);
    CellIndexer indexer(store, index);
    index.cellStarts.reserve(index.keys.size() + 1);
    index.cellStarts.push_back(0);
    for (std::uint32_t group = 0; group < index.groupCount(); ++group) {
        indexer.add(group, cellOfRow);
        index.cellStarts.push_back(static_cast<std::uint32_t>(index.cells.size()));
    }
    index.cells.shrink_to_fit();
    return cellOfRow;
}

SumColumn sumColumn(const AmountColumn& column, const std::vector<std::uint32_t>& cellOfRow, std::size_t cells) {
    SumColumn sums(static_cast<std::uint32_t>(cells), column.scale());
    for (const AmountColumn::Block& block : column.blocks()) {
        const bool isSameScale = block.scale == column.scale();
        for (std::uint32_t i = 0; i < block.rowCount; ++i) {
            if (block.isNull(i)) continue;
            const std::uint32_t cell = cellOfRow[block.firstRow + i];
            if (isSameScale) {
                sums.add(cell, block.mantissa(i));
            } else {
                sums.add(cell, ShortDecimal{block.mantissa(i), block.scale});
            }
        }
    }
    sums.finish();
    return sums;
}

void addCell(const SumColumn& sums, std::uint32_t cell, int scale, AmountSum& total) {
    if (const std::optional<ShortDecimal> amount = sums.amount(cell)) {
        total.add(amount->mantissa, scale);
    } else {
        total.add(sums.value(cell));
    }
}

std::vector<CurrencyTotal> reportTotals(const RowStore& store, const GroupIndex& index) {
    struct Total {
        std::uint32_t currency = TextPool::kNull;
        qint64 rows = 0;
        std::array<AmountSum, kSumCount> sums;
    };
    const TextPool& pool = store.text(ColumnRole::Moneda).pool;
    const std::vector<std::uint32_t> ranks = pool.ranks();
    std::vector<Total> byRank(pool.size());
    for (std::uint32_t cell = 0; cell < index.cells.size(); ++cell) {
        Total& total = byRank[ranks[index.cells[cell].currency]];
        total.currency = index.cells[cell].currency;
        total.rows += index.cells[cell].rowCount;
        for (std::size_t i = 0; i < kSumCount; ++i) {
            addCell(index.sums[i], cell, store.amounts[i].scale(), total.sums[i]);
        }
    }
    std::vector<CurrencyTotal> totals;
    for (const Total& total : byRank) {
        if (total.rows == 0) continue;
        CurrencyTotal& shown = totals.emplace_back();
        shown.currency = toText(pool.text(total.currency));
        shown.rows = total.rows;
        for (std::size_t i = 0; i < kSumCount; ++i) shown.sums[i] = total.sums[i].value(store.amounts[i].scale());
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
    for (RepeatedTextColumn& column : content->store.texts) column.finish();
    content->store.oddRates.shrink_to_fit();
    content->store.oddRateTexts.finish();
    GroupIndex& index = content->index;
    stopIfAsked(stop);
    indexGroups(content->store, grouping, index);
    stopIfAsked(stop);
    const std::vector<std::uint32_t> cellOfRow = indexCells(content->store, index);
    for (std::size_t sum = 0; sum < kSumCount; ++sum) {
        stopIfAsked(stop);
        index.sums[sum] = sumColumn(content->store.amounts[sum], cellOfRow, index.cells.size());
    }
    content->totals = reportTotals(content->store, index);
    stopIfAsked(stop);
    content->lei = leiTotal(content->store);
    return content;
}

}  // namespace velcoran::report
