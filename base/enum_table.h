#pragma once

#include <array>
#include <cstddef>

namespace velcoran::base {

/// Rows over an enumeration that counts from 0: one for each value, in its order. A missing, a doubled or a swapped row
/// does not compile.
/// @tparam kKey  the member of a row that names its value
template <auto kKey, std::size_t kCount>
class EnumTable;

template <class Row, class Enum, Enum Row::*kKey, std::size_t kCount>
class EnumTable<kKey, kCount> {
public:
    consteval EnumTable(const std::array<Row, kCount>& rows) : m_rows(rows) {
        for (std::size_t i = 0; i < kCount; ++i)
            if (static_cast<std::size_t>(m_rows[i].*kKey) != i) rowsAreNotInTheOrderOfTheEnumeration();
    }

    [[nodiscard]] constexpr const Row& operator[](Enum value) const { return m_rows[static_cast<std::size_t>(value)]; }
    [[nodiscard]] constexpr auto begin() const { return m_rows.begin(); }
    [[nodiscard]] constexpr auto end() const { return m_rows.end(); }
    [[nodiscard]] static constexpr std::size_t size() { return kCount; }

private:
    static void rowsAreNotInTheOrderOfTheEnumeration() {}  // no constant expression: called by no running program

    std::array<Row, kCount> m_rows;
};

/// Values over an enumeration that counts from 0, each at its name.
template <class Value, class Enum, std::size_t kCount>
class EnumArray {
public:
    [[nodiscard]] constexpr Value& operator[](Enum at) { return m_values[static_cast<std::size_t>(at)]; }
    [[nodiscard]] constexpr const Value& operator[](Enum at) const { return m_values[static_cast<std::size_t>(at)]; }
    friend bool operator==(const EnumArray&, const EnumArray&) = default;

private:
    std::array<Value, kCount> m_values{};
};

}  // namespace velcoran::base
