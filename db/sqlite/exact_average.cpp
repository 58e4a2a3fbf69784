#include "exact_average.h"

#include <algorithm>

namespace velcoran::sqlite {

base::Int128 ExactAverage::sum() const {
    return (static_cast<base::Int128>(sumHigh) << 64) | static_cast<std::uint64_t>(sumLow);
}

void ExactAverage::setSum(base::Int128 value) {
    sumLow = static_cast<std::int64_t>(value);
    sumHigh = static_cast<std::int64_t>(value >> 64);
}

void ExactAverage::add(std::int64_t value) {
    if (count == 0) integer = value;
    if (!isMixed && !isReal && integer == value) {
        ++count;
        return;
    }
    startSum();
    addToSum(value, 0, 1);
    ++count;
}

void ExactAverage::add(double value) {
    if (count == 0) {
        real = value;
        isReal = true;
    }
    if (!isMixed && isReal && real == value) {
        ++count;
        return;
    }
    startSum();
    addReal(value, 1);
    ++count;
}

/// Turns "count times the same value" into a sum.
void ExactAverage::startSum() {
    if (isMixed) return;
    isMixed = true;
    if (isReal) {
        addReal(real, count);
    } else {
        addToSum(integer, 0, count);
    }
}

void ExactAverage::addReal(double value, std::int64_t times) {
    const auto rounded = base::ShortDecimal::ofReal(value);
    if (rounded) {
        addToSum(rounded->mantissa, rounded->scale, times);
        return;
    }
    if (!isBinary) binarySum = base::ShortDecimal{sum(), scale}.toReal();
    isBinary = true;
    binarySum += value * static_cast<double>(times);
}

void ExactAverage::addToSum(base::Int128 mantissa, int scaleOfValue, std::int64_t times) {
    if (!isBinary && tryAddToSum(mantissa, scaleOfValue, times)) return;
    if (!isBinary) binarySum = base::ShortDecimal{sum(), scale}.toReal();
    isBinary = true;
    binarySum += base::ShortDecimal{mantissa, scaleOfValue}.toReal() * static_cast<double>(times);
}

bool ExactAverage::tryAddToSum(base::Int128 mantissa, int scaleOfValue, std::int64_t times) {
    const int common = std::max(scale, scaleOfValue);
    auto total = base::timesPowerOfTen(sum(), common - scale);
    auto value = base::timesPowerOfTen(mantissa, common - scaleOfValue);
    if (!total || !value) return false;
    if (__builtin_mul_overflow(*value, base::Int128{times}, &*value)) return false;
    if (__builtin_add_overflow(*total, *value, &*total)) return false;
    setSum(*total);
    scale = common;
    return true;
}

double ExactAverage::mixedResult() const {
    if (isBinary) return binarySum / static_cast<double>(count);
    constexpr base::Int128 kFifteenDigits = base::powerOfTen(base::kRealDigits);
    base::Int128 quotient = sum() / count;
    base::Int128 rest = sum() % count;
    int places = scale;
    // Long division until more digits stand there than will stay; what is left over is only ever less than a digit.
    while (quotient < kFifteenDigits * 100 && quotient > -kFifteenDigits * 100 && places < base::kMaxDigits &&
           rest != 0) {
        rest *= 10;
        quotient = quotient * 10 + rest / count;
        rest %= count;
        ++places;
    }
    base::Int128 unit = 1;
    while (quotient / unit >= kFifteenDigits || quotient / unit <= -kFifteenDigits) unit *= 10;
    const base::Int128 half = quotient < 0 ? -(unit / 2) : unit / 2;
    const base::Int128 rounded = (quotient + half) / unit * unit;
    return base::ShortDecimal{rounded, places}.toReal();
}

}  // namespace velcoran::sqlite
