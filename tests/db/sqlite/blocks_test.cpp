#include "support/direct_call_runner.h"
#include "support/test_data.h"
#include "test_file.h"

#include "base/decimal.h"
#include "db/row_set.h"

#include <gtest/gtest.h>

namespace velcoran::sqlite {
namespace {

using namespace Qt::StringLiterals;

struct BlockCase {
    const char* values;
    ColumnType type;
    int scale;
    QStringList texts;
};

TEST(Blocks, takeTheirTypeFromTheValues) {
    const BlockCase cases[] = {
        {"(1),(NULL),(-3)", ColumnType::Int64, 0, {u"1"_s, QString(), u"-3"_s}},
        {"(1),(2.5),(NULL)", ColumnType::Decimal64, 2, {u"1"_s, u"2.5"_s, QString()}},
        {"(0.1),(0.0133),(7)", ColumnType::Decimal64, 4, {u"0.1"_s, u"0.0133"_s, u"7"_s}},
        {"(0.3),(0.1+0.2)", ColumnType::Decimal64, 2, {u"0.3"_s, u"0.3"_s}},
        {"(9223372036854775807),(0.5)", ColumnType::Decimal128, 2, {u"9223372036854775807"_s, u"0.5"_s}},
        {"(0.5),(9223372036854775807)", ColumnType::Decimal128, 2, {u"0.5"_s, u"9223372036854775807"_s}},
        {"(NULL),(1e20),(0.001)", ColumnType::Decimal128, 3, {QString(), u"100000000000000000000"_s, u"0.001"_s}},
        {"(1e37)", ColumnType::Decimal128, 0, {u'1' + QString(37, u'0')}},
        {"(1e-38),(0)", ColumnType::Decimal64, 38, {u"0."_s + QString(37, u'0') + u'1', u"0"_s}},
        {"(9223372036854775807),(0.25),(9e999)", ColumnType::Text, 0, {u"9223372036854775807"_s, u"0.25"_s, u"inf"_s}},
        {"(1e37),(0.001)", ColumnType::Text, 0, {u'1' + QString(37, u'0'), u"0.001"_s}},
        {"(1),(1e38),(NULL),(2.50)", ColumnType::Text, 0, {u"1"_s, u"1e+38"_s, QString(), u"2.5"_s}},
        {"(1),(0.25),(NULL),('x'),(2.50)", ColumnType::Text, 0, {u"1"_s, u"0.25"_s, QString(), u"x"_s, u"2.5"_s}},
        {"(9e999),('ș')", ColumnType::Text, 0, {u"inf"_s, u"ș"_s}},
        {"('a'),(7),('')", ColumnType::Text, 0, {u"a"_s, u"7"_s, QString()}},
        {"(NULL),(NULL)", ColumnType::Text, 0, {QString(), QString()}},
    };
    const TestFile file;
    for (const BlockCase& one : cases) {
        const QString statement = u"SELECT * FROM (VALUES "_s + QString::fromUtf8(one.values) + u')';
        const db::Rows rows = file.connection().execute(statement);
        const RowBlock* block = rows.fetch();
        ASSERT_NE(block, nullptr) << one.values;
        EXPECT_EQ(block->columns[0].type, one.type) << one.values;
        EXPECT_EQ(block->columns[0].scale, one.scale) << one.values;
        db::RowSet set;
        tests::DirectCallRunner runner;
        set.open(file.connection(), statement, runner);
        QStringList texts;
        for (qsizetype row = 0; row < set.recordCount(); ++row) texts.append(set.cell(row, 0));
        EXPECT_EQ(texts, one.texts) << one.values;
    }
}

TEST(Blocks, endAtTheRowLimitAndAtTheByteLimit) {
    const TestFile file;
    const db::Rows rows = file.connection().execute(
        u"WITH RECURSIVE n(i) AS (SELECT 1 UNION ALL SELECT i+1 FROM n LIMIT 1000) "
        "SELECT i, CASE WHEN i > 500 THEN printf('%.*c', 100000, 'x') ELSE NULL END FROM n"_s);
    EXPECT_EQ(rows.fetch(300)->rowCount, 300U);
    const RowBlock* second = rows.fetch(300);
    EXPECT_GT(second->rowCount, 200U) << "rows without text";
    EXPECT_LT(second->rowCount, 215U) << "about five texts of 200 kB fill a block";
    std::uint32_t total = 300 + second->rowCount;
    while (const RowBlock* block = rows.fetch(300)) {
        EXPECT_EQ(static_cast<const std::int64_t*>(block->columns[0].values)[0], total + 1);
        total += block->rowCount;
    }
    EXPECT_EQ(total, 1000U);
    EXPECT_EQ(rows.fetch(300), nullptr);
}

TEST(Blocks, describeColumnsBeforeTheyRun) {
    const TestFile file("CREATE TABLE [a b] ([C d] TEXT COLLATE NOCASE, e INTEGER, f NUMERIC);");
    const db::Statement statement = file.connection().prepare(u"SELECT [c D], e, f, Avg(f) AS g FROM [a b]"_s);
    const QList<db::Column> columns = statement.columns();
    ASSERT_EQ(columns.size(), 4);
    EXPECT_EQ(columns[0].name, u"c D"_s);
    EXPECT_EQ(columns[0].type, ColumnType::Text);
    EXPECT_EQ(columns[1].type, ColumnType::Int64);
    EXPECT_EQ(columns[2].type, ColumnType::Decimal64);
    EXPECT_EQ(columns[3].name, u"g"_s);
    EXPECT_NE(statement.run().fetch(), nullptr);
    EXPECT_NE(statement.run().fetch(), nullptr) << "a second run starts from the first row";
}

}  // namespace
}  // namespace velcoran::sqlite
