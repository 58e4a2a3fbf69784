#include "report_data.h"

#include "report_content.h"

#include <algorithm>

namespace velcoran::report {

using namespace Qt::StringLiterals;

std::optional<ColumnRole> columnOf(QStringView name) {
    for (const ColumnRow& row : kColumns) {
        if (name.compare(row.name, Qt::CaseInsensitive) == 0) return row.role;
    }
    return std::nullopt;
}

std::u16string_view RowStore::oddRate(std::uint32_t row) const {
    const auto odd = std::lower_bound(oddRates.begin(), oddRates.end(), std::pair(row, 0U));
    return odd != oddRates.end() && odd->first == row ? oddRateTexts.text(odd->second) : std::u16string_view();
}

std::size_t RowStore::memoryUsed() const {
    std::size_t bytes = numarFactura.memoryUsed() + oddRateTexts.memoryUsed() + oddRates.capacity() * 8;
    for (const RepeatedTextColumn& column : texts) bytes += column.memoryUsed();
    for (const AmountColumn& column : amounts) bytes += column.memoryUsed();
    return bytes;
}

std::size_t GroupIndex::memoryUsed() const {
    std::size_t bytes = 0;
    for (const SumColumn& column : sums) bytes += column.memoryUsed();
    return bytes + keys.capacity() * sizeof(Key) + cells.capacity() * sizeof(TotalCell) +
           (starts.capacity() + rows.capacity() + cellStarts.capacity()) * sizeof(std::uint32_t);
}

QStringList keyTexts(const ReportData::Content& content, std::uint32_t group) {
    const GroupIndex::Key& key = content.index.keys[group];
    const bool isDay = content.grouping == Grouping::Day;
    const ColumnRole role = isDay ? ColumnRole::DataDoc : ColumnRole::CodClient;
    QString first = toText(content.store.text(role).pool.text(key.first));
    if (key.first == TextPool::kNull) first = isDay ? u"(fara data)"_s : u"(fara cod)"_s;
    if (isDay) return {first};
    return {first, toText(content.store.text(ColumnRole::NumeClient).pool.text(key.second))};
}

ReportData::ReportData(std::unique_ptr<const Content> content) : m_content(std::move(content)) {}
ReportData::~ReportData() = default;

qint64 ReportData::rowCount() const { return m_content->store.rowCount; }
qint64 ReportData::groupCount() const { return m_content->index.groupCount(); }
const std::vector<CurrencyTotal>& ReportData::totals() const { return m_content->totals; }
const LeiTotal& ReportData::leiTotal() const { return m_content->lei; }

qint64 ReportData::memoryUsed() const {
    return qint64{sizeof(Content)} + m_content->store.memoryUsed() + m_content->index.memoryUsed();
}

GroupTotal ReportData::group(qint64 group) const {
    const auto number = static_cast<std::uint32_t>(group);
    const GroupIndex& index = m_content->index;
    const RowStore& store = m_content->store;
    GroupTotal result{keyTexts(*m_content, number), index.rowsOf(number), {}};
    for (std::uint32_t i = index.cellStarts[number]; i < index.cellStarts[number + 1]; ++i) {
        const TotalCell& cell = index.cells[i];
        CurrencyTotal total{toText(store.text(ColumnRole::Moneda).pool.text(cell.currency)), cell.rowCount, {}};
        for (std::size_t sum = 0; sum < kSumCount; ++sum) total.sums[sum] = index.sums[sum].value(i);
        result.totals.push_back(std::move(total));
    }
    return result;
}

}  // namespace velcoran::report
