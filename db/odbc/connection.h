#pragma once

#include "diagnostic_record.h"

#include <QString>

#include <velcoran/connection.h>

#include <chrono>

namespace velcoran::odbc {

/// How long a connection waits for a driver that no longer answers.
struct Waits {
    std::chrono::milliseconds login{15'000};  ///< for opening
    /// After a cancel or a close, for the driver to end its call. A driver that takes longer is left behind with its
    /// thread, and the connection counts as lost.
    std::chrono::milliseconds cancel{5'000};
};

/// Opens a connection through the ODBC driver manager.
///
/// Every driver call is made by a thread of the connection's own, in the order of the calls; a caller waits for it and
/// can be cancelled at any moment, also while the driver hangs on a dead network: the driver is asked to cancel, and
/// after Waits::cancel the caller goes on without it. The connection answers to IFreeThreadedConnection.
///
/// A connection has one open statement. A statement that starts while the rows of another are not read to their end
/// first reads those into memory, where their owner finds them; drivers for SQL Server allow no second statement.
///
/// A lost connection is noticed at the call that meets it: that call and every later one fails with kProviderFailure,
/// and State is kStateClosed.
///
/// @param connectionText  as SQLDriverConnect takes it, "Driver=...;Server=...;..." or "DSN=..."
/// @param sink            hears what the driver says about each call, opening included; may be empty
/// @throws Error kProviderFailure with the driver's own words; kAuthenticationFailed when the server refuses user or
/// password
[[nodiscard]] com::Ref<IConnection> openConnection(const QString& connectionText, const Waits& waits = {},
                                                   DiagnosticSink sink = {});

/// Closes a connection that openConnection gave, as its host closes it: a call that runs is cancelled, State is
/// kStateClosed then and every later call, its rows' too, fails with kInvalidConnection. A second close does nothing.
/// @throws Error kInvalidProcedureCall when the connection is not one of ours
void closeConnection(const com::Ref<IConnection>& connection);

}  // namespace velcoran::odbc
