#include "base/decimal.h"

#include "base/error.h"
#include "support/test_data.h"

#include <gtest/gtest.h>

namespace velcoran::base {
namespace {

Decimal decimal(const char* text) { return ShortDecimal::parse(text).value(); }

TEST(Decimal, roundsHalfAwayFromZeroAndPads) {
    const struct {
        const char* text;
        const char* expected;
    } cases[] = {{"2.345", "2.35"},  {"-2.345", "-2.35"}, {"2.3449", "2.34"}, {"-0.005", "-0.01"},
                 {"0.0049", "0.00"}, {"7", "7.00"},       {"9.995", "10.00"}};
    for (const auto& one : cases)
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
