#include "diagnostics.h"

#include "connection_text.h"
#include "db/provider/errors.h"

#include <algorithm>
#include <iterator>
#include <optional>
#include <vector>

namespace velcoran::odbc {

using namespace Qt::StringLiterals;

Q_LOGGING_CATEGORY(logOdbc, "velcoran.odbc", QtWarningMsg)

namespace {

constexpr qsizetype kStateLength = 5;
constexpr SQLSMALLINT kUsualMessage = 1024;
constexpr SQLSMALLINT kMaxRecords = 64;

/// What a state, or a class of states, means in the numbers of data providers. The first row that fits any record
/// counts: a refused login, for one, is followed by a record about the connection that was not made.
struct NumberRow {
    QStringView state;
    std::int32_t number;
};

constexpr NumberRow kNumbers[] = {
    {u"28", base::kAuthenticationFailed}, {u"08", base::kProviderFailure}, {u"HYT01", base::kProviderFailure},
    {u"42S02", base::kNoSuchObject},      {u"42P01", base::kNoSuchObject},  // the standard's other code for an unknown
                                                                            // table
};

/// Others in the way, by state and SQL Server's number (0 for any).
struct ConflictRow {
    QStringView state;
    std::int32_t nativeNumber;
    provider::Conflict conflict;
};

constexpr ConflictRow kConflicts[] = {
    {u"40001", 0, provider::Conflict::Deadlock},       {u"", 1205, provider::Conflict::Deadlock},
    {u"HYT00", 1222, provider::Conflict::LockTimeout}, {u"42000", 1222, provider::Conflict::LockTimeout},
    {u"HY000", 1222, provider::Conflict::LockTimeout},
};

std::optional<provider::Conflict> conflictOf(const QList<DiagnosticRecord>& records) {
    for (const ConflictRow& row : kConflicts) {
        const auto fits = [&row](const DiagnosticRecord& record) {
            return record.state.startsWith(row.state) &&
                   (row.nativeNumber == 0 || record.nativeNumber == row.nativeNumber);
        };
        if (std::any_of(records.begin(), records.end(), fits)) return row.conflict;
    }
    return std::nullopt;
}

/// "The server rejected the connection", which a statement can be told too: see speakOfLoss.
constexpr QStringView kRejected = u"08004";

QString toQString(const std::vector<SQLWCHAR>& text, qsizetype length) {
    return QString::fromUtf16(reinterpret_cast<const char16_t*>(text.data()), length);
}

}  // namespace

QString withoutPrefixes(const QString& message) {
    QStringView rest = message;
    while (rest.startsWith(u'[')) {
        const qsizetype end = rest.indexOf(u']');
        // "[table].[column] is unknown" begins with a name, not with a prefix.
        if (end < 0 || (end + 1 < rest.size() && rest[end + 1] == u'.')) break;
        rest = rest.mid(end + 1).trimmed();
    }
    return rest.trimmed().toString();
}

QList<DiagnosticRecord> readDiagnostics(SQLSMALLINT handleType, SQLHANDLE handle) {
    QList<DiagnosticRecord> records;
    std::vector<SQLWCHAR> message(kUsualMessage);
    for (SQLSMALLINT number = 1; number <= kMaxRecords; ++number) {
        SQLWCHAR state[kStateLength + 1] = {};
        SQLINTEGER native = 0;
        SQLSMALLINT length = 0;
        const auto read = [&] {
            return SQLGetDiagRecW(handleType, handle, number, state, &native, message.data(),
                                  static_cast<SQLSMALLINT>(message.size()), &length);
        };
        SQLRETURN result = read();
        if (SQL_SUCCEEDED(result) && length >= static_cast<SQLSMALLINT>(message.size())) {
            message.resize(static_cast<std::size_t>(std::min(length + 1, SHRT_MAX)));
            result = read();
        }
        if (!SQL_SUCCEEDED(result)) break;
        const auto kept = std::min<qsizetype>(length, static_cast<qsizetype>(message.size()) - 1);
        records.append({QString::fromUtf16(reinterpret_cast<const char16_t*>(state), kStateLength), native,
                        withoutPrefixes(toQString(message, std::max<qsizetype>(kept, 0)))});
    }
    return records;
}

base::Error errorOf(const QList<DiagnosticRecord>& records, Phase phase, const Secrets& secrets) {
    std::int32_t number = phase == Phase::Connecting ? base::kProviderFailure : base::kStatementError;
    const auto fits = [&](const NumberRow& row) {
        return std::any_of(records.begin(), records.end(), [&](const DiagnosticRecord& record) {
            const bool isOfAStatement = phase == Phase::Running && record.state == kRejected;
            return !isOfAStatement && record.state.startsWith(row.state);
        });
    };
    const auto* const row = std::find_if(std::begin(kNumbers), std::end(kNumbers), fits);
    if (row != std::end(kNumbers)) number = row->number;

    QStringList words;
    for (const DiagnosticRecord& record : records)
        if (!record.text.isEmpty() && !words.contains(record.text)) words.append(record.text);
    if (words.isEmpty()) words.append(u"Driverul ODBC a eșuat fără explicație."_s);
    const QString source = records.isEmpty() ? QString() : records.front().state;
    const QString description = secrets.scrub(words.join(u'\n'));
    const auto conflict = conflictOf(records);
    return {number, conflict ? provider::conflictText(*conflict, description) : description, source};
}

bool isCancelled(const QList<DiagnosticRecord>& records) {
    return std::any_of(records.begin(), records.end(),
                       [](const DiagnosticRecord& record) { return record.state == u"HY008"; });
}

bool speakOfLoss(const QList<DiagnosticRecord>& records) {
    return std::any_of(records.begin(), records.end(), [](const DiagnosticRecord& record) {
        return record.state.startsWith(u"08") && record.state != kRejected;
    });
}

base::Error lostError() { return {base::kProviderFailure, u"Conexiunea cu serverul s-a pierdut."_s}; }

}  // namespace velcoran::odbc
