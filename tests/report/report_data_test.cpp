#include "report/data/group_rows.h"
#include "report/data/report_content.h"
#include "report/layout/definition.h"
#include "report_fixture.h"

#include <gtest/gtest.h>

#include <future>

using namespace Qt::StringLiterals;
using namespace velcoran;
using namespace velcoran::report;

namespace {

QStringList keysOf(const ReportData& data) {
    QStringList keys;
    for (qint64 i = 0; i < data.groupCount(); ++i) keys.append(data.group(i).key.join(u'|'));
    return keys;
}

Row partner(const tests::FakeCell& code, const tests::FakeCell& name, const QString& number = u"1"_s) {
    Row row;
    row.code = code;
    row.name = name;
    row.number = number;
    return row;
}

Row amounts(const QString& gross, const tests::FakeCell& moneda, const tests::FakeCell& rate) {
    Row row;
    row.gross = gross;
    row.moneda = moneda;
    row.rate = rate;
    return row;
}

Row onDay(const tests::FakeCell& date) {
    Row row;
    row.date = date;
    return row;
}

}  // namespace

TEST(Groups, partnersByCodeThenNameInCodePointOrder) {
    // U+1D400 is a pair of surrogates and stands behind U+FB01, whatever its code units say.
    const QString beyond = QString::fromUcs4(U"\U0001D400");
    ReportRun run(answerOf({partner(u"b"_s, u"X"_s), partner(u"B"_s, u"X"_s), partner(beyond, u"X"_s),
                            partner(u"\uFB01"_s, u"X"_s), partner(u"B"_s, u"A"_s), partner(std::nullopt, u"Z"_s),
                            partner(u"B"_s, std::nullopt), partner(u""_s, u"Y"_s), partner(u"B"_s, u"X"_s),
                            partner(u"B10"_s, u"X"_s)}));
    const auto data = run.data();
    EXPECT_EQ(keysOf(*data), (QStringList{u"(fara cod)|Z"_s, u"|Y"_s, u"B|"_s, u"B|A"_s, u"B|X"_s, u"B10|X"_s, u"b|X"_s,
                                          u"\uFB01|X"_s, beyond + u"|X"_s}));
    EXPECT_EQ(data->group(4).rows, 2);
}

TEST(Groups, daysByTheCalendar) {
    ReportRun run(
        answerOf({onDay(u"01/02/2026"_s), onDay(u"31/12/2025"_s), onDay(u"02/01/2026"_s), onDay(u"31/02/2026"_s),
                  onDay(std::nullopt), onDay(u"azi"_s), onDay(u"1/1/2026"_s), onDay(u"02/01/2026"_s)}),
        u"CRFacturiImportDT"_s);
    EXPECT_EQ(keysOf(*run.data()), (QStringList{u"(fara data)"_s, u"1/1/2026"_s, u"31/02/2026"_s, u"azi"_s,
                                                u"31/12/2025"_s, u"02/01/2026"_s, u"01/02/2026"_s}));
}

TEST(Groups, momentsCountByTheirDay) {
    tests::FakeAnswer answer =
        answerOf({onDay(u"1970-01-01 00:00:00"_s), onDay(u"1969-12-31 23:59:59"_s), onDay(u"1899-12-30 00:00:01"_s),
                  onDay(u"2026-03-15 18:30:00"_s), onDay(u"1969-12-31 00:00:00"_s)});
    answer.columns[3].type = ColumnType::DateTime;
    ReportRun run(std::move(answer), u"CRFacturiImportDT"_s);
    EXPECT_EQ(keysOf(*run.data()), (QStringList{u"30/12/1899"_s, u"31/12/1969"_s, u"01/01/1970"_s, u"15/03/2026"_s}));
}

TEST(Groups, keepTheStatementsOrder) {
    ReportRun run(answerOf({partner(u"B"_s, u"B"_s, u"9"_s), partner(u"A"_s, u"A"_s, u"5"_s),
                            partner(u"B"_s, u"B"_s, u"3"_s), partner(u"A"_s, u"A"_s, u"7"_s)}));
    const auto data = run.data();
    EXPECT_EQ(data->content().index.rows, (std::vector<std::uint32_t>{1, 3, 0, 2}));
}

