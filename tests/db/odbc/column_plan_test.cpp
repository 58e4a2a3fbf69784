#include "db/odbc/column_plan.h"

#include "support/test_data.h"

#include "db/odbc/bound_values.h"

#include <gtest/gtest.h>

namespace velcoran::odbc {
namespace {

using namespace Qt::StringLiterals;

TEST(BoundValues, keepTheDigitsOfShortReals) {
    const float values[] = {0.1F, 100000, -4.9765F, 3.4e38F};
    const SQLLEN lengths[] = {sizeof(float), sizeof(float), sizeof(float), sizeof(float)};
    const ColumnPlan plan = planColumn({u"v"_s, SQL_REAL, 24, 0, false}, false);
    provider::ColumnBuilder column(plan.expected);
    column.start(4);
    appendValues(column, plan.kind, {reinterpret_cast<const std::byte*>(values), lengths, plan.valueBytes}, 4);
    const ColumnBlock block = column.block();
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
