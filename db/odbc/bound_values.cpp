#include "bound_values.h"

#include <array>
#include <charconv>
#include <chrono>
#include <cmath>
#include <cstring>

namespace velcoran::odbc {

namespace {

template <class Value>
Value read(const std::byte* memory) {
    Value value;
    std::memcpy(&value, memory, sizeof value);
    return value;
}

/// The double with the digits that the shorter number shows: 0.1 stays 0.1.
double widened(float value) {
    if (!std::isfinite(value)) return value;
    char digits[32];
    const auto end = std::to_chars(digits, digits + sizeof digits, value).ptr;
    double widest = 0;
    std::from_chars(digits, end, widest);
    return widest;
}

std::int64_t microseconds(const SQL_TIMESTAMP_STRUCT& value) {
    using namespace std::chrono;
    const sys_days day = year(value.year) / month(value.month) / value.day;
    constexpr std::uint32_t kNanosecondsEach = 1000;
    return duration_cast<std::chrono::microseconds>(day.time_since_epoch() + hours(value.hour) + minutes(value.minute) +
                                                    seconds(value.second))
               .count() +
           value.fraction / kNanosecondsEach;
}

/// "yyyy-mm-dd"
std::array<char, 10> dateText(const SQL_DATE_STRUCT& value) {
    std::array<char, 10> text{};
    int rest = value.year < 0 ? 0 : value.year;
    for (int i = 3; i >= 0; --i, rest /= 10) text[static_cast<std::size_t>(i)] = static_cast<char>('0' + rest % 10);
    text[4] = text[7] = '-';
    text[5] = static_cast<char>('0' + value.month / 10 % 10);
    text[6] = static_cast<char>('0' + value.month % 10);
    text[8] = static_cast<char>('0' + value.day / 10 % 10);
    text[9] = static_cast<char>('0' + value.day % 10);
    return text;
}

template <class Add>
void appendEach(provider::ColumnBuilder& column, const BoundValues& bound, std::uint32_t rowCount, Add add) {
    const std::byte* value = bound.values;
    for (std::uint32_t row = 0; row < rowCount; ++row, value += bound.stride) {
        const SQLLEN length = bound.lengths[row];
        length == SQL_NULL_DATA ? column.appendNull() : add(value, static_cast<std::size_t>(length));
    }
}

}  // namespace

void appendValues(provider::ColumnBuilder& column, ValueKind kind, const BoundValues& bound, std::uint32_t rowCount) {
    const auto appendAll = [&](auto add) { appendEach(column, bound, rowCount, add); };
    switch (kind) {
        case ValueKind::Integer:
            return appendAll(
                [&](const std::byte* value, std::size_t) { column.appendInteger(read<std::int64_t>(value)); });
        case ValueKind::Real:
            return appendAll([&](const std::byte* value, std::size_t) {
                column.appendDouble(bound.stride == sizeof(float) ? widened(read<float>(value)) : read<double>(value));
            });
        case ValueKind::DateTime:
            return appendAll([&](const std::byte* value, std::size_t) {
                column.appendInteger(microseconds(read<SQL_TIMESTAMP_STRUCT>(value)));
            });
        case ValueKind::Date:
            return appendAll([&](const std::byte* value, std::size_t) {
                const auto text = dateText(read<SQL_DATE_STRUCT>(value));
                column.appendUtf8({text.data(), text.size()});
            });
        case ValueKind::Number:
            return appendAll([&](const std::byte* value, std::size_t length) {
                column.appendNumber({reinterpret_cast<const char*>(value), length});
            });
        case ValueKind::Text:
            return appendAll([&](const std::byte* value, std::size_t length) {
                column.appendText({reinterpret_cast<const char16_t*>(value), length / sizeof(char16_t)});
            });
    }
}

}  // namespace velcoran::odbc
