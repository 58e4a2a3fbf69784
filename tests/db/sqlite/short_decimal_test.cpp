#include "db/sqlite/short_decimal.h"

#include "db/sqlite/exact_average.h"
#include "db/sqlite/utf16.h"

#include <cmath>
#include <cstdio>
#include <limits>
#include <random>

#include <gtest/gtest.h>

namespace velcoran::sqlite {
namespace {

struct RealCase {
    double value;
    const char* text;
};

TEST(ShortDecimal, roundsToFifteenDigits) {
    constexpr RealCase kCases[] = {
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
    for (const RealCase& one : kCases) {
        const auto rounded = roundedTo15Digits(one.value);
        ASSERT_TRUE(rounded) << one.text;
        EXPECT_EQ(decimalText(rounded->mantissa, rounded->scale), one.text);
    }
    constexpr double kInfinity = std::numeric_limits<double>::infinity();
    for (const double none : {kInfinity, -kInfinity, std::nan(""), 1e300, 1.5e-45})
        EXPECT_FALSE(roundedTo15Digits(none)) << none;
}

/// The quick way through a multiplication must never differ from the digits that the library prints.
TEST(ShortDecimal, quickWayAgreesWithPrintedDigits) {
    std::mt19937_64 random(7);
    for (int round = 0; round < 200000; ++round) {
        const int scale = static_cast<int>(random() % 9);
        double value =
            static_cast<double>(static_cast<std::int64_t>(random() >> (random() % 60))) / std::pow(10, scale);
        if (random() % 4 == 0) value = std::nextafter(value, 0);
        const auto rounded = roundedTo15Digits(value);
        if (!rounded) continue;
        char printed[64];
        std::snprintf(printed, sizeof printed, "%.14e", value);
        ASSERT_EQ(nearestReal(rounded->mantissa, rounded->scale), std::strtod(printed, nullptr)) << printed;
    }
}

double averageOf(std::initializer_list<double> values) {
    ExactAverage average{};
    for (const double value : values) average.add(value);
    return average.mixedResult();
}

TEST(ExactAverage, isTheDecimalAverage) {
    EXPECT_EQ(averageOf({0.1, 0.2, 0.3, 0.4}), 0.25);
    EXPECT_EQ(averageOf({0.1, 0.1, 0.4}), 0.2);
    EXPECT_EQ(averageOf({1, 2, 2}), 1.66666666666667);
    EXPECT_EQ(averageOf({-1, -2, -2}), -1.66666666666667);
    EXPECT_EQ(averageOf({1e14 + 0.5, 1e14 + 1.5}), 100000000000001.0);
    EXPECT_EQ(averageOf({1e300, 3e300}), 2e300) << "without a decimal form the average is a binary one";
    ExactAverage mixed{};
    mixed.add(std::int64_t{5});
    mixed.add(std::int64_t{5});
    EXPECT_FALSE(mixed.isMixed);
    mixed.add(5.5);
    EXPECT_EQ(mixed.mixedResult(), 5.16666666666667);
    ExactAverage large{};
    large.add(std::numeric_limits<std::int64_t>::max());
    large.add(std::numeric_limits<std::int64_t>::min());
    EXPECT_EQ(large.mixedResult(), -0.5);
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
}  // namespace velcoran::sqlite
