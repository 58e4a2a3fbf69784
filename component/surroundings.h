#pragma once

#include "form/report_output.h"
#include "form/surroundings.h"

#include "platform/com/host_objects.h"

namespace velcoran::component {

/// The window's surroundings in a host's process: what the host registered, otherwise the component's own.
class HostSurroundings final : public form::Surroundings {
public:
    /// @param objects  outlives this
    explicit HostSurroundings(const com::HostObjects& objects) : m_objects(objects) {}

    com::Ref<IMesaje> newMesaje() override;
    com::Ref<IExportDialog> newExportDialog() override;
    com::Ref<IPrintDialog> newPrintDialog() override;
    com::Ref<IPrinterSetupDialog> newPrinterSetupDialog() override;
    std::unique_ptr<form::IOutput> newOutput(QWidget& window) override;

private:
    const com::HostObjects& m_objects;
    form::OutputMemory m_outputMemory;
};

}  // namespace velcoran::component
