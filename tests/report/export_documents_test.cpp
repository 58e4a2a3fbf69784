#include "export_read_back.h"
#include "report/data/amount_text.h"
#include "report/export/writers.h"

#include <QRegularExpression>

using namespace Qt::StringLiterals;
using namespace velcoran;
using namespace velcoran::report;

namespace {

/// Texts of a table's rows, cell by cell. @param row, cell  names of the elements
std::vector<QStringList> tableRows(const QByteArray& xml, const QString& row, const QStringList& cells) {
    std::vector<QStringList> rows;
    QXmlStreamReader reader(xml);
    bool isInCell = false;
    while (!reader.atEnd()) {
        reader.readNext();
        const QString name = reader.name().toString();
        if (reader.isStartElement() && name == row) rows.emplace_back();
        if (reader.isStartElement() && cells.contains(name)) rows.back().append(QString());
        if (cells.contains(name)) isInCell = reader.isStartElement();
        if (!isInCell) continue;
        if (reader.isCharacters()) rows.back().back() += reader.text();
        if (reader.isStartElement() && name == u"s"_s) rows.back().back() += u' ';
        if (reader.isStartElement() && name == u"tab"_s) rows.back().back() += u'\t';
        if (reader.isStartElement() && name == u"line-break"_s) rows.back().back() += u'\n';
    }
    EXPECT_FALSE(reader.hasError()) << qPrintable(reader.errorString());
    return rows;
}

std::vector<QStringList> htmlRows(QByteArray html) {
    EXPECT_TRUE(html.startsWith("<!DOCTYPE html>\n<html lang=\"ro\">\n<head>\n<meta charset=\"utf-8\">"));
    html.remove(0, html.indexOf("<table>"));
    html.truncate(html.indexOf("</table>") + 8);
    return tableRows(html, u"tr"_s, {u"td"_s, u"th"_s});
}

/// What a table with groups must say, its totals from the data.
std::vector<QStringList> expectedRows(const Document& document, bool hasRows) {
    std::vector<QStringList> rows;
    const ReportData& data = document.data();
    const auto addTotals = [&rows](const std::vector<CurrencyTotal>& totals) {
        for (const CurrencyTotal& one : totals) {
            rows.push_back({u"Total documente: "_s + countText(one.rows), one.currency,
                            amountText(one.sum(ColumnRole::ValoareNeta)), amountText(one.sum(ColumnRole::ValoareTVA)),
                            amountText(one.sum(ColumnRole::ValoareTaxe)),
                            amountText(one.sum(ColumnRole::ValoareBruta))});
        }
    };
    for (qint64 group = 0; group < data.groupCount(); ++group) {
        rows.push_back({u"FURNIZOR: "_s + document.groupText(group)});
        for (qint64 i = 0; hasRows && i < data.group(group).rows; ++i) rows.emplace_back();
        addTotals(data.group(group).totals);
    }
    rows.push_back({u"TOTAL GENERAL"_s});
    addTotals(data.totals());
    const qint64 without = data.leiTotal().rowsWithoutRate;
    rows.push_back({u"TOTAL IN LEI"_s, without == 0 ? QString() : u"fara curs: "_s + countText(without),
                    amountText(data.leiTotal().value)});
    return rows;
}

void expectTable(const std::vector<QStringList>& rows, const Document& document, bool hasRows) {
    const auto expected = expectedRows(document, hasRows);
    ASSERT_EQ(rows.size(), expected.size() + 1);
    EXPECT_EQ(rows[0].size(), 10);
    for (std::size_t i = 0; i < expected.size(); ++i) {
        if (expected[i].isEmpty()) {
            EXPECT_EQ(rows[i + 1].size(), 10) << i;
        } else {
            EXPECT_EQ(rows[i + 1], expected[i]) << i;
        }
    }
}

std::vector<Row> rowsOfMarkup() {
    Row row;
    row.name = u"<b>\"ALFA\" & 'BETA'</b>  x\ty\nz \u0002"_s;
    return {row};
}

using ExportDocuments = ExportTest;

}  // namespace

