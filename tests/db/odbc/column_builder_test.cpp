#include "db/odbc/column_builder.h"

#include "support/test_data.h"

#include "db/odbc/number_text.h"

#include <QStringList>

#include <gtest/gtest.h>

namespace velcoran::odbc {
namespace {

using namespace Qt::StringLiterals;

QString numberText(base::Int128 mantissa, int scale) { return base::Decimal::fromInt128(mantissa, scale).toText(); }

TEST(NumberText, readsWhatDriversWrite) {
    const struct {
        const char* text;
        const char* value;  ///< null for no number
    } cases[] = {
        {"0", "0"},
        {"-12.50", "-12.50"},
        {" +7 ", "7"},
        {".5", "0.5"},
        {"-.0001", "-0.0001"},
        {"5.", "5"},
        {"1.5e3", "1500"},
        {"1e-3", "0.001"},
        {"1.0e+20", "100000000000000000000"},
        {"0.00e5", "0"},
        {"999999999999999999", "999999999999999999"},
        {"9999999999999999999", "9999999999999999999"},
        {"-123456789012345678901234567890.12345678", "-123456789012345678901234567890.12345678"},
        {"99999999999999999999999999999999999999", "99999999999999999999999999999999999999"},
        {"1234567890123456789012345678901234567.500", "1234567890123456789012345678901234567.5"},
        {"000000000000000000000000000000000000000000001", "1"},
        {"999999999999999999999999999999999999999", nullptr},
        {"1e38", nullptr},
        {"1e-39", nullptr},
        {"1e999999999999", nullptr},
        {"", nullptr},
        {"-", nullptr},
        {".", nullptr},
        {"1.2.3", nullptr},
        {"12a", nullptr},
        {"NaN", nullptr},
    };
    for (const auto& one : cases) {
        const auto number = parseNumber(one.text);
        ASSERT_EQ(number.has_value(), one.value != nullptr) << one.text;
        if (number) {
            EXPECT_EQ(numberText(number->mantissa, number->scale), QString::fromUtf8(one.value)) << one.text;
        }
        std::int64_t mantissa = 0;
        int scale = 0;
        const bool isShort = parseShortNumber(one.text, mantissa, scale);
        EXPECT_TRUE(!isShort || one.value != nullptr) << one.text;
        if (!isShort || one.value == nullptr) continue;
        EXPECT_EQ(numberText(mantissa, scale), QString::fromUtf8(one.value)) << one.text;
    }
}

struct BlockCase {
    const char* name;
    QStringList texts;  ///< a null text for null
    ColumnType type;
    int scale;
    QStringList values;
};

QString valueAt(const ColumnBlock& block, std::size_t row) {
    if (block.nulls != nullptr && block.nulls[row] != 0) return {};
    if (block.type == ColumnType::Text)
        return QString::fromUtf16(static_cast<const char16_t*>(block.values) + block.offsets[row],
                                  block.offsets[row + 1] - block.offsets[row]);
    const base::Int128 mantissa = block.type == ColumnType::Decimal128
                                      ? static_cast<const base::Int128*>(block.values)[row]
                                      : static_cast<const std::int64_t*>(block.values)[row];
    return numberText(mantissa, block.scale);
}

TEST(ColumnBuilder, findsOneScaleAndWidthForABlock) {
    const QString big = u"12345678901234567890"_s;
    const QString biggest = QString(38, u'9');
    const BlockCase cases[] = {
        {"the described scale", {u"1"_s, QString(), u"2.5"_s}, ColumnType::Decimal64, 2, {u"1.00"_s, {}, u"2.50"_s}},
        {"more places",
         {u"1.5"_s, u"-0.125"_s, u"3"_s},
         ColumnType::Decimal64,
         3,
         {u"1.500"_s, u"-0.125"_s, u"3.000"_s}},
        {"wide", {u"1"_s, big, u"2"_s}, ColumnType::Decimal128, 2, {u"1.00"_s, big + u".00"_s, u"2.00"_s}},
        {"wide by scale",
         {u"99999999999999999"_s, u"0.5"_s},
         ColumnType::Decimal128,
         2,
         {u"99999999999999999.00"_s, u"0.50"_s}},
        {"wide, then more places",
         {big, QString(), u"0.001"_s},
         ColumnType::Decimal128,
         3,
         {big + u".000"_s, {}, u"0.001"_s}},
        {"wide by more places",
         {u"9223372036854775.00"_s, u"0.00001"_s},
         ColumnType::Decimal128,
         5,
         {u"9223372036854775.00000"_s, u"0.00001"_s}},
        {"too many digits together",
         {QString(), u"0.5"_s, biggest, u"7"_s},
         ColumnType::Text,
         0,
         {{}, u"0.5"_s, biggest, u"7"_s}},
        {"no room for more places",
         {u"1"_s, QString(35, u'9'), u"0.12345"_s},
         ColumnType::Text,
         0,
         {u"1"_s, QString(35, u'9'), u"0.12345"_s}},
        {"no number",
         {u"1"_s, QString(), u"NaN ș"_s, u"2.50"_s},
         ColumnType::Text,
         0,
         {u"1"_s, {}, u"NaN ș"_s, u"2.5"_s}},
        {"beyond 38 digits", {u"1"_s, u"1.50e+40"_s, u"2"_s}, ColumnType::Text, 0, {u"1"_s, u"1.5e+40"_s, u"2"_s}},
        {"nulls alone", {QString(), QString()}, ColumnType::Decimal64, 2, {{}, {}}},
    };
    ColumnBuilder builder(planColumn({u"v"_s, SQL_DECIMAL, 18, 2, false}, false));
    for (const BlockCase& one : cases) {
        builder.start();
        for (const QString& text : one.texts) {
            if (text.isNull()) {
                builder.appendNull();
            } else {
                builder.appendNumber(text.toStdString());
            }
        }
        const ColumnBlock block = builder.block(0);
        EXPECT_EQ(block.type, one.type) << one.name;
        EXPECT_EQ(block.scale, one.scale) << one.name;
        for (qsizetype row = 0; row < one.values.size(); ++row) {
            EXPECT_EQ(valueAt(block, static_cast<std::size_t>(row)), one.values[row]) << one.name << ", row " << row;
            const auto first = static_cast<std::uint32_t>(row);
            EXPECT_EQ(valueAt(builder.block(first), 0), one.values[row]) << one.name << ", from row " << row;
        }
    }
}

TEST(ColumnBuilder, keepsTheDigitsOfShortReals) {
    const float values[] = {0.1F, 100000, -4.9765F, 3.4e38F};
    const SQLLEN lengths[] = {sizeof(float), sizeof(float), sizeof(float), sizeof(float)};
    const ColumnPlan plan = planColumn({u"v"_s, SQL_REAL, 24, 0, false}, false);
    ColumnBuilder builder(plan);
    builder.append({reinterpret_cast<const std::byte*>(values), lengths, plan.valueBytes}, 4);
    const ColumnBlock block = builder.block(0);
    ASSERT_EQ(block.type, ColumnType::Double);
    const double expected[] = {0.1, 100000, -4.9765, 3.4e38};
    for (int row = 0; row < 4; ++row) EXPECT_EQ(static_cast<const double*>(block.values)[row], expected[row]) << row;
}

TEST(ColumnPlan, followsTheDescription) {
    const struct {
        DriverColumn column;
        ColumnType type;
        int scale;
        bool isLong;
    } cases[] = {
        {{u"bit"_s, SQL_BIT, 1, 0, true}, ColumnType::Int64, 0, false},
        {{u"tinyint"_s, SQL_TINYINT, 3, 0, true}, ColumnType::Int64, 0, false},
        {{u"unsigned bigint"_s, SQL_BIGINT, 20, 0, true}, ColumnType::Int64, 0, false},
        {{u"money"_s, SQL_DECIMAL, 19, 4, false}, ColumnType::Decimal64, 4, false},
        {{u"float"_s, SQL_FLOAT, 53, 0, false}, ColumnType::Double, 0, false},
        {{u"datetime"_s, SQL_TYPE_TIMESTAMP, 23, 3, false}, ColumnType::DateTime, 0, false},
        {{u"date"_s, SQL_TYPE_DATE, 10, 0, false}, ColumnType::Text, 0, false},
        {{u"time"_s, -154, 16, 7, false}, ColumnType::Text, 0, false},
        {{u"guid"_s, SQL_GUID, 36, 0, false}, ColumnType::Text, 0, false},
        {{u"nvarchar(40)"_s, SQL_WVARCHAR, 40, 0, false}, ColumnType::Text, 0, false},
        {{u"nvarchar(4000)"_s, SQL_WVARCHAR, 4000, 0, false}, ColumnType::Text, 0, false},
        {{u"varchar(8000)"_s, SQL_VARCHAR, 8000, 0, false}, ColumnType::Text, 0, true},
        {{u"nvarchar(max)"_s, SQL_WVARCHAR, 0, 0, false}, ColumnType::Text, 0, true},
        {{u"ntext"_s, SQL_WLONGVARCHAR, 1073741823, 0, false}, ColumnType::Text, 0, true},
        {{u"varbinary(20)"_s, SQL_VARBINARY, 20, 0, false}, ColumnType::Text, 0, false},
        {{u"xml"_s, -152, 0, 0, false}, ColumnType::Text, 0, true},
        {{u"variant"_s, -150, 8000, 0, false}, ColumnType::Text, 0, true},
    };
    for (const auto& one : cases) {
        const ColumnPlan plan = planColumn(one.column, false);
        EXPECT_EQ(plan.expected, one.type) << one.column.name.toStdString();
        EXPECT_EQ(plan.scale, one.scale) << one.column.name.toStdString();
        EXPECT_EQ(plan.isLong, one.isLong) << one.column.name.toStdString();
        EXPECT_EQ(plan.valueBytes == 0, one.isLong) << one.column.name.toStdString();
    }
}

}  // namespace
}  // namespace velcoran::odbc
