#include "formats.h"
#include "markup.h"
#include "report/data/amount_text.h"
#include "rows.h"
#include "texts.h"
#include "writers.h"
#include "zip.h"

namespace velcoran::report {

using namespace Qt::StringLiterals;

namespace {

QByteArray metaXml(const ExportSource& source) {
    Template parts("meta.xml");
    QByteArray xml = parts.next();
    appendEscaped(xml, source.title());
    xml += parts.next();
    xml += source.made().toString(Qt::ISODate).toLatin1();
    xml += parts.next();
    return xml;
}

/// Share of each column in the width of the table, by the characters it is made for.
QByteArray columnStyles() {
    constexpr int kPrintableWidth = 27700;  // hundredths of a millimetre between the margins
    int characters = 0;
    for (const ColumnRow& column : pageColumns()) characters += column.width;
    Q_ASSERT(characters > 0);
    QByteArray xml;
    for (std::size_t i = 0; i < pageColumns().size(); ++i) {
        const int width = kPrintableWidth * pageColumns()[i].width / characters;
        xml += "<style:style style:name=\"T" + QByteArray::number(static_cast<int>(i)) +
               "\" style:family=\"table-column\"><style:table-column-properties style:column-width=\"" +
               QByteArray::number(width / 100.0, 'f', 2) + "mm\"/></style:style>";
    }
    return xml;
}

class OdtSink final : public ReportSink {
public:
    OdtSink(const ExportSource& source, ZipWriter& zip) : m_source(source), m_zip(zip) {}

    void begin() override {
        m_text = m_template.next();
        m_text += columnStyles();
        m_text += m_template.next();
        m_text += "<text:h text:style-name=\"Heading\" text:outline-level=\"1\">";
        appendParagraphText(m_text, m_source.title());
        m_text += "</text:h>";
        if (!m_source.period().isEmpty()) paragraph("Head", u"Perioada: "_s + m_source.period());
        for (const QString& filter : m_source.filters()) paragraph("Head", filter);
        m_text += "<table:table table:name=\"Raport\" table:style-name=\"Table\">";
        for (std::size_t i = 0; i < pageColumns().size(); ++i) {
            m_text += "<table:table-column table:style-name=\"T" + QByteArray::number(static_cast<int>(i)) + "\"/>";
        }
        m_text += "<table:table-header-rows><table:table-row>";
        for (const ColumnRow& column : pageColumns()) {
            cell("Column", isAmount(column.role) ? "BoldRight" : "Bold", m_source.heading(column));
        }
        m_text += "</table:table-row></table:table-header-rows>";
        flush();
    }
    void beginGroup(const QString& title) override { wideRow("Group", title); }
    void row(std::uint32_t row) override {
        beginRow();
        for (const ColumnRow& column : pageColumns()) {
            cell("Cell", isAmount(column.role) ? "Right" : "Left", m_source.shownText(column, row));
        }
        endRow();
    }
    void endGroup(const std::vector<CurrencyTotal>& totals) override { writeTotals(totals); }
    void end() override {
        if (m_source.data().rowCount() == 0) wideRow("Group", QString::fromUtf16(kNoDocuments));
        wideRow("Grand", QString::fromUtf16(kGrandTotal));
        writeTotals(m_source.data().totals());
        writeLei(m_source.data().leiTotal());
        m_text += "</table:table>" + m_template.next();
        flush();
    }

private:
    void flush() {
        m_zip.write(m_text);
        m_text.resize(0);
    }
    void beginRow() { m_text += "<table:table-row table:style-name=\"Row\">"; }
    void endRow() {
        m_text += "</table:table-row>";
        flush();
    }
    void paragraph(QByteArrayView style, QStringView text) {
        m_text += "<text:p text:style-name=\"";
        m_text += style;
        m_text += "\">";
        appendParagraphText(m_text, text);
        m_text += "</text:p>";
    }
    void cell(QByteArrayView cellStyle, QByteArrayView style, QStringView text, int columns = 1) {
        m_text += "<table:table-cell table:style-name=\"";
        m_text += cellStyle;
        m_text += '"';
        if (columns > 1) m_text += " table:number-columns-spanned=\"" + QByteArray::number(columns) + '"';
        m_text += " office:value-type=\"string\">";
        paragraph(style, text);
        m_text += "</table:table-cell>";
        for (int i = 1; i < columns; ++i) m_text += "<table:covered-table-cell/>";
    }
    void wideRow(QByteArrayView cellStyle, QStringView text) {
        beginRow();
        cell(cellStyle, "Keep", text, kPageColumnCount);
        endRow();
    }
    void writeTotals(const std::vector<CurrencyTotal>& totals) {
        for (const CurrencyTotal& total : totals) {
            const TotalLine line = totalLine(total);
            beginRow();
            cell("Total", "Bold", line.label, kFirstSumColumn - 2);
            cell("Total", "Bold", line.currency, 2);
            for (const QString& amount : line.amounts) cell("Total", "BoldRight", amount);
            endRow();
        }
    }
    void writeLei(const LeiTotal& lei) {
        beginRow();
        cell("Grand", "Bold", QString::fromUtf16(kTotalInLei), 2);
        cell("Grand", "Bold", withoutRateText(lei), kPageColumnCount - 4);
        cell("Grand", "BoldRight", amountText(lei.value), 2);
        endRow();
    }

    const ExportSource& m_source;
    ZipWriter& m_zip;
    Template m_template{"content.xml"};
    QByteArray m_text;
};

}  // namespace

void writeOdt(const Document& document, const QString& file, ExportControl& control) {
    const ExportSource source(document);
    ZipWriter zip(file, source.made());
    const auto add = [&zip](const char* name, QByteArrayView content) {
        zip.begin(name, ZipWriter::Packing::Stored);
        zip.write(content);
        zip.end();
    };
    // First and as it is: programs know the document by these bytes at their place.
    add("mimetype", "application/vnd.oasis.opendocument.text");
    add("META-INF/manifest.xml", Template("manifest.xml").next());
    add("meta.xml", metaXml(source));
    add("styles.xml", Template("styles.xml").next());
    zip.begin("content.xml", ZipWriter::Packing::Deflated);
    OdtSink sink(source, zip);
    walkReport(source, sink, control);
    zip.end();
    zip.commit();
}

}  // namespace velcoran::report