TEST_F(ExportDocuments, showTheGroupsAndTotalsOfTheReport) {
    for (const int option : {0, 1}) {
        const auto document = ReportRun(answerOf(sampleRows(300, 12)), u"CRFacturiImport"_s, option).document();
        expectTable(htmlRows(exported(kHtml, document)), *document, option == 0);
        exported(kOdt, document);
        expectTable(tableRows(entry(path(u"raport"_s), u"content.xml"_s), u"table-row"_s, {u"table-cell"_s}), *document,
                    option == 0);
        const QStringList lines = QString::fromUtf8(exported(kPlainText, document).sliced(3)).split(u"\r\n"_s);
        qsizetype at = 0;
        for (const QStringList& row : expectedRows(*document, false)) {
            const auto holdsAll = [&row](const QString& line) {
                return std::all_of(row.begin(), row.end(),
                                   [&line](const QString& cell) { return line.contains(cell); });
            };
            while (at < lines.size() && !holdsAll(lines[at])) ++at;
            EXPECT_LT(at, lines.size()) << qPrintable(row.join(u'|'));
        }
    }
}

TEST_F(ExportDocuments, escapeWhatTheNamesHold) {
    ReportRun run(answerOf(rowsOfMarkup()));
    run.report().setRequest({.filters = {u"<script>alert(1)</script>"_s}});
    const auto document = run.document();
    const QByteArray html = exported(kHtml, document);
    EXPECT_FALSE(html.contains("<script>"));
    EXPECT_FALSE(html.contains("<b>"));
    EXPECT_EQ(htmlRows(html)[2][1], u"<b>\"ALFA\" & 'BETA'</b>  x\ty\nz "_s);
    exported(kOdt, document);
    const auto rows = tableRows(entry(path(u"raport"_s), u"content.xml"_s), u"table-row"_s, {u"table-cell"_s});
    EXPECT_EQ(rows[2][1], u"<b>\"ALFA\" & 'BETA'</b>  x\ty\nz "_s);
}

TEST_F(ExportDocuments, odtIsAnArchiveOfWellFormedParts) {
    const QByteArray odt = exported(kOdt, ReportRun(answerOf(sampleRows(50, 3))).document());
    EXPECT_EQ(odt.sliced(30, 47), "mimetypeapplication/vnd.oasis.opendocument.text");
    QProcess check;
    check.start(u"unzip"_s, {u"-tqq"_s, path(u"raport"_s)});
    ASSERT_TRUE(check.waitForFinished());
    EXPECT_EQ(check.exitCode(), 0) << check.readAllStandardOutput().constData();
    // A page style on the table would push it to the second page.
    EXPECT_FALSE(entry(path(u"raport"_s), u"content.xml"_s).contains("master-page-name"));
    for (const QString& part : {u"content.xml"_s, u"styles.xml"_s, u"meta.xml"_s, u"META-INF/manifest.xml"_s}) {
        QXmlStreamReader reader(entry(path(u"raport"_s), part));
        while (!reader.atEnd()) reader.readNext();
        EXPECT_FALSE(reader.hasError()) << qPrintable(part + u": "_s + reader.errorString());
    }
}

