#pragma once

#include <atomic>
#include <functional>

class QIODevice;

namespace velcoran::report {

class Document;

/// How an export tells how far it is, and how it is stopped.
struct ExportProgress {
    std::function<void(int done, int total)> report;  ///< pages; may be empty; called on the exporting thread
    const std::atomic_bool* stop = nullptr;           ///< may be null
};

/// Writes the document as PDF into an open device.
/// @throws Error kPathAccess when the device takes no more; Cancelled after a stop
void exportPdf(const Document& document, QIODevice& device, const ExportProgress& progress = {});

}  // namespace velcoran::report
