#include "component/surroundings.h"

#include "component/message_dialog.h"
#include "platform/printing/default_dialogs.h"

namespace velcoran::component {

com::Ref<IMesaje> HostSurroundings::newMesaje() {
    if (auto registered = m_objects.create<IMesaje>(kClassMesaje)) return registered;
    return com::Ref<IMesaje>::adopt(com::makeObject<MessageDialog>().release());
}

com::Ref<IExportDialog> HostSurroundings::newExportDialog() {
    if (auto registered = m_objects.create<IExportDialog>(kClassExportDialog)) return registered;
    return printing::makeExportDialog();
}

com::Ref<IPrintDialog> HostSurroundings::newPrintDialog() {
    if (auto registered = m_objects.create<IPrintDialog>(kClassPrintDialog)) return registered;
    return printing::makePrintDialog();
}

com::Ref<IPrinterSetupDialog> HostSurroundings::newPrinterSetupDialog() {
    if (auto registered = m_objects.create<IPrinterSetupDialog>(kClassPrinterSetupDialog)) return registered;
    return printing::makePrinterSetupDialog();
}

std::unique_ptr<form::IOutput> HostSurroundings::newOutput(QWidget& window) {
    return std::make_unique<form::ReportOutput>(window, *this, m_outputMemory);
}

}  // namespace velcoran::component
