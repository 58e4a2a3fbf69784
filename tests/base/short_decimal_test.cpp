#include "base/short_decimal.h"

#include "base/decimal.h"
#include "support/test_data.h"

#include <QRegularExpression>

#include <gtest/gtest.h>

#include <cmath>
#include <cstdio>
#include <limits>
#include <random>

namespace velcoran::base {
namespace {

using namespace Qt::StringLiterals;

TEST(ShortDecimal, readsNumbersAndNothingElse) {
    const struct {
        const char* text;
        const char* value;  ///< with the digits of its scale; null for no number
    } cases[] = {
        {"0", "0"},
        {"-0.00", "0.00"},
        {"-12.50", "-12.50"},
        {" +7 ", "7"},
        {".5", "0.5"},
        {"-.0001", "-0.0001"},
        {"5.", "5"},
        {"00012", "12"},
        {"1.5e3", "1500"},
        {"1.25E-2", "0.0125"},
        {"1.0e+20", "100000000000000000000"},
        {"0.00e5", "0"},
        {"999999999999999999", "999999999999999999"},
        {"9999999999999999999", "9999999999999999999"},
        {"-123456789012345678901234567890.12345678", "-123456789012345678901234567890.12345678"},
        {"99999999999999999999999999999999999999", "99999999999999999999999999999999999999"},
        {"1234567890123456789012345678901234567.500", "1234567890123456789012345678901234567.5"},
        {"123456789012345678901234567890.0000000000", "123456789012345678901234567890.00000000"},
        {"000000000000000000000000000000000000000000001", "1"},
        {"999999999999999999999999999999999999999", nullptr},
        {"1e38", nullptr},
        {"1e-39", nullptr},
        {"1e999999999999", nullptr},
        {"1e", nullptr},
        {"", nullptr},
        {"-", nullptr},
        {".", nullptr},
        {"1.2.3", nullptr},
        {"1,5", nullptr},
        {"12a", nullptr},
        {"NaN", nullptr},
    };
    for (const auto& one : cases) {
        const auto number = ShortDecimal::parse(one.text);
        ASSERT_EQ(number.has_value(), one.value != nullptr) << one.text;
        if (number) {
            EXPECT_EQ(number->toText(number->scale), one.value) << one.text;
        }
        ShortDecimal quick;
        std::int64_t mantissa = 0;
        const bool isQuick = parseFewDigits(one.text, mantissa, quick.scale);
        quick.mantissa = mantissa;
        EXPECT_TRUE(!isQuick || one.value != nullptr) << one.text;
        if (isQuick && one.value != nullptr) {
            EXPECT_EQ(quick.toText(quick.scale), one.value) << one.text;
        }
    }
}

TEST(ShortDecimal, roundsToFifteenDigits) {
    constexpr struct {
        double value;
        const char* text;
    } kCases[] = {
        {0.0, "0"},
        {-0.0, "0"},
        {0.1 + 0.2, "0.3"},
        {-12154.63, "-12154.63"},
        {8379.61 + 21.52, "8401.13"},
        {0.0133, "0.0133"},
        {123456789012345.0, "123456789012345"},
        {1234567890123456.0, "1234567890123460"},
        {9999999999999999.0, "10000000000000000"},
        {12345678901234.56, "12345678901234.6"},
        {1.0 / 3, "0.333333333333333"},
        {2e20, "200000000000000000000"},
        {1e-30, "0.000000000000000000000000000001"},
        {1e37, "10000000000000000000000000000000000000"},
    };
    for (const auto& one : kCases) {
        const auto rounded = ShortDecimal::ofReal(one.value);
        ASSERT_TRUE(rounded) << one.text;
        EXPECT_EQ(rounded->toText(), one.text);
    }
    constexpr double kInfinity = std::numeric_limits<double>::infinity();
    for (const double none : {kInfinity, -kInfinity, std::nan(""), 1e300, 1.5e-45})
        EXPECT_FALSE(ShortDecimal::ofReal(none)) << none;
}

// The quick way through a multiplication must never differ from the digits that the library prints.
TEST(ShortDecimal, quickWayAgreesWithPrintedDigits) {
    std::mt19937_64 random(7);
    for (int round = 0; round < 200000; ++round) {
        const int scale = static_cast<int>(random() % 9);
        double value =
            static_cast<double>(static_cast<std::int64_t>(random() >> (random() % 60))) / std::pow(10, scale);
        if (random() % 4 == 0) value = std::nextafter(value, 0);
        const auto rounded = ShortDecimal::ofReal(value);
        if (!rounded) continue;
        char printed[64];
        std::snprintf(printed, sizeof printed, "%.14e", value);
        ASSERT_EQ(rounded->toReal(), std::strtod(printed, nullptr)) << printed;
    }
}

// Both widths of number round and write alike.
TEST(ShortDecimal, roundsAndWritesAsTheWideOneDoes) {
    constexpr Int128 kMost = powerOfTen(kMaxDigits) - 1;
    for (const Int128 mantissa : {Int128{0}, Int128{5}, Int128{-5}, Int128{12345}, Int128{-99995}, Int128{1} << 62U,
                                  -(Int128{1} << 63U), kMost, -kMost, kMost / 2}) {
        for (const int scale : {0, 1, 2, 5, 18, 25, 38}) {
            const ShortDecimal number{mantissa, scale};
            const Decimal wide(number);
            EXPECT_EQ(QString::fromStdString(number.toText(2)), wide.toShortestText(2)) << scale;
            EXPECT_EQ(number.toReal(), wide.toShortestText().toDouble()) << scale;
            for (const int places : {0, 2, 6, 19}) {
                const auto rounded = number.rounded(places);
                const QString text = wide.rounded(places).toText();
                const bool fits = text.count(QRegularExpression(u"[0-9]"_s)) <= kMaxDigits || mantissa == 0;
                EXPECT_TRUE(rounded || !fits) << text.toStdString();
                if (rounded) {
                    EXPECT_EQ(QString::fromStdString(rounded->toText(places)), text) << scale;
                }
            }
        }
    }
}

TEST(RealText, writesPlainDigitsAsPeopleWriteThem) {
    const struct {
        double value;
        QString text;
    } cases[] = {
        {100000, u"100000"_s},
        {0.1, u"0.1"_s},
        {0.1 + 0.2, u"0.3"_s},
        {-0.00001, u"-0.00001"_s},
        {1234567.25, u"1234567.25"_s},
        {999999999999999, u"999999999999999"_s},
        {1e15, u"1000000000000000"_s},
        {1e20, u"100000000000000000000"_s},
        {1.0 / 3, u"0.333333333333333"_s},
        {9.9e37, u"99"_s + QString(36, u'0')},
        {1e38, u"1e+38"_s},
        {-1.5e40, u"-1.5e+40"_s},
        {1e-38, u"0."_s + QString(37, u'0') + u'1'},
        {1.5e-38, u"1.5e-38"_s},
        {0, u"0"_s},
        {-0.0, u"0"_s},
        {std::numeric_limits<double>::infinity(), u"inf"_s},
        {-std::numeric_limits<double>::infinity(), u"-inf"_s},
        {std::numeric_limits<double>::quiet_NaN(), u"nan"_s},
    };
    for (const auto& one : cases) EXPECT_EQ(QString::fromStdString(realText(one.value)), one.text) << one.value;
}

TEST(Int128, takesNoMoreThan38Digits) {
    const Int128 largest = powerOfTen(37) * 9 + (powerOfTen(37) - 1);
    EXPECT_EQ(timesPowerOfTen(largest, 0), largest);
    EXPECT_EQ(timesPowerOfTen(9, 37), powerOfTen(37) * 9);
    EXPECT_EQ(timesPowerOfTen(-1, 38), std::nullopt) << "it would fit 128 bits, but no server's decimals";
    EXPECT_EQ(timesPowerOfTen(largest, 1), std::nullopt);
    EXPECT_EQ(timesPowerOfTen(largest + 1, 0), std::nullopt);
    EXPECT_EQ(timesPowerOfTen(0, 100), Int128{0});
}

}  // namespace
}  // namespace velcoran::base
