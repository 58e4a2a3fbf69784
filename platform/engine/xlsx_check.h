#pragma once

#include <QByteArray>

#include <cstdint>
#include <vector>

namespace velcoran::engine {

/// Reads a written workbook back, part by part: each must have its checksum and end with its closing element, and each
/// sheet must hold its rows. Memory does not grow with the file.
/// @param path       as the system's calls take it
/// @param rowCounts  rows with cells of each sheet, in order
[[nodiscard]] bool isWholeWorkbook(const QByteArray& path, const std::vector<std::int64_t>& rowCounts);

}  // namespace velcoran::engine
