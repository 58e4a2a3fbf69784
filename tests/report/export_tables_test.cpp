#include "export_read_back.h"
#include "report/data/amount_text.h"
#include "report/export/writers.h"

using namespace Qt::StringLiterals;
using namespace velcoran;
using namespace velcoran::report;

namespace {

/// Names that break a careless writer.
const QStringList& oddNames() {
    static const QStringList kNames{u"A;B, C\tD"_s,
                                    u"\"ALFA\" & <BETA>"_s,
                                    u"UN\r\nRAND"_s,
                                    u"=1+1"_s,
                                    u"+40 21"_s,
                                    u"-10"_s,
                                    u"@SUM(A1)"_s,
                                    u"\t=1"_s,
                                    u"ȘTIINȚĂ  ȚARĂ 𝄞"_s,
                                    u"'apostrof"_s,
                                    u"a\u0001b\uFFFEc"_s,
                                    u"   "_s,
                                    u"RAND\nNOU"_s,
                                    u"RAND\rNOU"_s,
                                    u"\n=1"_s,
                                    u"＝1+1"_s,
                                    u"＋40 21"_s,
                                    u"－10"_s,
                                    u"＠SUM(A1)"_s};
    return kNames;
}

std::vector<Row> rowsWithOddNames() {
    std::vector<Row> rows;
    for (qsizetype i = 0; i < oddNames().size(); ++i) {
        Row row;
        row.code = u"F%1"_s.arg(i, 4, 10, QLatin1Char('0'));
        row.name = oddNames()[i];
        row.number = u"00%1"_s.arg(i);
        rows.push_back(row);
    }
    return rows;
}

/// What a sheet holds for a day.
QString dayNumber(const QString& day) {
    return QString::number(QDate(1899, 12, 30).daysTo(QDate::fromString(day, u"dd/MM/yyyy"_s)));
}

using ExportCsv = ExportTest;
using ExportXlsx = ExportTest;

/// A total as the file's number must read.
void expectAmount(const SheetCell& cell, const base::Decimal& value) {
    EXPECT_EQ(cell.type, u"n"_s);
    EXPECT_EQ(cell.value.toDouble(), value.toShortestText().toDouble());
}

void expectTotal(const std::vector<SheetCell>& row, std::size_t at, const CurrencyTotal& total) {
    ASSERT_EQ(row.size(), at + 6);
    EXPECT_EQ(row[at].value, total.currency);
    EXPECT_EQ(row[at + 1].value.toLongLong(), total.rows);
    expectAmount(row[at + 2], total.sum(ColumnRole::ValoareNeta));
    expectAmount(row[at + 3], total.sum(ColumnRole::ValoareTVA));
    expectAmount(row[at + 4], total.sum(ColumnRole::ValoareTaxe));
    expectAmount(row[at + 5], total.sum(ColumnRole::ValoareBruta));
}

}  // namespace

TEST_F(ExportCsv, readsBackWhateverTheNamesHold) {
    const auto document = ReportRun(answerOf(rowsWithOddNames())).document();
    struct Case {
        QLocale::Language language;
        char16_t separator, decimal;
    };
    for (const Case& one : {Case{QLocale::Romanian, u';', u','}, Case{QLocale::C, u',', u'.'}}) {
        m_control.locale = QLocale(one.language);
        const QByteArray bytes = exported(kCsv, document);
        ASSERT_TRUE(
            bytes.startsWith("\xEF\xBB\xBF"
                             "Tip raport"));
        ASSERT_TRUE(bytes.endsWith("\r\n"));
        const auto rows = readCsv(QString::fromUtf8(bytes.sliced(3)), one.separator);
        ASSERT_EQ(rows.size(), oddNames().size() + 1U);
        EXPECT_EQ(rows[0].size(), 11);
        EXPECT_EQ(rows[0][2], u"Denumire furnizor"_s);
        for (qsizetype i = 0; i < oddNames().size(); ++i) {
            const QStringList& row = rows[static_cast<std::size_t>(i) + 1];
            ASSERT_EQ(row.size(), 11) << i;
            const QString name = oddNames()[i];
            const bool isGuarded = u"=+-@\t\r\n＝＋－＠"_s.contains(name.front());
            EXPECT_EQ(row[2], isGuarded ? u'\'' + name : name);
            EXPECT_EQ(row[3], u"15/03/2026"_s);
            EXPECT_EQ(row[4], u"00%1"_s.arg(i));
            EXPECT_EQ(row[5], u"100.00"_s.replace(u'.', QChar(one.decimal)));
            EXPECT_EQ(row[9], u"4.9750"_s.replace(u'.', QChar(one.decimal)));
        }
    }
}

TEST_F(ExportCsv, keepsAmountsAndRates) {
    struct Case {
        tests::FakeCell amount, rate;
        const char16_t *amountText, *rateText;
    };
    const Case kCases[] = {{u"-100.50"_s, u"1.5"_s, u"-100,50", u"1,5000"},
                           {std::nullopt, std::nullopt, u"", u""},
                           {u"9999999999999.99"_s, u"0"_s, u"9999999999999,99", u"0,0000"},
                           {u"0.12345"_s, u"curs"_s, u"0,12345", u"curs"},
                           {u"1000000"_s, u"=1"_s, u"1000000,00", u"'=1"}};
    std::vector<Row> rows;
    for (const Case& one : kCases) {
        Row row;
        row.net = one.amount;
        row.rate = one.rate;
        rows.push_back(row);
    }
    Types types;
    types.amountScale = 5;
    types.rate = ColumnType::Text;
    const auto read = readCsv(QString::fromUtf8(exported(kCsv, ReportRun(answerOf(rows, types)).document())), u';');
    ASSERT_EQ(read.size(), rows.size() + 1);
    for (std::size_t i = 0; i < rows.size(); ++i) {
        EXPECT_EQ(read[i + 1][5], QString::fromUtf16(kCases[i].amountText));
        EXPECT_EQ(read[i + 1][9], QString::fromUtf16(kCases[i].rateText));
    }
}

