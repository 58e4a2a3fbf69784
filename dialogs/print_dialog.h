#pragma once

#include "print_job.h"

class QWidget;

namespace velcoran::dialogs {

/// Opens Qt's print dialog for printer or file, pages and copies. What the report's own set-up decides (sheet,
/// orientation) is not asked again.
/// @param request  in: what stands now; out: what the user chose
/// @return false when cancelled, and request as it was
[[nodiscard]] bool choosePrint(QWidget* window, int pageCount, PrintRequest& request);

}  // namespace velcoran::dialogs
