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

/// Columns that the label of a line of totals takes, in front of the currency, and that of the total in lei.
constexpr int kTotalLabelColumns = 4;
constexpr int kLeiLabelColumns = 2;

/// An attribute of a cell over several columns.
QByteArray span(int columns) { return " colspan=\"" + QByteArray::number(columns) + '"'; }

class HtmlSink final : public ReportSink {
public:
    HtmlSink(const ExportSource& source, system::DurableFile& output) : m_source(source), m_output(output) {}

    void begin() override {
        m_text = m_template.next();
        appendEscaped(m_text, m_source.title());
        m_text += m_template.next();
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
        m_text += "</tbody>\n</table>\n" + m_template.next();
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
    Template m_template{"page.html"};
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
