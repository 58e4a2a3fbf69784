#include "int128.h"

#include <array>

namespace velcoran::base {

namespace {

constexpr std::array<Int128, kMaxDigits + 1> makePowers() {
    std::array<Int128, kMaxDigits + 1> powers{};
    powers[0] = 1;
    for (std::size_t i = 1; i < powers.size(); ++i) powers[i] = powers[i - 1] * 10;
    return powers;
}

constexpr std::array<Int128, kMaxDigits + 1> kPowers = makePowers();

}  // namespace

Int128 powerOfTen(int exponent) { return kPowers.at(static_cast<std::size_t>(exponent)); }

std::optional<Int128> timesPowerOfTen(Int128 mantissa, int places) {
    if (mantissa == 0) return mantissa;
    if (places > kMaxDigits) return std::nullopt;
    const Int128 power = powerOfTen(places);
    const Int128 most = (powerOfTen(kMaxDigits) - 1) / power;
    if (mantissa > most || mantissa < -most) return std::nullopt;
    return mantissa * power;
}

}  // namespace velcoran::base
