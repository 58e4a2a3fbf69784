#include "connection.h"

#include "odbc_connection.h"

namespace velcoran::odbc {

com::Ref<IConnection> openConnection(const QString& connectionText, const Waits& waits, DiagnosticSink sink) {
    return com::Ref<IConnection>(com::makeObject<OdbcConnection>(connectionText, waits, std::move(sink)).get());
}

void closeConnection(const com::Ref<IConnection>& connection) {
    provider::ownConnection<OdbcConnection>(connection).close();
}

}  // namespace velcoran::odbc
