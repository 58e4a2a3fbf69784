#pragma once

#include "base/short_decimal.h"

#include <cstdint>

namespace velcoran::sqlite {

/// The average of a group of numbers. While all values are equal it is the value itself, integer or real; otherwise the
/// exact decimal average (each real taken as its 15 digits), rounded to 15 digits half away from zero. Plain memory,
/// all zeros at the start.
struct ExactAverage {
    std::int64_t count;
    std::int64_t integer;  ///< the value, while all are equal integers
    double real;           ///< the value, while all are equal reals
    bool isReal;
    bool isMixed;   ///< two values differed: `sum` counts
    bool isBinary;  ///< the sum does not fit 128 bits, or a value is no decimal: `binarySum` counts
    int scale;
    std::int64_t sumLow;  ///< the two halves of the sum: memory from the database is aligned to 8 bytes only
    std::int64_t sumHigh;
    double binarySum;

    void add(std::int64_t value);
    void add(double value);
    /// The average as a real. Needs a count above zero.
    [[nodiscard]] double mixedResult() const;

private:
    void startSum();
    void addToSum(base::Int128 mantissa, int scaleOfValue, std::int64_t times);
    [[nodiscard]] bool tryAddToSum(base::Int128 mantissa, int scaleOfValue, std::int64_t times);
    void addReal(double value, std::int64_t times);
    [[nodiscard]] base::Int128 sum() const;
    void setSum(base::Int128 value);
};

}  // namespace velcoran::sqlite
