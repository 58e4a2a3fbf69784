#pragma once

#include <QString>

#include <velcoran/connection.h>

namespace velcoran::sqlite {

/// Opens an embedded database read-only. The connection answers to IFreeThreadedConnection; calls on a busy one wait
/// their turn; a statement is SELECT alone, in the dialect of the component (dialect.h).
/// @throws Error kProviderFailure when the file is missing, cannot be read or is no database
[[nodiscard]] com::Ref<IConnection> openDatabase(const QString& path);

/// Closes a connection that openDatabase gave, as its host closes it: State is kStateClosed then and every later call,
/// its rows' too, fails with kInvalidConnection. A second close does nothing.
/// @throws Error kInvalidProcedureCall when the connection is not one of ours
void closeDatabase(const com::Ref<IConnection>& connection);

}  // namespace velcoran::sqlite