TEST(Totals, areExactByCurrency) {
    struct Case {
        const char* name;
        Types types;
        QStringList nets;
        const char16_t* total;
    };
    const QString huge = u"99999999999999999999999999999999999999"_s;
    const Case cases[] = {
        {"cents", {}, {u"0.10"_s, u"0.20"_s, u"-0.05"_s}, u"0.25"},
        {"38 digits", {ColumnType::Decimal128, 0}, {huge, huge, huge}, u"299999999999999999999999999999999999997.00"},
        {"38 places",
         {ColumnType::Decimal128, 37},
         {u"0.0000000000000000000000000000000000001"_s, u"1.0000000000000000000000000000000000002"_s},
         u"1.0000000000000000000000000000000000003"},
        {"integers",
         {ColumnType::Int64},
         {u"9223372036854775807"_s, u"9223372036854775807"_s},
         u"18446744073709551614.00"},
        {"doubles", {ColumnType::Double}, {u"0.1"_s, u"0.2"_s, u"1e-9"_s}, u"0.300000001"},
        {"doubles far from one",
         {ColumnType::Double},
         {u"1e-300"_s, u"-4e-54"_s, u"7e-40"_s, u"1e15"_s, u"-1.5e20"_s},
         u"-149999000000000000000.00"},
        {"the largest one", {ColumnType::Double}, {u"1e37"_s}, u"10000000000000000000000000000000000000.00"},
        {"the last place", {ColumnType::Double}, {u"1.23e-38"_s}, u"0.00000000000000000000000000000000000001"},
        {"texts", {ColumnType::Text}, {u"0.1"_s, u" 12 "_s, u"-1,5"_s, u""_s}, u"10.60"},
    };
    for (const Case& one : cases) {
        std::vector<Row> rows;
        for (const QString& net : one.nets) {
            rows.emplace_back();
            rows.back().net = net;
            rows.back().tva = rows.back().taxe = rows.back().gross = u"0"_s;
        }
        ReportRun run(answerOf(rows, one.types));
        const auto data = run.data();
        ASSERT_TRUE(data) << one.name;
        ASSERT_EQ(data->totals().size(), 1U) << one.name;
        EXPECT_EQ(data->totals()[0].sum(ColumnRole::ValoareNeta).toShortestText(2), QString::fromUtf16(one.total))
            << one.name;
        EXPECT_EQ(data->group(0).totals[0].sum(ColumnRole::ValoareNeta).toShortestText(2),
                  QString::fromUtf16(one.total))
            << one.name;
    }
}

TEST(Texts, keepAByteOrderMarkAtTheirStart) {
    const QString mark(QChar(QChar::ByteOrderMark));
    Row row;
    row.moneda = mark + u"EUR"_s;
    row.number = mark + u"1"_s;
    ReportRun run(answerOf({row}));
    const auto document = run.document();
    ASSERT_TRUE(document);
    EXPECT_EQ(document->data().totals()[0].currency, mark + u"EUR"_s);
    EXPECT_EQ(document->data().group(0).totals[0].currency, mark + u"EUR"_s);
    EXPECT_EQ(document->textOfRow(0, ColumnRole::NumarFactura), mark + u"1"_s);
}

TEST(Totals, changeOverWhenTheScaleChangesFromBlockToBlock) {
    tests::FakeAnswer answer = answerOf({amounts(u"1000000000000000000"_s, u"EUR"_s, u"0.000001"_s),
                                         amounts(u"0.000000000000000001"_s, u"EUR"_s, u"2"_s)},
                                        {ColumnType::Text, 0, ColumnType::Text, 0});
    answer.blockRows = 1;
    ReportRun run(std::move(answer));
    const auto data = run.data();
    ASSERT_TRUE(data);
    EXPECT_EQ(data->totals()[0].sum(ColumnRole::ValoareBruta).toShortestText(2),
              u"1000000000000000000.000000000000000001"_s);
    EXPECT_EQ(data->leiTotal().value.toText(), u"1000000000000.00"_s);
}

TEST(Totals, oneLineACurrencyInCodePointOrder) {
    ReportRun run(answerOf({amounts(u"1"_s, u"USD"_s, u"1"_s), amounts(u"2"_s, std::nullopt, u"1"_s),
                            amounts(u"4"_s, u"eur"_s, u"1"_s), amounts(u"8"_s, u"EUR"_s, u"1"_s),
                            amounts(u"16"_s, u""_s, u"1"_s), amounts(u"32"_s, u"USD"_s, u"1"_s)}));
    QStringList lines;
    const auto data = run.data();
    for (const CurrencyTotal& total : data->totals()) {
        lines.append(total.currency + u':' + total.sum(ColumnRole::ValoareBruta).toShortestText() + u'/' +
                     QString::number(total.rows));
    }
    EXPECT_EQ(lines, (QStringList{u":18/2"_s, u"EUR:8/1"_s, u"USD:33/2"_s, u"eur:4/1"_s}));
}