TEST_F(ExportDocuments, plainTextStandsInColumns) {
    std::vector<Row> rows = sampleRows(200, 9);
    rows[0].net = u"-123456789012.34"_s;
    rows[1].name = u"NUME 𝄞 CU\r\nRAND"_s;
    for (Row& row : rows) row.rate = u"19000000.000000"_s;
    rows[2].rate = u"18000000.123456"_s;  // smaller, longer, and wider than the heading
    const auto document = ReportRun(answerOf(rows, {.rateScale = 6})).document();
    const QStringList lines = QString::fromUtf8(exported(kPlainText, document).sliced(3)).split(u"\r\n"_s);
    const qsizetype heading = lines.indexOf(QRegularExpression(u"^Cod furnizor .* Valoare bruta$"_s));
    ASSERT_GT(heading, 0);
    const qsizetype width = lines[heading].size();
    static const QRegularExpression kAmountAtEnd(u",\\d\\d$"_s);
    int amounts = 0;
    for (const QString& line : lines.sliced(heading)) {
        if (!kAmountAtEnd.match(line).hasMatch()) continue;
        EXPECT_EQ(line.toUcs4().size(), width) << qPrintable(line);
        ++amounts;
    }
    EXPECT_GT(amounts, 200);
    const qsizetype moneda = lines[heading].indexOf(u"Moneda");
    for (const QString& line : lines.sliced(heading).filter(u"Total documente: "_s))
        EXPECT_TRUE(line[moneda - 1].isSpace() && line[moneda].isUpper()) << qPrintable(line);
}

TEST_F(ExportDocuments, everyRowOfTheirTablesIsAsWideAsTheHeading) {
    const auto document = ReportRun(answerOf(sampleRows(40, 5))).document();
    exported(kOdt, document);
    const QString odt = QString::fromUtf8(entry(path(u"raport"_s), u"content.xml"_s));
    const QString html = QString::fromUtf8(exported(kHtml, document));
    static const QRegularExpression kCell(u"<(td|th|table:table-cell|table:covered-table-cell)[ />]"_s);
    static const QRegularExpression kSpan(u"colspan=\"(\\d+)\""_s);
    for (const auto& [text, end] : {std::pair(odt, u"</table:table-row>"_s), std::pair(html, u"</tr>"_s)}) {
        QSet<int> widths;
        QStringList lines = text.split(end);
        lines.removeLast();
        for (const QString& line : lines) {
            int width = static_cast<int>(line.count(kCell));
            for (const QRegularExpressionMatch& span : kSpan.globalMatch(line)) width += span.captured(1).toInt() - 1;
            widths.insert(width);
        }
        EXPECT_EQ(widths, QSet<int>{10}) << qPrintable(end);
        EXPECT_GT(lines.size(), 40);
    }
}

TEST_F(ExportDocuments, tellOfDocumentsWithoutARateWhereThereAreSome) {
    for (const bool hasAll : {true, false}) {
        std::vector<Row> rows(2);
        if (!hasAll) rows[1].rate = std::nullopt;
        const auto document = ReportRun(answerOf(rows)).document();
        QStringList shown{document->pageLines({1}).join(u'\n')};
        for (const int type : {kHtml, kPlainText}) shown.append(QString::fromUtf8(exported(type, document)));
        exported(kOdt, document);
        shown.append(QString::fromUtf8(entry(path(u"raport"_s), u"content.xml"_s)));
        exported(kXlsx, document);
        shown.append(QString::fromUtf8(entry(path(u"raport"_s), u"xl/worksheets/sheet2.xml"_s)));
        for (const QString& text : shown) {
            EXPECT_EQ(text.contains(u"fara curs: 1"_s), !hasAll) << shown.indexOf(text);
            EXPECT_EQ(text.contains(u"fara curs"_s), !hasAll) << shown.indexOf(text);
        }
    }
}

TEST_F(ExportDocuments, sayThatThereIsNothing) {
    const auto document = ReportRun(answerOf({})).document();
    for (const int type : {kHtml, kPlainText}) {
        EXPECT_TRUE(exported(type, document).contains("Niciun document nu corespunde filtrelor alese.")) << type;
    }
    exported(kXlsx, document);
    EXPECT_EQ(readSheet(entry(path(u"raport"_s), u"xl/worksheets/sheet1.xml"_s)).filter, u"A4:J4"_s);
    const auto csv = readCsv(QString::fromUtf8(exported(kCsv, document)), u';');
    EXPECT_EQ(csv.size(), 1U);
}
