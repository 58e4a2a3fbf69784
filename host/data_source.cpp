#include "host/data_source.h"

#include "base/error.h"
#include "db/sqlite/database.h"

using namespace Qt::StringLiterals;

namespace velcoran::host {

OpenedConnection openSource(const DataSource& source) {
    if (!source.odbc.isEmpty())
        throw base::Error(base::kProviderFailure, u"this program is built without ODBC; use --db FILE"_s);
    com::Ref<IConnection> connection = sqlite::openDatabase(source.file);
    return {connection, [connection] { sqlite::closeDatabase(connection); }};
}

}  // namespace velcoran::host
