#include "surroundings.h"

#include "com/registry.h"
#include "dialogs/default_dialogs.h"
#include "message_dialog.h"

#include "base/error.h"

#include <utility>

namespace velcoran::component {

com::Ref<IMesaje> HostSurroundings::newMesaje() {
    com::Ref<IMesaje> object = m_objects.create<IMesaje>(kClassMesaje);
    if (!object) object = newInstalledMesaje();
    if (object) return com::makeObject<HostMessages>(std::move(object)).as<IMesaje>();
    return com::makeObject<MessageDialog>().as<IMesaje>();
}

com::Ref<IMesaje> HostSurroundings::newInstalledMesaje() {
    if (!m_installedMesaje) {
        if (!com::findEntry(kClassMesaje)) return {};
        try {
            m_installedMesaje = com::findClass(kClassMesaje);
        } catch (const base::Error&) {
            return {};  // a registration whose library is gone: the messages are ours
        }
    }
    com::Ref<IMesaje> object;
    (void)m_installedMesaje->factory->CreateInstance(nullptr, IMesaje::kId, object.receiveVoid());
    return object;
}

com::Ref<IExportDialog> HostSurroundings::newExportDialog() {
    if (auto registered = m_objects.create<IExportDialog>(kClassExportDialog)) return registered;
    return dialogs::makeExportDialog();
}

com::Ref<IPrintDialog> HostSurroundings::newPrintDialog() {
    if (auto registered = m_objects.create<IPrintDialog>(kClassPrintDialog)) return registered;
    return dialogs::makePrintDialog();
}

com::Ref<IPrinterSetupDialog> HostSurroundings::newPrinterSetupDialog() {
    if (auto registered = m_objects.create<IPrinterSetupDialog>(kClassPrinterSetupDialog)) return registered;
    return dialogs::makePrinterSetupDialog();
}

std::unique_ptr<form::IReportOutput> HostSurroundings::newOutput(QWidget& window, form::Activity& activity) {
    return std::make_unique<form::DialogOutput>(window, activity, *this, m_outputMemory);
}

}  // namespace velcoran::component
