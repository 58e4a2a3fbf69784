#pragma once

#include <velcoran/connection.h>

#include <memory>

namespace velcoran::host {

struct ExportRequest;

/// Writes a report without a window: what is asked for is looked up, run, laid out and exported as the window does it,
/// on the calling thread.
class UnattendedExport {
public:
    explicit UnattendedExport(com::Ref<IConnection> connection);
    ~UnattendedExport();

    /// @throws Error naming option and value for what cannot be chosen; of the provider for what fails on the
    /// connection;
    ///         kPathAccess for a file that cannot be written and for an ending that is no format; Cancelled after a
    ///         stop
    void run(const ExportRequest& request);
    /// Cancels what runs on the connection and ends the writing. From any thread, as often as wanted.
    void stop();

private:
    struct Private;
    std::unique_ptr<Private> m_private;
};

}  // namespace velcoran::host
