#include "base/real_text.h"

#include "support/test_data.h"

#include "base/int128.h"

#include <gtest/gtest.h>

#include <limits>

namespace velcoran::base {
namespace {

using namespace Qt::StringLiterals;

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
    for (const auto& one : cases) EXPECT_EQ(realText(one.value), one.text) << one.value;
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
