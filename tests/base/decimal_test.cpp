#include "base/decimal.h"

#include "base/error.h"
#include "support/test_data.h"

#include <gtest/gtest.h>

namespace velcoran::base {
namespace {

Decimal decimal(const char* text) { return Decimal::parse(QString::fromLatin1(text)).value(); }

struct ParseCase {
    const char* text;
    const char* expected;  // null for a text that is no number
};

TEST(Decimal, parseReadsNumbersAndNothingElse) {
    const ParseCase cases[] = {
        {"0", "0"},
        {"-0.00", "0.00"},
        {" 12.50 ", "12.50"},
        {"+7", "7"},
        {"1e3", "1000"},
        {"1.25E-2", "0.0125"},
        {".5", "0.5"},
        {"5.", "5"},
        {"", nullptr},
        {"abc", nullptr},
        {"1.2.3", nullptr},
        {"1,5", nullptr},
        {"-", nullptr},
        {"1e", nullptr},
        {"1e999", nullptr},
        {"00012", "12"},
        {"99999999999999999999999999999999999999", "99999999999999999999999999999999999999"},
    };
    for (const ParseCase& one : cases) {
        const auto parsed = Decimal::parse(QString::fromLatin1(one.text));
        ASSERT_EQ(parsed.has_value(), one.expected != nullptr) << one.text;
        if (parsed.has_value()) {
            EXPECT_EQ(parsed->toText(), QString::fromLatin1(one.expected)) << one.text;
        }
    }
}

TEST(Decimal, roundsHalfAwayFromZeroAndPads) {
    const ParseCase cases[] = {{"2.345", "2.35"},  {"-2.345", "-2.35"}, {"2.3449", "2.34"}, {"-0.005", "-0.01"},
                               {"0.0049", "0.00"}, {"7", "7.00"},       {"9.995", "10.00"}};
    for (const ParseCase& one : cases)
        EXPECT_EQ(decimal(one.text).rounded(2).toText(), QString::fromLatin1(one.expected)) << one.text;
    EXPECT_EQ(decimal("1234.5000").toShortestText(2), u"1234.50");
    EXPECT_EQ(decimal("0.12345").toShortestText(2), u"0.12345");
}

TEST(Decimal, sumsAndProductsAreExactOrFail) {
    EXPECT_EQ((decimal("0.1") + decimal("0.20")).toText(), u"0.30");
    EXPECT_EQ((decimal("-1.5") * decimal("4.97")).toText(), u"-7.455");
    EXPECT_EQ(decimal("1.50"), decimal("1.5"));
    const Decimal large = decimal("99999999999999999999999999999999999999");
    EXPECT_EQ((large + large).toText(), u"199999999999999999999999999999999999998");
    try {
        (void)(large * large * large);
        FAIL() << "an overflow went unnoticed";
    } catch (const Error& error) {
        EXPECT_EQ(error.number(), kOverflow);
    }
}

}  // namespace
}  // namespace velcoran::base
