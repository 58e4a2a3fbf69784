#include "base/error.h"
#include "report/data/report_content.h"
#include "report/layout/definition.h"
#include "report/layout/fonts/text_runs.h"
#include "report/layout/search.h"
#include "report_fixture.h"

#include <QRectF>

#include <gtest/gtest.h>

using namespace Qt::StringLiterals;
using namespace velcoran;
using namespace velcoran::report;

namespace {

QByteArray allPages(const Document& document) {
    QStringList lines;
    for (int page = 1; page <= document.pageCount(); ++page) {
        lines.append(document.pageLines({page}));
        lines.append(u"----"_s);
    }
    return (lines.join(u'\n') + u'\n').toUtf8();
}

/// Rows that the pages show, in order, checked for what no page may do.
std::vector<qint64> shownRows(const Document& document) {
    std::vector<qint64> rows;
    for (int number = 1; number <= document.pageCount(); ++number) {
        const Page page = document.page({number});
        const PageItem* last = nullptr;
        int bottom = 0;
        int footTop = page.height.value;
        for (const PageItem& item : page.items) {
            if (item.field == u"FootRule") footTop = item.rect.top.value;
        }
        qint64 row = -1;
        for (const PageItem& item : page.items) {
            const bool isFoot = item.rect.top.value >= footTop;
            if (!isFoot) bottom = std::max(bottom, (item.rect.top + item.rect.height).value);
            if (!isFoot) last = &item;
            if (item.row >= 0 && item.row != row) rows.push_back(item.row);
            row = item.row;
        }
        EXPECT_LE(bottom, footTop) << "page " << number << " runs into its footer";
        EXPECT_TRUE(last == nullptr || (last->field != u"GroupKey" && last->field != u"Text6"))
            << "page " << number << " ends with a heading";
    }
    return rows;
}

}  // namespace

TEST(Document, looksAsDesigned) {
    struct Case {
        const char16_t* golden;
        const char16_t* definition;
        int option;
        std::vector<Row> rows;
    };
    Row odd;
    odd.code = odd.moneda = odd.rate = std::nullopt;
    odd.name =
        u"SOCIETATEA NAȚIONALĂ DE TRANSPORTURI FEROVIARE ȘI MARITIME PENTRU MĂRFURI ÎN CONTAINERE ȘI VRAC DIN "
        u"PORTUL CONSTANȚA SUD SA BUCUREȘTI"_s;
    odd.number = u"linie\nnoua"_s;
    odd.gross = u"-1234567.89"_s;
    const Case cases[] = {
        {u"empty", u"CRFacturiImport", 0, {}},
        {u"three", u"CRFacturiImport", 0, {Row(), odd, Row()}},
        {u"partners", u"CRFacturiImport", 0, sampleRows(120, 12)},
        {u"partner-totals", u"CRFacturiImport", 1, sampleRows(120, 12)},
        {u"days", u"CRFacturiImportDT", 0, sampleRows(60, 12)},
    };
    for (const Case& one : cases) {
        ReportRun run(answerOf(one.rows), QString::fromUtf16(one.definition), one.option);
        tests::expectGolden(u"report/"_s + QString::fromUtf16(one.golden) + u".txt"_s, allPages(*run.document()));
    }
}

TEST(Document, showsEveryRowOnceOnAnyPaper) {
    struct Case {
        const char* name;
        int count, partners;
        PageSetup setup;
    };
    const Case cases[] = {
        {"one large group", 3000, 1, pageSetup(u"A4"_s, true)},
        {"groups of all sizes", 2000, 300, pageSetup(u"A4"_s, true)},
        {"upright", 700, 40, pageSetup(u"A4"_s, false)},
        {"small", 300, 40, pageSetup(u"A5"_s, true)},
        {"wide", 700, 40, pageSetup(u"A3"_s, true)},
        {"hardly any room", 40, 5, pageSetup(u"A5"_s, true, {3900})},
    };
    for (const Case& one : cases) {
        SCOPED_TRACE(one.name);
        ReportRun run(answerOf(sampleRows(one.count, one.partners)));
        const auto document = run.document(one.setup);
        const std::vector<qint64> rows = shownRows(*document);
        const auto& order = document->data().content().index.rows;
        EXPECT_EQ(rows, std::vector<qint64>(order.begin(), order.end()));
        EXPECT_EQ(document->pageWidth(), one.setup.width);
        int right = 0;
        for (const Page page = document->page({1}); const PageItem& item : page.items)
            right = std::max(right, (item.rect.left + item.rect.width).value);
        EXPECT_NEAR(right, (one.setup.width - one.setup.right).value, 2) << "the columns take the whole width";
        EXPECT_THROW((void)document->page({document->pageCount() + 1}), base::Error);
        EXPECT_TRUE(document->pageLines({0}).isEmpty());
    }
}

