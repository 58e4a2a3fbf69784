#include "formats.h"
#include "markup.h"
#include "report/data/amount_text.h"
#include "rows.h"
#include "system/durable_file.h"
#include "texts.h"
#include "writers.h"

namespace velcoran::report {

using namespace Qt::StringLiterals;

namespace {

constexpr char kStart[] = R"(<!DOCTYPE html>
<html lang="ro">
<head>
<meta charset="utf-8">
<meta name="viewport" content="width=device-width, initial-scale=1">
<title>)";

constexpr char kStyle[] = R"(</title>
<style>
body { font: 10pt Arial, "Liberation Sans", sans-serif; margin: 1.5em; color: #000; background: #fff; }
h1 { font-size: 14pt; margin: 0 0 .3em; }
.filters { margin: .3em 0 1em; padding-left: 1.2em; }
table { border-collapse: collapse; width: 100%; }
th, td { padding: .15em .5em; text-align: left; vertical-align: top; white-space: pre-wrap; }
thead th { position: sticky; top: 0; background: #e8e8e8; border-top: 2px solid #000; border-bottom: 2px solid #000; }
.n { text-align: right; white-space: nowrap; font-variant-numeric: tabular-nums; }
tr.group th { padding-top: .8em; }
tr.total td { font-weight: bold; }
tbody.report tr:first-child th { padding-top: 1em; border-top: 2px solid #000; }
tbody.report td { font-weight: bold; }
@media print { @page { size: A4 landscape; } thead { display: table-header-group; } tr { break-inside: avoid; }
  thead th { position: static; } }
</style>
</head>
<body>
)";

/// Columns that the label of a line of totals takes, in front of the currency, and that of the total in lei.
constexpr int kTotalLabelColumns = 4;
constexpr int kLeiLabelColumns = 2;

/// An attribute of a cell over several columns.
QByteArray span(int columns) { return " colspan=\"" + QByteArray::number(columns) + '"'; }

class HtmlSink final : public ReportSink {
public:
    HtmlSink(const ExportSource& source, system::DurableFile& output) : m_source(source), m_output(output) {}

    void begin() override {
        m_text = kStart;
        appendEscaped(m_text, m_source.title());
        m_text += kStyle;
        element("h1", m_source.title());
        if (!m_source.period().isEmpty()) element("p class=\"period\"", u"Perioada: "_s + m_source.period());
        writeFilters();
        m_text += "<table>\n<thead>\n<tr>";
        for (const ColumnRow& column : pageColumns()) {
            cell(isAmount(column.role) ? "th scope=\"col\" class=\"n\"" : "th scope=\"col\"", m_source.heading(column));
        }
        m_text += "</tr>\n</thead>\n";
        flush();
    }
    void beginGroup(const QString& title) override {
        m_text += "<tbody class=\"group\">\n<tr class=\"group\">";
        cell("th scope=\"rowgroup\"" + span(kPageColumnCount), title);
        m_text += "</tr>\n";
    }
    void row(std::uint32_t row) override {
        m_text += "<tr>";
        for (const ColumnRow& column : pageColumns()) {
            cell(isAmount(column.role) ? "td class=\"n\"" : "td", m_source.shownText(column, row));
        }
        m_text += "</tr>\n";
        flush();
    }
    void endGroup(const std::vector<CurrencyTotal>& totals) override {
        writeTotals(totals);
        m_text += "</tbody>\n";
        flush();
    }
    void end() override {
        m_text += "<tbody class=\"report\">\n";
        if (m_source.data().rowCount() == 0) heading(QString::fromUtf16(kNoDocuments));
        heading(QString::fromUtf16(kGrandTotal));
        writeTotals(m_source.data().totals());
        writeLei(m_source.data().leiTotal());
        m_text += "</tbody>\n</table>\n</body>\n</html>\n";
        flush();
    }

private:
    void flush() {
        m_output.write(m_text);
        m_text.resize(0);
    }
    /// @param tag  with its attributes
    void cell(QByteArrayView tag, QStringView text) {
        m_text += '<';
        m_text += tag;
        m_text += '>';
        appendEscaped(m_text, text);
        m_text += "</";
        m_text += tag.first(tag.contains(' ') ? tag.indexOf(' ') : tag.size());
        m_text += '>';
    }
    void element(QByteArrayView tag, QStringView text) {
        cell(tag, text);
        m_text += '\n';
    }
    void heading(const QString& text) {
        m_text += "<tr>";
        cell("th" + span(kPageColumnCount), text);
        m_text += "</tr>\n";
    }
    void writeFilters() {
        if (m_source.filters().isEmpty()) return;
        m_text += "<ul class=\"filters\">\n";
        for (const QString& filter : m_source.filters()) element("li", filter);
        m_text += "</ul>\n";
    }
    void writeTotals(const std::vector<CurrencyTotal>& totals) {
        for (const CurrencyTotal& total : totals) {
            const TotalLine line = totalLine(total);
            m_text += "<tr class=\"total\">";
            cell("td" + span(kTotalLabelColumns), line.label);
            cell("td" + span(kFirstSumColumn - kTotalLabelColumns), line.currency);
            for (const QString& amount : line.amounts) cell("td class=\"n\"", amount);
            m_text += "</tr>\n";
        }
    }
    void writeLei(const LeiTotal& lei) {
        m_text += "<tr class=\"lei\">";
        cell("td" + span(kLeiLabelColumns), QString::fromUtf16(kTotalInLei));
        cell("td" + span(kPageColumnCount - kLeiLabelColumns - 1), withoutRateText(lei));
        cell("td class=\"n\"", amountText(lei.value));
        m_text += "</tr>\n";
    }

    const ExportSource& m_source;
    system::DurableFile& m_output;
    QByteArray m_text;
};

}  // namespace

void writeHtml(const Document& document, const QString& file, ExportControl& control) {
    const ExportSource source(document);
    system::DurableFile output(file);
    HtmlSink sink(source, output);
    walkReport(source, sink, control);
    output.commit();
}

}  // namespace velcoran::report
