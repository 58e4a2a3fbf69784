#include "rows.h"

#include "base/error.h"
#include "formats.h"
#include "report/data/amount_text.h"
#include "report/layout/definition_model.h"

#include <algorithm>

namespace velcoran::report {

using namespace Qt::StringLiterals;

namespace {

constexpr ExportColumn kPageColumns[] = {
    {ColumnRole::CodClient, CellKind::Text, u"Cod %1", 14},
    {ColumnRole::NumeClient, CellKind::Text, u"Denumire %1", 40},
    {ColumnRole::NumarFactura, CellKind::Text, u"Numar document", 18},
    {ColumnRole::DataDoc, CellKind::Date, u"Data document", 14},
    {ColumnRole::Moneda, CellKind::Text, u"Moneda", 9},
    {ColumnRole::CursValutar, CellKind::Rate, u"Curs valutar", 13},
    {ColumnRole::ValoareNeta, CellKind::Amount, u"Valoare neta", 18},
    {ColumnRole::ValoareTVA, CellKind::Amount, u"Valoare TVA", 18},
    {ColumnRole::ValoareTaxe, CellKind::Amount, u"Valoare taxe", 18},
    {ColumnRole::ValoareBruta, CellKind::Amount, u"Valoare bruta", 18},
};
static_assert(std::size(kPageColumns) == kPageColumnCount);

constexpr ExportColumn kStatementColumns[] = {
    {ColumnRole::TipRaport, CellKind::Text, u"Tip raport", 10},
    kPageColumns[0],
    kPageColumns[1],
    kPageColumns[3],
    kPageColumns[2],
    kPageColumns[6],
    kPageColumns[7],
    kPageColumns[9],
    kPageColumns[4],
    kPageColumns[5],
    kPageColumns[8],
};
static_assert(std::size(kStatementColumns) == kColumnCount);

constexpr qint64 kTellEvery = 1024;

QStringView toView(std::u16string_view text) { return {text.data(), static_cast<qsizetype>(text.size())}; }

/// Text of a text object as it stands in the report, on one line.
QString objectText(const ReportTexts& texts, const QString& name) {
    const DefinitionObject* object = texts.definition->object(name);
    return texts.texts.value(name, object == nullptr ? QString() : object->text).simplified();
}

}  // namespace

std::span<const ExportColumn> pageColumns() { return kPageColumns; }
std::span<const ExportColumn> statementColumns() { return kStatementColumns; }

ExportSource::ExportSource(const Document& document) : m_document(document), m_content(document.data().content()) {
    m_partner = document.texts().isClient ? u"client"_s : u"furnizor"_s;
}

QString ExportSource::period() const {
    QString period = m_document.texts().unboundTexts.value(u"UnboundString6"_s);
    return period.remove(u'=').trimmed();
}

QString ExportSource::heading(const ExportColumn& column) const {
    QString text = QString::fromUtf16(column.heading);
    return text.replace(u"%1"_s, m_partner);
}

QString ExportSource::groupTitle(std::uint32_t group) const {
    const bool isDay = m_content.grouping == Grouping::Day;
    const QString label = isDay ? u"DATA:"_s : objectText(m_document.texts(), u"Text6"_s);
    return (label + u' ' + m_document.groupText(group)).trimmed();
}

std::span<const std::uint32_t> ExportSource::rowsOf(std::uint32_t group) const {
    const GroupIndex& index = m_content.index;
    return {index.rows.data() + index.starts[group], index.rowsOf(group)};
}

QStringView ExportSource::text(ColumnRole role, std::uint32_t row) const {
    return toView(role == ColumnRole::NumarFactura ? store().numarFactura.at(row) : store().text(role).at(row));
}

QStringView ExportSource::oddRate(std::uint32_t row) const {
    const auto& rates = store().oddRates;
    if (rates.empty()) return {};
    const auto odd = std::lower_bound(rates.begin(), rates.end(), std::pair(row, 0U));
    return odd != rates.end() && odd->first == row ? toView(store().oddRateTexts.text(odd->second)) : QStringView();
}

QString ExportSource::shownText(const ExportColumn& column, std::uint32_t row) const {
    if (!isAmount(column.role)) return text(column.role, row).toString();
    const std::optional<ShortDecimal> amount = store().amount(column.role).at(row);
    if (column.kind == CellKind::Rate) return amount ? rateText(*amount) : oddRate(row).toString();
    return amount ? amountText(*amount) : QString();
}

TotalLine totalLine(const CurrencyTotal& total) {
    return {u"Total documente: "_s + countText(total.rows),
            total.currency,
            {amountText(total.valoareNeta), amountText(total.valoareTVA), amountText(total.valoareTaxe),
             amountText(total.valoareBruta)}};
}

QString withoutRateText(const LeiTotal& lei) {
    return lei.rowsWithoutRate == 0 ? QString() : u"fara curs: "_s + countText(lei.rowsWithoutRate);
}

ExportPace::ExportPace(ExportControl& control, qint64 total) : m_control(control), m_total(total) {
    stopIfAsked();
    if (m_control.tell) m_control.tell(0, m_total);
}

void ExportPace::step() {
    stopIfAsked();
    ++m_done;
    if (m_control.tell && (m_done % kTellEvery == 0 || m_done == m_total)) m_control.tell(m_done, m_total);
}

void ExportPace::stopIfAsked() const {
    if (m_control.stop.load(std::memory_order_relaxed)) throw base::Cancelled();
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
