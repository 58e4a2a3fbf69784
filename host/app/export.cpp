#include "commands.h"
#include "host/session/end_watch.h"
#include "host/session/silence_watch.h"
#include "host/session/trace.h"
#include "host/unattended/unattended_export.h"

namespace velcoran::host {

int runExport(const Options& options) {
    EndWatch end;
    const OpenedConnection source = openSource(options.source, openTrace(options.trace));
    const auto work =
        std::make_shared<UnattendedExport>(watchConnection(source.connection, milliseconds(options.timeout)));
    end.cancelBy([work] { work->stop(); });
    return end.follow([&] {
        ExportRequest request = options.request;
        request.kind = options.kind;
        request.prefix = options.prefix;
        work->run(request);
        return kStatusDone;
    });
}

}  // namespace velcoran::host
