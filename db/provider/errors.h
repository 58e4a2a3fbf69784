#pragma once

#include "base/error.h"

#include <QString>

namespace velcoran::provider {

/// What every provider of ours fails with, in the same words.

/// kInvalidConnection: a call on a connection that was closed.
[[nodiscard]] base::Error closedConnectionError();
/// kOperationOnClosedObject: rows that are asked for without a run.
[[nodiscard]] base::Error closedRowsError();
/// kInvalidProcedureCall: a row set with another cursor location than the client's.
[[nodiscard]] base::Error cursorLocationError();
/// kInvalidProcedureCall: a connection that is closed by the wrong provider.
[[nodiscard]] base::Error foreignConnectionError();

/// How another one's work on the database gets into a statement's way.
enum class Conflict : std::uint8_t {
    Deadlock,     ///< each waits for the other, and the server chose this one to give way
    LockTimeout,  ///< the other one did not let go in time
};
/// Says what happened and that a new attempt may do. The provider's own words follow in a line of their own.
[[nodiscard]] QString conflictText(Conflict conflict, const QString& words);

}  // namespace velcoran::provider
