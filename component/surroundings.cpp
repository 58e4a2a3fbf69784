#include "component/surroundings.h"

#include "component/message_dialog.h"

namespace velcoran::component {

com::Ref<IMesaje> HostSurroundings::newMesaje() {
    if (auto registered = m_objects.create<IMesaje>(kClassMesaje)) return registered;
    return com::Ref<IMesaje>::adopt(com::makeObject<MessageDialog>().release());
}

com::Ref<IExportDialog> HostSurroundings::newExportDialog() {
    return m_objects.create<IExportDialog>(kClassExportDialog);
}

com::Ref<IPrintDialog> HostSurroundings::newPrintDialog() { return m_objects.create<IPrintDialog>(kClassPrintDialog); }

com::Ref<IPrinterSetupDialog> HostSurroundings::newPrinterSetupDialog() {
    return m_objects.create<IPrinterSetupDialog>(kClassPrinterSetupDialog);
}

}  // namespace velcoran::component