TEST(Document, showsEveryRowAlsoWithMarginsWiderThanTheSheet) {
    PageSetup wide = pageSetup(u"A5"_s, true, {200});
    wide.left = wide.right = wide.width;
    for (const PageSetup& setup : {wide, pageSetup(u"A5"_s, true, {7000})}) {
        ReportRun run(answerOf(sampleRows(40, 5)));
        const auto document = run.document(setup);
        QSet<qint64> rows;
        for (int number = 1; number <= document->pageCount(); ++number) {
            const Page page = document->page({number});
            for (const PageItem& item : page.items) {
                if (item.row >= 0) rows.insert(item.row);
                EXPECT_GE(item.rect.width.value, 0) << item.field.toStdString();
            }
        }
        EXPECT_EQ(rows.size(), 40);
    }
}

TEST(Document, keepsHeadingsWithTheirDetails) {
    // Every length of the first group: the second one's heading passes the foot of the page on its way.
    for (int first = 30; first < 50; ++first) {
        std::vector<Row> rows(static_cast<std::size_t>(first));
        for (int i = 0; i < 6; ++i) {
            rows.emplace_back();
            rows.back().code = u"F0002"_s;
        }
        ReportRun run(answerOf(rows));
        const auto document = run.document();
        EXPECT_EQ(shownRows(*document).size(), rows.size()) << first;
        for (int page = 2; page <= document->pageCount(); ++page) {
            const QString heading = document->pageLines({page}).value(3);
            if (heading.startsWith(u"FURNIZOR:\tF0001")) {
                EXPECT_TRUE(heading.endsWith(u" (continuare)")) << qPrintable(heading);
                EXPECT_TRUE(document->pageLines({page}).value(4).startsWith(u"F0001\t")) << "totals alone, " << first;
            }
        }
    }
}

TEST(Document, findsGroups) {
    ReportRun run(answerOf(sampleRows(5000, 1000)));
    const auto document = run.document();
    for (const qint64 group : {qint64(0), qint64(400), document->groupCount() - 1}) {
        const QStringList lines = document->pageLines(document->pageOfGroup(group));
        const QString heading = u"FURNIZOR:\t"_s + document->groupText(group);
        EXPECT_TRUE(lines.contains(heading)) << qPrintable(heading);
    }
    EXPECT_EQ(document->groupAtPage({1}), 0);
    EXPECT_GT(*document->groupAtPage({document->pageCount() / 2}), 100);
}

TEST(Document, manyCurrenciesOfOneGroupFlowOverPages) {
    std::vector<Row> rows(150);
    for (int i = 0; i < 150; ++i) rows[static_cast<std::size_t>(i)].moneda = u"V%1"_s.arg(i + 100);
    ReportRun run(answerOf(rows), u"CRFacturiImport"_s, 1);
    const auto document = run.document();
    QStringList lines;
    for (int page = 1; page <= document->pageCount(); ++page) lines += document->pageLines({page});
    for (int i = 0; i < 150; ++i) {
        const QString total = u"Total documente: 1\tV%1\t100,00\t19,00\t1,00\t120,00"_s.arg(i + 100);
        EXPECT_EQ(lines.count(total), 2) << i;
    }
}

TEST(Document, knowsTheTextsOfItsRowsAndNoMore) {
    const auto document = ReportRun(answerOf({Row()})).document();
    EXPECT_EQ(document->textOfRow(0, ColumnRole::NumarFactura), u"1001"_s);
    EXPECT_EQ(document->textOfRow(0, ColumnRole::CodClient), u"F0001"_s);
    for (const qint64 row : {qint64{-1}, qint64{1}})
        EXPECT_THROW((void)document->textOfRow(row, ColumnRole::CodClient), base::Error);
}

TEST(Page, showsAmountsWholeHoweverLong) {
    Row row;
    row.net = row.gross = u"123456789012345678901234567890123456.78"_s;
    ReportRun run(answerOf({row}, {ColumnType::Decimal128, 2}));
    const Page page = run.document()->page({1});
    for (const PageItem& item : page.items) {
        if (item.field != u"ValoareNeta") continue;
        EXPECT_EQ(item.text, u"123.456.789.012.345.678.901.234.567.890.123.456,78"_s);
        EXPECT_LT(item.fontSize, 8.0F);
        EXPECT_GE(textRect(page, item, 0, item.text.size()).left(), item.rect.left.value - 1);
    }
}

TEST(Page, givesTheTextsOfARecord) {
    ReportRun run(answerOf(sampleRows(20, 1)));
    const Page page = run.document()->page({1});
    EXPECT_EQ(recordTexts(page, 2).value(2), u"EXT 100001"_s);
    EXPECT_EQ(recordTexts(page, 2).size(), 10);
    EXPECT_TRUE(recordTexts(page, 21).isEmpty());
    EXPECT_TRUE(recordTexts(page, 0).isEmpty());
}