TEST_F(ExportXlsx, keepsTextsNumbersAndDates) {
    std::vector<Row> rows = rowsWithOddNames();
    rows[0].net = u"12345678901234.56"_s;
    rows[1].net = u"-0.07"_s;
    rows[2].date = u"candva"_s;
    rows[3].rate = std::nullopt;
    const QStringList filters{u"Furnizor: =ALFA"_s, u"Agent: 12"_s};
    ReportRun run(answerOf(rows));
    run.report().setRequest({.filters = filters});
    exported(kXlsx, run.document());
    const Sheet sheet = readSheet(entry(path(u"raport"_s), u"xl/worksheets/sheet1.xml"_s));
    ASSERT_EQ(sheet.rows.size(), 6 + rows.size());
    EXPECT_EQ(sheet.rows[0][0].value, u"RAPORT FACTURI EXTERNE - FURNIZORI"_s);
    EXPECT_EQ(sheet.rows[1][0].value, u"Perioada: 01/01/2026 - 31/12/2026"_s);
    EXPECT_EQ(sheet.rows[2][0].value, filters[0]);
    EXPECT_EQ(sheet.rows[3][0].value, filters[1]);
    EXPECT_EQ(sheet.rows[5][0].value, u"Cod furnizor"_s);
    EXPECT_EQ(sheet.frozenAt, u"A7"_s);
    EXPECT_EQ(sheet.filter, u"A6:J%1"_s.arg(6 + rows.size()));
    const auto cell = [&sheet](std::size_t row, std::size_t column) { return sheet.rows[6 + row][column]; };
    for (std::size_t i = 0; i < rows.size(); ++i) {
        EXPECT_EQ(cell(i, 1).type, u"inlineStr"_s);
        EXPECT_EQ(cell(i, 2).type, u"inlineStr"_s);
        if (i == 2 || i == 10 || i > 11) continue;  // line ends and control characters change in XML
        EXPECT_EQ(cell(i, 1).value, *rows[i].name);
    }
    EXPECT_EQ(cell(0, 6).type, u"inlineStr"_s);
    EXPECT_EQ(cell(0, 6).value, u"12345678901234,56"_s);
    EXPECT_EQ(cell(1, 6).type, u"n"_s);
    EXPECT_EQ(cell(1, 6).value.toDouble(), -0.07);
    EXPECT_EQ(cell(0, 3).value, u"46096"_s);
    EXPECT_EQ(cell(2, 3).value, u"candva"_s);
    EXPECT_EQ(cell(4, 5).value.toDouble(), 4.975);
    EXPECT_TRUE(cell(3, 5).value.isEmpty());
    const QByteArray styles = entry(path(u"raport"_s), u"xl/styles.xml"_s);
    EXPECT_TRUE(styles.contains("\"dd/mm/yyyy\""));
}

TEST_F(ExportXlsx, leavesOutWhatNoWorkbookHolds) {
    Row row;
    row.name = u"INAINTE"_s + QChar(0) + u"SI"_s + QChar(0xFFFE) + u"DUPA"_s;
    exported(kXlsx, ReportRun(answerOf({row})).document());
    EXPECT_TRUE(entry(path(u"raport"_s), u"xl/worksheets/sheet1.xml"_s).contains("INAINTESIDUPA"));
}

TEST_F(ExportXlsx, carriesTheTotalsOfTheReport) {
    for (const auto& [definition, option] : {std::pair(u"CRFacturiImport"_s, 0), std::pair(u"CRFacturiImportDT"_s, 0),
                                             std::pair(u"CRFacturiImport"_s, 1)}) {
        const auto document = ReportRun(answerOf(sampleRows(700, 25)), definition, option).document();
        const ReportData& data = document->data();
        exported(kXlsx, document);
        const QString part = u"xl/worksheets/sheet%1.xml"_s.arg(option == 0 ? 2 : 1);
        const Sheet sheet = readSheet(entry(path(u"raport"_s), part));
        const std::size_t keys = definition.endsWith(u"DT"_s) ? 1 : 2;
        std::size_t row = 4;
        for (qint64 group = 0; group < data.groupCount(); ++group) {
            const GroupTotal total = data.group(group);
            for (const CurrencyTotal& one : total.totals) {
                ASSERT_LT(row, sheet.rows.size());
                EXPECT_EQ(sheet.rows[row][keys - 1].value, keys == 2 ? total.key[1] : dayNumber(total.key[0]));
                expectTotal(sheet.rows[row++], keys, one);
            }
        }
        EXPECT_EQ(sheet.filter, u"A4:%1%2"_s.arg(QChar(static_cast<char16_t>(u'A' + keys + 5))).arg(row));
        row += 2;  // a blank line and the caption
        for (const CurrencyTotal& one : data.totals()) expectTotal(sheet.rows.at(row++), keys, one);
        const auto& lei = sheet.rows.at(row + 1);
        expectAmount(lei.at(keys + 5), data.leiTotal().value);
        EXPECT_EQ(lei[keys].value, u"fara curs: "_s + countText(data.leiTotal().rowsWithoutRate));
    }
}
