#include "support/test_data.h"
#include "test_file.h"

#include "base/error.h"

#include <gtest/gtest.h>

namespace velcoran::sqlite {
namespace {

using namespace Qt::StringLiterals;

struct ValueCase {
    const char* expression;
    const char* expected;
};

TEST(Functions, giveWhatTheServerGives) {
    constexpr ValueCase kCases[] = {
        {"str(7,len(7),0)", "7"},
        {"str(120,len(120),0)", "120"},
        {"str(7)", "         7"},
        {"str(123.45, 6, 1)", " 123.5"},
        {"str(1234.5678, 6, 3)", "1234.6"},
        {"str(12345.6, 5, 2)", "12346"},
        {"str(123, 2)", "**"},
        {"str(9.99, 1)", "*"},
        {"str(-2.5)", "        -3"},
        {"str(-0.4, 3, 1)", "  0"},
        {"str(NULL)", "<null>"},
        {"str(1, NULL)", "<null>"},
        {"str(1, 0)", "<null>"},
        {"len('ab  ')", "2"},
        {"len('  ș')", "3"},
        {"len(12.50)", "4"},
        {"len(7.0)", "1"},
        {"len(NULL)", "<null>"},
        {"CONVERT(NVARCHAR,'2026-07-31',103)", "31/07/2026"},
        {"CONVERT(NVARCHAR(5),'2026-07-31 10:20:30',103)", "31/07"},
        {"CONVERT(NVARCHAR,NULL,103)", "<null>"},
        {"CONVERT(NVARCHAR,'31.07.2026',103)", "<null>"},
        {"'a' Like 'A'", "1"},
        {"'ȘANTIER' Like '%ș[a-b]n%'", "1"},
        {"'a' Like NULL", "<null>"},
        {"12 Like '1%'", "1"},
        {"1e5 Like '100000'", "1"},
        {"'100000' Like 1e5", "1"},
        {"'a%' Like 'a!%' ESCAPE '!'", "1"},
        {"'a' + 'b' + str(1,1)", "ab1"},
    };
    const TestFile file;
    for (const ValueCase& one : kCases)
        EXPECT_EQ(file.value(u"SELECT "_s + QString::fromUtf8(one.expression)), QString::fromUtf8(one.expected))
            << one.expression;
    EXPECT_EQ(file.errorNumber(u"SELECT str('abc')"_s), base::kStatementError);
    EXPECT_EQ(file.errorNumber(u"SELECT Avg('abc')"_s), base::kStatementError);
}

TEST(Functions, averageKeepsEqualValuesAndSkipsNulls) {
    const TestFile file(
        "CREATE TABLE t (g INTEGER, v NUMERIC);"
        "INSERT INTO t VALUES (1, 12154.63), (1, 12154.63), (1, NULL), (2, 100), (2, 100), (3, 0.1), (3, 0.2),"
        "(4, NULL), (5, 3), (5, 4.5);");
    const ValueCase cases[] = {{"1", "12154.63"}, {"2", "100"}, {"3", "0.15"}, {"4", "<null>"}, {"5", "3.75"}};
    for (const ValueCase& one : cases)
        EXPECT_EQ(file.value(u"SELECT Avg(v) FROM t WHERE g="_s + QString::fromUtf8(one.expression)),
                  QString::fromUtf8(one.expected));
    EXPECT_EQ(file.value(u"SELECT typeof(Avg(v)) FROM t WHERE g=2"_s), u"integer"_s);
    EXPECT_EQ(file.value(u"SELECT Avg(v) FROM t WHERE g=9"_s), u"<null>"_s);
}

}  // namespace
}  // namespace velcoran::sqlite
