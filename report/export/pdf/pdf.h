#pragma once

class QIODevice;

namespace velcoran::system {
class WorkProgress;
}

namespace velcoran::report {

class Document;

/// Writes the document as PDF into an open device.
/// @param progress  counts pages
/// @throws Error kPathAccess when the device takes no more; Cancelled after a stop
void exportPdf(const Document& document, QIODevice& device, system::WorkProgress& progress);

}  // namespace velcoran::report
