#pragma once

#include "form/run/dialog_output.h"
#include "form/run/surroundings.h"
#include "host_events.h"

#include "com/activation.h"
#include "com/host_objects.h"

#include <optional>

namespace velcoran::component {

/// The window's surroundings in a host's process: what the host registered in the process, for the messages also what
/// it registered on disk, otherwise the component's own.
class HostSurroundings final : public form::Surroundings {
public:
    /// @param objects  outlives this
    /// @param events   the same
    HostSurroundings(const com::HostObjects& objects, HostEvents& events) : m_objects(objects), m_events(events) {}

    com::Ref<IMesaje> newMesaje() override;
    com::Ref<IExportDialog> newExportDialog() override;
    com::Ref<IPrintDialog> newPrintDialog() override;
    com::Ref<IPrinterSetupDialog> newPrinterSetupDialog() override;
    std::unique_ptr<form::IReportOutput> newOutput(QWidget& window, form::Activity& activity) override;
    void windowClosed() override { m_events.queueClosed(); }
    [[nodiscard]] bool opensDocuments() const override { return m_events.hasListener(); }
    void openDocument(const QString& number, const QString& kind, const QString& partner) override {
        m_events.openDocument(number, kind, partner);
    }
    /// Lets go of the library of the messages; nothing of it may be in use.
    void releaseLibraries() { m_installedMesaje.reset(); }

private:
    com::Ref<IMesaje> newInstalledMesaje();

    const com::HostObjects& m_objects;
    HostEvents& m_events;
    form::OutputMemory m_outputMemory;
    std::optional<com::ActivatedClass> m_installedMesaje;  ///< once it was found
};

}  // namespace velcoran::component
