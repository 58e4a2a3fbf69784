#include "contract_test.h"

#include "base/decimal.h"
#include "com/error_information.h"
#include "support/direct_call_runner.h"

#include <cstring>

namespace velcoran::tests {
namespace {

using namespace Qt::StringLiterals;

constexpr int kNote = Provider::kNoteLength;

TEST_P(Contract, describesColumnsBeforeTheStatementRuns) {
    const db::Statement statement = m_connection.prepare(m_provider->values());
    const QStringList names = {u"id"_s, u"code"_s, u"name"_s, u"amount"_s, u"rate"_s, u"day"_s, u"note"_s};
    const QList<db::Column> columns = statement.columns();
    ASSERT_EQ(columns.size(), names.size());
    for (int i = 0; i < names.size(); ++i) {
        EXPECT_EQ(columns[i].name, names[i]);
        EXPECT_EQ(columns[i].type, m_provider->types()[static_cast<std::size_t>(i)]) << names[i].toStdString();
    }
    EXPECT_EQ(numberOf([&] { (void)m_connection.execute(m_provider->values()).fetch(); }), 0);
}

TEST_P(Contract, givesBlocksOfTheDescribedTypes) {
    const db::Rows rows = m_connection.execute(m_provider->values());
    const RowBlock* const block = rows.fetch();
    ASSERT_NE(block, nullptr);
    ASSERT_EQ(block->rowCount, 3U);
    for (std::uint32_t i = 0; i < block->columnCount; ++i) {
        const ColumnBlock& column = block->columns[i];
        EXPECT_EQ(column.type, m_provider->types()[i]) << "column " << i;
        if (i == 0) continue;
        ASSERT_NE(column.nulls, nullptr) << "column " << i;
        EXPECT_EQ(column.nulls[0] + column.nulls[1] * 10 + column.nulls[2] * 100, 10) << "column " << i;
    }
    EXPECT_EQ(rows.fetch(), nullptr);
    EXPECT_EQ(rows.fetch(), nullptr) << "the end stays the end";
}

TEST_P(Contract, keepsEveryValueWhole) {
    db::RowSet set;
    tests::DirectCallRunner runner;
    set.open(m_connection, m_provider->values(), runner);
    ASSERT_EQ(set.recordCount(), 3);
    const QStringList first = {u"1"_s,    u"0007"_s,   u"Țuică și „ăâî” €"_s,
                               u"12.5"_s, u"4.9765"_s, u"2026-03-15 00:00:00"_s};
    const QStringList third = {u"3"_s, QString(), u"日本語 😀"_s, u"-0.0001"_s, u"0.5"_s, u"2026-12-31 23:59:59"_s};
    for (int i = 0; i < first.size(); ++i) {
        EXPECT_EQ(set.cell(0, i), first[i]) << "column " << i;
        EXPECT_EQ(set.cell(2, i), third[i]) << "column " << i;
    }
    EXPECT_EQ(set.cell(0, 6), QString(kNote, u'ș')) << "a text longer than a buffer";
    set.moveNext();
    EXPECT_FALSE(set.field(3).has_value());
    set.moveNext();
    EXPECT_TRUE(set.field(1).has_value()) << "an empty text is no null";
    set.setFilter(u"name Like 'ȚUICĂ%'"_s);
    EXPECT_EQ(set.recordCount(), 1);
}

TEST_P(Contract, keepsNumbersOf38Digits) {
    if (!m_provider->bigNumber()) return;
    const db::Rows rows = m_connection.execute(*m_provider->bigNumber());
    const RowBlock* const block = rows.fetch();
    ASSERT_NE(block, nullptr);
    ASSERT_EQ(block->columns[0].type, ColumnType::Decimal128);
    base::Int128 mantissa = 0;
    std::memcpy(&mantissa, block->columns[0].values, sizeof mantissa);
    EXPECT_EQ(base::Decimal(base::ShortDecimal{mantissa, block->columns[0].scale}).toText(), Provider::bigNumberText());
}

TEST_P(Contract, showsFloatsInTheDigitsThatPeopleWrite) {
    const db::Rows rows = m_connection.execute(m_provider->floats());
    const RowBlock* const block = rows.fetch();
    ASSERT_NE(block, nullptr);
    EXPECT_EQ(block->columns[2].type, ColumnType::Text) << "no decimal of 38 digits holds it";
    db::RowSet set;
    tests::DirectCallRunner runner;
    set.open(m_connection, m_provider->floats(), runner);
    EXPECT_EQ(set.cell(0, 0), u"100000"_s);
    EXPECT_EQ(set.cell(0, 1), u"0.1"_s);
    const QString large = set.cell(0, 2).trimmed();
    EXPECT_TRUE(large == u"1e+40"_s || large == u'1' + QString(40, u'0')) << large.toStdString();
    set.setFilter(u"cod Like '1000%'"_s);
    EXPECT_EQ(set.recordCount(), 1);
}

TEST_P(Contract, givesAnEmptyResultItsColumns) {
    const db::Rows rows = m_connection.execute(m_provider->series(0));
    EXPECT_EQ(rows.columns().size(), 2);
    EXPECT_EQ(rows.fetch(), nullptr);
    expectUsable();
}

TEST_P(Contract, failsWithTheNumberOfTheFault) {
    for (const FailingStatement& one : m_provider->failing()) {
        const std::string words = one.text.toStdString();
        EXPECT_EQ(numberOf([&] { readAll(m_connection.execute(one.text)); }), one.number) << words;
        EXPECT_EQ(numberOf([&] { readAll(m_connection.openRowset(one.text)); }), one.number) << words;
        EXPECT_EQ(numberOf([&] { (void)m_connection.prepare(one.text); }), one.number) << "prepared: " << words;
        EXPECT_EQ(m_interface->State(), kStateOpen);
    }
    expectUsable();
}

TEST_P(Contract, failsWhereARowFails) {
    if (!m_provider->failingLate()) return;
    EXPECT_EQ(numberOf([&] { readAll(m_connection.execute(*m_provider->failingLate())); }), base::kStatementError);
    const db::Statement statement = m_connection.prepare(*m_provider->failingLate());
    EXPECT_EQ(numberOf([&] { readAll(statement.run()); }), base::kStatementError);
    expectUsable();
}

TEST_P(Contract, readsAllRowsWhateverTheBlocks) {
    constexpr int kCount = 20'000;
    for (const std::uint32_t maxRows : {7U, 1000U, 100'000U}) {
        const db::Rows rows = m_connection.execute(m_provider->series(kCount));
        EXPECT_EQ(sumSeries(rows, maxRows), sumTo(kCount)) << maxRows;
    }
    db::RowSet set;
    tests::DirectCallRunner runner;
    set.open(m_connection, m_provider->series(kCount), runner);
    ASSERT_EQ(set.recordCount(), kCount);
    for (const int row : {0, 4095, 4096, kCount - 1}) EXPECT_EQ(set.cell(row, 1), u"rand %1"_s.arg(row + 1)) << row;
}

TEST_P(Contract, startsAnotherStatementWhileOneIsOpen) {
    constexpr int kCount = 20'000;
    const db::Rows first = m_connection.execute(m_provider->series(kCount));
    const RowBlock* const block = first.fetch(100);
    ASSERT_NE(block, nullptr);
    const qint64 start = sumTo(block->rowCount);
    const db::Statement second = m_connection.prepare(m_provider->series(kCount));
    const db::Rows rows = second.run();
    ASSERT_NE(rows.fetch(50), nullptr);
    expectUsable();
    EXPECT_EQ(start + sumSeries(first), sumTo(kCount));
    EXPECT_EQ(sumTo(50) + sumSeries(rows), sumTo(kCount));
}

TEST_P(Contract, runsAPreparedStatementAgain) {
    constexpr int kCount = 10'000;
    const db::Statement statement = m_connection.prepare(m_provider->series(kCount));
    EXPECT_EQ(sumSeries(statement.run()), sumTo(kCount));
    ASSERT_NE(statement.run().fetch(10), nullptr);
    EXPECT_EQ(sumSeries(statement.run()), sumTo(kCount)) << "from the first row, whatever was read";
}

TEST_P(Contract, fetchesOnlyAfterARun) {
    com::Ref<IStatement> statement;
    ASSERT_EQ(m_interface->Prepare(com::toText(m_provider->series(5)).get(), statement.receive()), com::kOk);
    const db::Rows rows{com::Ref<IRows>(statement.get())};
    EXPECT_EQ(numberOf([&] { readAll(rows); }), base::kOperationOnClosedObject);
    ASSERT_EQ(statement->Run(), com::kOk);
    EXPECT_EQ(sumSeries(rows), sumTo(5));
}

TEST_P(Contract, lettingGoOfRowsHalfwayLeavesTheConnectionUsable) {
    for (int i = 0; i < 3; ++i) ASSERT_NE(m_connection.execute(m_provider->series(20'000)).fetch(5), nullptr);
    expectUsable();
}

TEST_P(Contract, failsWithOneNumberOnceItIsClosed) {
    const db::Rows rows = m_connection.execute(m_provider->series(20'000));
    ASSERT_NE(rows.fetch(5), nullptr);
    const db::Statement statement = m_connection.prepare(m_provider->series(5));
    EXPECT_EQ(m_interface->State(), kStateOpen);
    m_provider->close(m_interface);
    m_provider->close(m_interface);
    EXPECT_EQ(m_interface->State(), kStateClosed);
    EXPECT_EQ(numberOf([&] { (void)m_connection.execute(m_provider->series(5)); }), base::kInvalidConnection);
    EXPECT_EQ(numberOf([&] { (void)m_connection.prepare(m_provider->series(5)); }), base::kInvalidConnection);
    EXPECT_EQ(numberOf([&] { (void)statement.run(); }), base::kInvalidConnection);
    EXPECT_EQ(numberOf([&] { readAll(rows); }), base::kInvalidConnection);
    m_connection.cancel();
}

INSTANTIATE_TEST_SUITE_P(Providers, Contract, testing::ValuesIn(providerCases()),
                         [](const auto& one) { return std::string(one.param.name); });

}  // namespace
}  // namespace velcoran::tests
