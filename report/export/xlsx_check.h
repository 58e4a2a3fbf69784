#pragma once

#include "system/work_progress.h"

#include <QByteArray>

#include <cstdint>
#include <vector>

namespace velcoran::report {

/// What a sheet must hold.
struct SheetSize {
    std::int64_t rows = 0;  ///< with at least one cell
    std::int64_t cells = 0;
};

/// Reads a written workbook back, part by part: each must have its checksum, each sheet must end with its closing
/// element and hold its rows and cells, and every other part must be whole markup. Memory does not grow with the file.
/// @param path   as the system's calls take it
/// @param sizes  of each sheet, in order
/// @param progress  when stopped from any thread, the reading ends, and nothing is known of the workbook
/// @return       false also after a stop
[[nodiscard]] bool isWholeWorkbook(const QByteArray& path, const std::vector<SheetSize>& sizes,
                                   const system::WorkProgress& progress);

}  // namespace velcoran::report