TEST(Page, givesNothingOfTheNextGroupWithARecord) {
    ReportRun run(answerOf(sampleRows(12, 4)));
    const Page page = run.document()->page({1});
    QSet<qsizetype> lengths;
    for (std::int32_t record = 1; record <= 12; ++record) lengths += recordTexts(page, record).size();
    EXPECT_EQ(lengths, QSet<qsizetype>{10});
    for (const PageItem& item : page.items) EXPECT_EQ(item.record > 0, item.row >= 0) << item.field.toStdString();
}

TEST(Page, givesWholeValuesOfItsFields) {
    Row row;
    row.net = row.gross = u"1234567.8951"_s;
    row.rate = u"4.97"_s;
    ReportRun run(answerOf({row, row}, {ColumnType::Decimal64, 4}));
    const auto document = run.document();
    const Page page = document->page({1});
    QMap<QString, QString> details;
    QStringList totals;
    for (qsizetype i = 0; i < static_cast<qsizetype>(page.items.size()); ++i) {
        const PageItem& item = page.items[i];
        const QString whole = document->wholeValue({1}, i);
        EXPECT_EQ(whole.isEmpty(), !item.isField) << item.field.toStdString();
        if (item.row == 0) details[item.field] = whole;
        if (item.isField && item.row < 0 && item.text == u"2.469.135,79"_s) totals += whole;
    }
    EXPECT_EQ(details.value(u"ValoareNeta"_s), u"1.234.567,8951"_s);
    EXPECT_EQ(details.value(u"CursValutar"_s), u"4,97"_s);
    EXPECT_EQ(totals.count(u"2.469.135,7902"_s), totals.size());
    EXPECT_FALSE(totals.isEmpty());
    EXPECT_TRUE(document->wholeValue({1}, -1).isEmpty());
    EXPECT_TRUE(document->wholeValue({1}, static_cast<qsizetype>(page.items.size())).isEmpty());
    EXPECT_THROW((void)document->wholeValue({0}, 0), base::Error);
}

TEST(SplitRuns, ordersScriptsThatReadFromRightToLeft) {
    struct Case {
        const char16_t *text, *runs;
    };
    // Letters of the other direction stand in brackets; what they hold is turned round when it is shaped.
    const Case cases[] = {
        {u"ALFA 12", u"ALFA 12"},
        {u"AB \u05D0\u05D1 CD", u"AB |[\u05D0\u05D1]| CD"},
        {u"F1 \u05D0 12 \u05D1", u"F1 |[ \u05D1]|12|[\u05D0 ]"},
        {u"\u05D0\u05D1 15", u"15|[\u05D0\u05D1 ]"},
        {u"12 \u05D0", u"12 |[\u05D0]"},
        {u"A (\u05D0) B", u"A (|[\u05D0]|) B"},
        {u"\u0627\u0628 \u0661\u0662", u"\u0661\u0662|[\u0627\u0628 ]"},
    };
    for (const Case& one : cases) {
        const QString text = QString::fromUtf16(one.text);
        QStringList runs;
        for (const TextRun& run : splitRuns(text, [](char32_t) { return std::uint16_t(0); })) {
            const QString piece = text.mid(run.start, run.length);
            runs.append(run.isRightToLeft ? u'[' + piece + u']' : piece);
        }
        EXPECT_EQ(runs.join(u'|'), QString::fromUtf16(one.runs));
    }
}

TEST(Search, findsEveryHitRoundTheReport) {
    ReportRun run(answerOf(sampleRows(400, 20)));
    const auto document = run.document();
    const std::atomic_bool go = false;
    const Search search(document, u"țara export 5 "_s);
    std::vector<SearchHit> hits;
    for (int page = 1; page <= document->pageCount(); ++page) {
        for (const SearchHit& hit : search.hitsOnPage({page})) hits.push_back(hit);
    }
    ASSERT_GT(hits.size(), 10U);
    EXPECT_EQ(search.count(go), static_cast<qint64>(hits.size()));
    std::optional<SearchHit> at;
    for (const SearchHit& hit : hits) {
        at = search.next(at, go);
        ASSERT_EQ(at, hit);
    }
    EXPECT_EQ(search.next(at, go), hits.front());
    EXPECT_EQ(search.previous(hits.front(), go), hits.back());
    EXPECT_EQ(search.previous(std::nullopt, go), hits.back());
    EXPECT_EQ(Search(document, u"nicaieri"_s).next(std::nullopt, go), std::nullopt);
    EXPECT_EQ(Search(document, {}).count(go), 0);
    Row row;
    row.number = u"7777777"_s;
    EXPECT_EQ(Search(ReportRun(answerOf({row})).document(), u"777"_s).count(go), 2) << "hits do not overlap";
    const std::atomic_bool stop = true;
    EXPECT_THROW((void)search.count(stop), base::Cancelled);
}
