#include "host/data_source.h"

#include "db/fence.h"
#include "db/odbc/connection.h"
#include "db/odbc/connection_text.h"
#include "db/sqlite/database.h"
#include "host/trace.h"

using namespace Qt::StringLiterals;

namespace velcoran::host {

namespace {

/// Every record that the driver leaves behind, also those that a failure's description has no room for.
odbc::DiagnosticSink sinkOf(const std::shared_ptr<Trace>& trace) {
    if (!trace) return {};
    return [trace](const odbc::DiagnosticRecord& record) {
        trace->write(u"%1 (%2) %3"_s.arg(record.state, QString::number(record.nativeNumber), record.text));
    };
}

}  // namespace

OpenedConnection openSource(const DataSource& source) {
    const auto trace = source.trace.isEmpty() ? nullptr : std::make_shared<Trace>(source.trace);
    if (source.odbc.isEmpty()) {
        com::Ref<IConnection> connection = sqlite::openDatabase(source.file);
        return {traceConnection(db::fenceConnection(connection), trace),
                [connection] { sqlite::closeDatabase(connection); }};
    }
    com::Ref<IConnection> connection =
        odbc::openConnection(odbc::resolveConnectionText(source.odbc), {}, sinkOf(trace));
    return {traceConnection(db::fenceConnection(connection), trace),
            [connection] { odbc::closeConnection(connection); }};
}

}  // namespace velcoran::host
