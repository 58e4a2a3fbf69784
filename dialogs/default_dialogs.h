#pragma once

#include <velcoran/com.h>
#include <velcoran/dialogs.h>

namespace velcoran::dialogs {

/// The component's own dialogs, for hosts that register none. Romanian in every text.
[[nodiscard]] com::Ref<IExportDialog> makeExportDialog();
[[nodiscard]] com::Ref<IPrintDialog> makePrintDialog();
[[nodiscard]] com::Ref<IPrinterSetupDialog> makePrinterSetupDialog();

}  // namespace velcoran::dialogs