TEST(LeiTotal, countsWhatHasNoRate) {
    struct Case {
        const char* name;
        std::vector<Row> rows;
        const char16_t* total;
        qint64 withoutRate;
    };
    const QString max = u"99999999999999999999999999999999999999"_s;
    const Case cases[] = {
        {"none", {}, u"0.00", 0},
        {"rounded once",
         {amounts(u"0.01"_s, u"EUR"_s, u"0.25"_s), amounts(u"0.01"_s, u"USD"_s, u"0.25"_s)},
         u"0.01",
         0},
        {"half away from zero", {amounts(u"0.01"_s, u"EUR"_s, u"-0.5"_s)}, u"-0.01", 0},
        {"lei count one to one",
         {amounts(u"1"_s, u"RON"_s, u"3"_s), amounts(u"2"_s, u"lei"_s, std::nullopt),
          amounts(u"4"_s, u"Rol "_s, u"x"_s)},
         u"7.00",
         0},
        {"null, zero, words",
         {amounts(u"1"_s, u"EUR"_s, std::nullopt), amounts(u"1"_s, u"EUR"_s, u"0.0"_s),
          amounts(u"1"_s, u"EUR"_s, u"curs"_s), amounts(u"1"_s, u"EUR"_s, u""_s), amounts(u"1"_s, u"EUR"_s, u"2"_s)},
         u"2.00",
         4},
        {"a comma and an exponent",
         {amounts(u"10"_s, u"EUR"_s, u"4,97"_s), amounts(u"1"_s, u"EUR"_s, u"5e-1"_s)},
         u"50.20",
         0},
        {"beyond 128 bits",
         {amounts(max, u"EUR"_s, u"1000000000000000000000"_s)},
         u"99999999999999999999999999999999999999000000000000000000000.00",
         0},
    };
    for (const Case& one : cases) {
        ReportRun run(answerOf(one.rows, {ColumnType::Text, 0, ColumnType::Text, 0}));
        const auto data = run.data();
        ASSERT_TRUE(data) << one.name;
        EXPECT_EQ(data->leiTotal().value.toText(), QString::fromUtf16(one.total)) << one.name;
        EXPECT_EQ(data->leiTotal().rowsWithoutRate, one.withoutRate) << one.name;
    }
}

TEST(Totals, nullsAddNothing) {
    Row empty;
    empty.code = empty.name = empty.date = empty.number = empty.net = empty.tva = empty.taxe = empty.gross =
        empty.moneda = empty.rate = std::nullopt;
    ReportRun run(answerOf({empty, Row(), empty}));
    const auto data = run.data();
    EXPECT_EQ(keysOf(*data), (QStringList{u"(fara cod)|"_s, u"F0001|ALFA TRADE SRL"_s}));
    EXPECT_EQ(data->totals()[0].rows, 2);
    EXPECT_EQ(data->totals()[0].sum(ColumnRole::ValoareBruta).toShortestText(2), u"0.00"_s);
    EXPECT_EQ(data->leiTotal().value.toText(), u"597.00"_s);
    EXPECT_EQ(data->leiTotal().rowsWithoutRate, 2);
}

TEST(RunOutcome, tellsWhatIsWrongWithTheRows) {
    struct Case {
        const char* name;
        QString net;
        Types types;
        int number;
    };
    const Case cases[] = {
        {"words for an amount", u"mult"_s, {ColumnType::Text}, base::kTypeMismatch},
        {"a date for an amount", u"2026-01-01"_s, {ColumnType::DateTime}, base::kTypeMismatch},
        {"more than 38 digits", u"123456789012345678901234567890123456789"_s, {ColumnType::Text}, base::kOverflow},
        {"a huge double", u"1e38"_s, {ColumnType::Double}, base::kOverflow},
        {"the same as a text", u"1e+300"_s, {ColumnType::Text}, base::kOverflow},
        {"an infinity", u"inf"_s, {ColumnType::Double}, base::kTypeMismatch},
        {"the same as a text", u"inf"_s, {ColumnType::Text}, base::kTypeMismatch},
        {"an unknown type", u"100"_s, {static_cast<ColumnType>(7)}, base::kTypeMismatch},
        {"more places than there are", u"0"_s, {ColumnType::Decimal64, 39}, base::kTypeMismatch},
    };
    for (const Case& one : cases) {
        Row row;
        row.net = row.tva = row.taxe = row.gross = one.net;
        ReportRun run(answerOf({row}, one.types));
        const RunOutcome outcome = run.outcome();
        EXPECT_FALSE(outcome.data) << one.name;
        ASSERT_TRUE(outcome.error) << one.name;
        EXPECT_EQ(outcome.error->number(), one.number) << one.name << outcome.error->what();
    }
}

