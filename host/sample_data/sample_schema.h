#pragma once

#include <cstdint>
#include <span>
#include <string>
#include <variant>

namespace velcoran::host {

enum class SampleType { Integer, Text, Amount, DateTime };

struct SampleColumn {
    const char* name;
    SampleType type;
    int length = 0;  ///< characters of a Text on the server
};

struct SampleTable {
    const char* name;
    std::span<const SampleColumn> columns;
    const char* key;  ///< the column that names a record; null where there is none
};

struct SampleIndex {
    const char* name;
    const char* table;
    const char* column;
    bool isUnique;
};

/// An amount or a rate: mantissa / 10^scale.
struct SampleAmount {
    std::int64_t mantissa;
    int scale;
};

/// A value on its way into a table; a date-time is the text "yyyy-mm-dd" or "yyyy-mm-dd hh:mm:ss".
using SampleValue = std::variant<std::monostate, std::int64_t, SampleAmount, std::string>;

[[nodiscard]] std::span<const SampleTable> sampleTables();
[[nodiscard]] const SampleTable& sampleTable(const char* name);
[[nodiscard]] std::span<const SampleIndex> sampleIndexes();

/// A name as both databases read it: in brackets where it is more than one word.
[[nodiscard]] std::string quotedName(const char* name);

}  // namespace velcoran::host
