#pragma once

#include "base/error.h"
#include "diagnostic_record.h"
#include "handles.h"

#include <QList>
#include <QLoggingCategory>
#include <QString>

namespace velcoran::odbc {

class Secrets;

/// Warnings of drivers and other diagnostics; off unless switched on by the category's name, "velcoran.odbc".
Q_DECLARE_LOGGING_CATEGORY(logOdbc)

/// What was going on when a call failed: what is a statement's fault later is the connection's fault while it opens.
enum class Phase { Connecting, Running };

/// Every record of the handle's last call.
[[nodiscard]] QList<DiagnosticRecord> readDiagnostics(SQLSMALLINT handleType, SQLHANDLE handle);

/// One error from all records: their words one below the other, each once, secrets hidden; the number from the record
/// that says most. A deadlock and a lock time-out are named as such before the words.
[[nodiscard]] base::Error errorOf(const QList<DiagnosticRecord>& records, Phase phase, const Secrets& secrets);

/// True when the driver says that the call was cancelled.
[[nodiscard]] bool isCancelled(const QList<DiagnosticRecord>& records);
/// True when a record tells of a lost connection. What counts is whether the driver calls the connection dead; this is
/// for drivers that do not know. The state of a rejected connection is none: drivers for SQL Server give it to
/// statements that name a database which is not there.
[[nodiscard]] bool speakOfLoss(const QList<DiagnosticRecord>& records);

/// What a call on a lost connection fails with.
[[nodiscard]] base::Error lostError();

/// The words of a message without leading "[vendor][component]" names.
[[nodiscard]] QString withoutPrefixes(const QString& message);

}  // namespace velcoran::odbc
