#include "db/provider/column_builder.h"

#include "db/provider/utf16.h"
#include "support/test_data.h"

#include <QStringList>

#include <gtest/gtest.h>

namespace velcoran::provider {
namespace {

using namespace Qt::StringLiterals;

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
    const base::ShortDecimal number{mantissa, block.scale};
    return QString::fromStdString(number.toText(block.scale));
}

TEST(ColumnBuilder, findsOneScaleAndWidthForWrittenNumbers) {
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
    ColumnBuilder builder(ColumnType::Decimal64, 2);
    for (const BlockCase& one : cases) {
        builder.start(static_cast<std::uint32_t>(one.texts.size()));
        for (const QString& text : one.texts) {
            if (text.isNull()) {
                builder.appendNull();
            } else {
                builder.appendNumber(text.toStdString());
            }
        }
        const ColumnBlock block = builder.block();
        EXPECT_EQ(block.type, one.type) << one.name;
        EXPECT_EQ(block.scale, one.scale) << one.name;
        for (qsizetype row = 0; row < one.values.size(); ++row) {
            EXPECT_EQ(valueAt(block, static_cast<std::size_t>(row)), one.values[row]) << one.name << ", row " << row;
            const auto first = static_cast<std::uint32_t>(row);
            EXPECT_EQ(valueAt(builder.block(first), 0), one.values[row]) << one.name << ", from row " << row;
        }
    }
}

// A column without a scale of its own: whole numbers stay whole, whether they come as numbers or as texts.
TEST(ColumnBuilder, takesTheTypeFromTheValues) {
    const struct {
        const char* name;
        QStringList texts;  ///< a null text for null
        ColumnType type;
        int scale;
    } cases[] = {
        {"whole", {u"7"_s, QString(), u"-3"_s}, ColumnType::Int64, 0},
        {"widest whole", {u"9223372036854775807"_s}, ColumnType::Int64, 0},
        {"wider than 64 bits", {u"5"_s, u"18446744073709551615"_s}, ColumnType::Decimal128, 0},
        {"with places", {u"7"_s, u"2.5"_s}, ColumnType::Decimal64, 2},
        {"nulls alone", {QString()}, ColumnType::Int64, 0},
    };
    ColumnBuilder builder(ColumnType::Int64);
    for (const auto& one : cases) {
        builder.start(3);
        for (const QString& text : one.texts)
            text.isNull() ? builder.appendNull() : builder.appendNumber(text.toStdString());
        const ColumnBlock block = builder.block();
        EXPECT_EQ(block.type, one.type) << one.name;
        EXPECT_EQ(block.scale, one.scale) << one.name;
        for (qsizetype row = 0; row < one.texts.size(); ++row) {
            const QString shown = valueAt(block, static_cast<std::size_t>(row));
            EXPECT_EQ(shown.isNull(), one.texts[row].isNull()) << one.name;
            EXPECT_EQ(shown.toDouble(), one.texts[row].toDouble()) << one.name;
        }
    }
}

TEST(ColumnBuilder, givesNullsAloneTheExpectedType) {
    for (const ColumnType type : {ColumnType::Int64, ColumnType::Double, ColumnType::Text, ColumnType::DateTime}) {
        ColumnBuilder builder(type);
        builder.start(2);
        builder.appendNull();
        builder.appendNull();
        const ColumnBlock block = builder.block();
        EXPECT_EQ(block.type, type);
        EXPECT_EQ(block.nulls[1], 1);
        EXPECT_EQ(block.offsets != nullptr, type == ColumnType::Text);
        EXPECT_NE(block.values, nullptr);
    }
}

TEST(Utf16, transcodesAndReplacesWhatIsNoUtf8) {
    struct Case {
        std::string utf8;
        std::u16string utf16;
    };
    const Case cases[] = {
        {"plain ascii of some length", u"plain ascii of some length"},
        {"ășțîâ €", u"ășțîâ €"},
        {"12345678ș\xF0\x9F\x98\x80", u"12345678ș😀"},
        {"a\xFFz", u"a\uFFFDz"},
        {"\xC3", u"\uFFFD"},
        {"\xE2\x82x", u"\uFFFD\uFFFDx"},
        {"\xED\xA0\x80", u"\uFFFD\uFFFD\uFFFD"},
        {"\xC0\xAF", u"\uFFFD\uFFFD"},
        {"", u""},
    };
    for (const Case& one : cases) {
        std::u16string units(one.utf8.size(), u'?');
        units.resize(toUtf16(one.utf8.data(), one.utf8.size(), units.data()));
        EXPECT_EQ(units, one.utf16) << one.utf8;
    }
}

}  // namespace
}  // namespace velcoran::provider
