#pragma once

#include <QRgb>
#include <QString>

#include <cmath>
#include <compare>
#include <cstdint>

namespace velcoran::base {

/// A length: 1/1440 inch, 1/20 point.
struct Twips {
    std::int32_t value = 0;

    /// @param density  pixels an inch; rounds to the nearest pixel
    [[nodiscard]] int toPixels(double density) const { return static_cast<int>(std::lround(value * density / 1440.0)); }
    [[nodiscard]] double toPoints() const { return value / 20.0; }
    static Twips fromPixels(int pixels, double density) {
        return {static_cast<std::int32_t>(std::lround(pixels * 1440.0 / density))};
    }

    friend auto operator<=>(Twips, Twips) = default;
    friend Twips operator+(Twips one, Twips other) { return {one.value + other.value}; }
    friend Twips operator-(Twips one, Twips other) { return {one.value - other.value}; }
};

/// A rectangle in twips, relative to whatever holds it.
struct TwipsRect {
    Twips left, top, width, height;
    friend bool operator==(const TwipsRect&, const TwipsRect&) = default;
};

/// A colour, blue in the high byte, green, then red: 0x0000FF is red.
struct Colour {
    std::uint32_t value = 0;

    [[nodiscard]] constexpr QRgb toRgb() const {
        return qRgb(static_cast<int>(value & 0xFFU), static_cast<int>((value >> 8U) & 0xFFU),
                    static_cast<int>((value >> 16U) & 0xFFU));
    }
    /// "0xBBGGRR".
    [[nodiscard]] QString toText() const {
        return QStringLiteral("0x") + QString::number(value, 16).toUpper().rightJustified(6, u'0');
    }
    friend bool operator==(Colour, Colour) = default;
};

/// What has the focus, or is the current row, on a black ground.
inline constexpr Colour kFocusGrey{0x404040};

/// Number of a page, from 1.
struct PageNumber {
    std::int32_t value = 1;
    friend auto operator<=>(PageNumber, PageNumber) = default;
};

}  // namespace velcoran::base
