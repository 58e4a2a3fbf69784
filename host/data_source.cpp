#include "host/data_source.h"

#include "db/fence.h"
#include "db/odbc/connection.h"
#include "db/odbc/connection_text.h"
#include "db/sqlite/database.h"

namespace velcoran::host {

OpenedConnection openSource(const DataSource& source) {
    if (source.odbc.isEmpty()) {
        com::Ref<IConnection> connection = sqlite::openDatabase(source.file);
        return {db::fenceConnection(connection), [connection] { sqlite::closeDatabase(connection); }};
    }
    com::Ref<IConnection> connection = odbc::openConnection(odbc::resolveConnectionText(source.odbc));
    return {db::fenceConnection(connection), [connection] { odbc::closeConnection(connection); }};
}

}  // namespace velcoran::host
