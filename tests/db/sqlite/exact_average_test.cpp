#include "db/sqlite/exact_average.h"

#include <limits>

#include <gtest/gtest.h>

namespace velcoran::sqlite {
namespace {

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

}  // namespace
}  // namespace velcoran::sqlite
