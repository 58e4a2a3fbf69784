#pragma once

#include <QString>

namespace velcoran::base {

/// Significant digits that a binary floating point number carries for certain.
constexpr int kRealDigits = 15;

/// The text of a binary floating point number, rounded to kRealDigits significant digits, without zeros at the end: in
/// plain digits ("100000", "0.1") where 38 digits before and after the point do, else with an exponent ("1.5e+40");
/// "inf", "-inf", "nan".
[[nodiscard]] QString realText(double value);

}  // namespace velcoran::base