TEST(RunOutcome, carriesTheProvidersErrors) {
    const base::Error lost(base::kProviderFailure, u"Communication link failure"_s);
    tests::FakeAnswer atRun = answerOf({Row()});
    atRun.runError = lost;
    tests::FakeAnswer halfWay = answerOf({Row(), Row(), Row()});
    halfWay.blockRows = 1;
    halfWay.fetchError = lost;
    halfWay.fetchErrorAt = 2;
    for (const tests::FakeAnswer& answer : {atRun, halfWay}) {
        ReportRun run(answer);
        const RunOutcome outcome = run.outcome();
        ASSERT_TRUE(outcome.error);
        EXPECT_EQ(outcome.error->number(), base::kProviderFailure);
        EXPECT_EQ(outcome.error->description(), u"Communication link failure"_s);
        EXPECT_FALSE(outcome.isCancelled);
    }
    tests::FakeAnswer atPrepare = answerOf({Row()});
    atPrepare.openError = base::Error(base::kStatementError, u"Incorrect syntax near 'x'."_s);
    EXPECT_THROW(ReportRun{atPrepare}, base::Error);
}

TEST(BindFields, needsTheColumnsThatAreGroupedAndAdded) {
    for (const QString& missing : {u"ValoareTaxe"_s, u"Moneda"_s, u"CODCLIENT"_s, u"CursValutar"_s}) {
        tests::FakeAnswer answer = answerOf({});
        for (tests::FakeColumn& column : answer.columns) {
            if (column.name == missing) column.name = u"Alta"_s;
        }
        try {
            const ReportRun run(answer);
            ADD_FAILURE() << qPrintable(missing);
        } catch (const base::Error& error) {
            EXPECT_EQ(error.number(), base::kNoSuchObject);
            EXPECT_TRUE(error.description().contains(missing, Qt::CaseInsensitive)) << error.what();
        }
    }
    Report report(definitionNamed(u"CRFacturiImport"_s));
    EXPECT_THROW(report.bindFields(), base::Error);
    EXPECT_THROW(report.start({}), base::Error);
    tests::FakeAnswer twice = answerOf({Row()});
    twice.columns.append({u"MONEDA"_s});
    twice.rows[0].push_back(u"XYZ"_s);
    ReportRun run(twice);
    EXPECT_EQ(run.data()->totals().at(0).currency, u"EUR"_s) << "the first of two columns of one name";
    const db::Connection connection(run.connection().asConnection());
    run.report().addCommand(connection, {connection, db::kCommandText, u"SELECT"_s});
    EXPECT_THROW(run.report().start({}), base::Error) << "another command is bound anew";
}

TEST(Cancel, endsARunSoonAndOnce) {
    struct Case {
        const char* name;
        std::chrono::milliseconds runDelay, fetchDelay;
    };
    const Case cases[] = {{"while it starts", std::chrono::seconds(60), {}},
                          {"between rows", {}, std::chrono::seconds(60)},
                          {"while rows come", {}, {}}};
    for (const Case& one : cases) {
        tests::FakeAnswer answer = answerOf(sampleRows(1000, 10));
        answer.runDelay = one.runDelay;
        answer.fetchDelay = one.fetchDelay;
        answer.repeat = 100'000;
        ReportRun run(std::move(answer));
        std::promise<RunOutcome> promise;
        int calls = 0;
        run.report().start({.answered = {}, .progress = {}, .finished = [&](RunOutcome outcome) {
                                ++calls;
                                promise.set_value(std::move(outcome));
                            }});
        while (run.connection().calls().size() < 2) std::this_thread::yield();
        run.report().cancel();
        run.report().cancelAndWait();
        const RunOutcome outcome = promise.get_future().get();
        EXPECT_TRUE(outcome.isCancelled) << one.name;
        EXPECT_FALSE(outcome.error) << one.name;
        EXPECT_FALSE(outcome.data) << one.name;
        EXPECT_EQ(calls, 1) << one.name;
    }
}

TEST(ReportRun, runsAgainAlsoAfterAStop) {
    tests::FakeAnswer answer = answerOf({Row(), Row()});
    answer.runDelay = std::chrono::seconds(60);
    ReportRun run(answer);
    run.report().start({});
    while (run.connection().calls().size() < 2) std::this_thread::yield();
    answer.runDelay = {};
    run.connection().answer({}, answer);
    for (int i = 0; i < 3; ++i) EXPECT_EQ(run.data()->rowCount(), 2);
}

TEST(ReportData, takesLittleMemory) {
    for (const int partners : {50, 20'000}) {
        tests::FakeAnswer answer = answerOf(sampleRows(20'000, partners));
        answer.repeat = 5;
        ReportRun run(std::move(answer));
        const auto data = run.data();
        EXPECT_EQ(data->rowCount(), 100'000);
        EXPECT_LT(data->memoryUsed() / data->rowCount(), 160) << partners;
    }
}
