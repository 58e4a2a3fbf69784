#include "unattended_export.h"

#include "chosen_filters.h"
#include "export_request.h"

#include "base/error.h"
#include "db/command.h"
#include "db/connection.h"
#include "query/hand_over.h"
#include "query/period.h"
#include "query/request.h"
#include "query/statement.h"
#include "report/export/formats.h"
#include "report/layout/document.h"
#include "report/report.h"
#include "system/file_name.h"

#include <QDateTime>
#include <QFileInfo>

namespace velcoran::host {

using namespace Qt::StringLiterals;

namespace {

/// The format of a file's ending. The report engine's own two are offered by the window and never written.
int formatOf(const QString& path) {
    const QString ending = QFileInfo(path).suffix();
    for (const report::ExportFormat& format : report::exportFormats())
        if (report::isWritten(format.type) && format.extension.compare(ending, Qt::CaseInsensitive) == 0)
            return format.type;
    throw base::Error(base::kPathAccess, u"%1: there is no format \"%2\""_s.arg(path, ending));
}

std::shared_ptr<const report::Document> loadReport(const filters::FilterState& state,
                                                   const db::Connection& connection) {
    const db::Command command{connection, db::kCommandText,
                              query::assembleStatement(state, query::buildRequest(state))};
    std::shared_ptr<report::Report> made;
    query::handOver(query::planHandOver(state, query::systemDateSeparator()), connection, command, made);
    return std::make_shared<const report::Document>(
        made->load(), made->snapshot(), report::designedSetup(made->definition()), QDateTime::currentDateTime());
}

}  // namespace

struct UnattendedExport::Private {
    db::Connection connection;
    report::ExportControl control;
};

UnattendedExport::UnattendedExport(com::Ref<IConnection> connection) : m_private(std::make_unique<Private>()) {
    m_private->connection = db::Connection(std::move(connection));
}

UnattendedExport::~UnattendedExport() = default;

void UnattendedExport::run(const ExportRequest& request) {
    const QString path = system::fullName(request.out);
    const int format = formatOf(path);
    const auto document = loadReport(chosenFilters(request, m_private->connection), m_private->connection);
    report::exportReport(format, document, path, m_private->control);
}

void UnattendedExport::stop() {
    m_private->control.progress->stop();
    m_private->connection.cancel();
}

}  // namespace velcoran::host
