#include "rows.h"

#include "base/error.h"
#include "formats.h"
#include "report/data/amount_text.h"
#include "report/layout/definition_model.h"

#include <algorithm>

namespace velcoran::report {

using namespace Qt::StringLiterals;

namespace {

template <std::size_t kCount>
constexpr std::array<ColumnRow, kCount> inOrderOf(int ColumnRow::*place) {
    std::array<ColumnRow, kCount> columns = {};
    std::size_t count = 0;
    for (const ColumnRow& column : kColumns) {
        if (column.*place < 0) continue;
        columns.at(static_cast<std::size_t>(column.*place)) = column;
        ++count;
    }
    if (count != kCount) throw "columns without a place";
    return columns;
}
constexpr auto kPageColumns = inOrderOf<kPageColumnCount>(&ColumnRow::onPage);
constexpr auto kStatementColumns = inOrderOf<kColumnCount>(&ColumnRow::inStatement);
static_assert(kPageColumns[kFirstSumColumn].kind == CellKind::Amount &&
              kPageColumns[kFirstSumColumn - 1].kind != CellKind::Amount);

constexpr qint64 kTellEvery = 1024;

}  // namespace

std::span<const ColumnRow> pageColumns() { return kPageColumns; }
std::span<const ColumnRow> statementColumns() { return kStatementColumns; }

ExportSource::ExportSource(const Document& document) : m_document(document), m_content(document.data().content()) {
    m_partner = document.texts().request.isClient ? u"client"_s : u"furnizor"_s;
}

QString ExportSource::period() const {
    QString period = m_document.texts().text(ObjectRole::Period);
    return period.remove(u'=').trimmed();
}

QString ExportSource::heading(const ColumnRow& column) const {
    return column.heading.toString().replace(u"%1"_s, m_partner);
}

QString ExportSource::groupTitle(std::uint32_t group) const {
    const QString label = m_document.texts().text(ObjectRole::GroupLabel).simplified();
    return (label + u' ' + m_document.groupText(group)).trimmed();
}

std::span<const std::uint32_t> ExportSource::rowsOf(std::uint32_t group) const {
    const GroupIndex& index = m_content.index;
    return {index.rows.data() + index.starts[group], index.rowsOf(group)};
}

QStringView ExportSource::text(ColumnRole role, std::uint32_t row) const { return toView(store().textOf(role, row)); }

QStringView ExportSource::oddRate(std::uint32_t row) const { return toView(store().oddRate(row)); }

QString ExportSource::shownText(const ColumnRow& column, std::uint32_t row) const {
    if (!isAmount(column.role)) return text(column.role, row).toString();
    const std::optional<ShortDecimal> amount = store().amount(column.role).at(row);
    if (column.kind == CellKind::Rate) return amount ? rateText(*amount) : oddRate(row).toString();
    return amount ? amountText(*amount) : QString();
}

TotalLine totalLine(const CurrencyTotal& total) {
    TotalLine line{u"Total documente: "_s + countText(total.rows), total.currency, {}};
    std::ranges::transform(total.sums, line.amounts.begin(), [](const base::Decimal& sum) { return amountText(sum); });
    return line;
}

QString withoutRateText(const LeiTotal& lei) {
    return lei.rowsWithoutRate == 0 ? QString() : u"fara curs: "_s + countText(lei.rowsWithoutRate);
}

ExportPace::ExportPace(const ExportControl& control, qint64 total) : m_progress(*control.progress), m_total(total) {
    stopIfAsked();
    m_progress.tell(0, m_total);
}

void ExportPace::step() {
    stopIfAsked();
    ++m_done;
    if (m_done % kTellEvery == 0 || m_done == m_total) m_progress.tell(m_done, m_total);
}

void walkReport(const ExportSource& source, ReportSink& sink, ExportControl& control) {
    const bool hasRows = !source.isTotalsAlone();
    ExportPace pace(control, hasRows ? source.data().rowCount() : source.data().groupCount());
    sink.begin();
    for (std::uint32_t group = 0; group < source.content().index.groupCount(); ++group) {
        sink.beginGroup(source.groupTitle(group));
        for (const std::uint32_t row : hasRows ? source.rowsOf(group) : std::span<const std::uint32_t>()) {
            pace.step();
            sink.row(row);
        }
        if (!hasRows) pace.step();
        sink.endGroup(source.data().group(group).totals);
    }
    sink.end();
    pace.stopIfAsked();
}

}  // namespace velcoran::report
