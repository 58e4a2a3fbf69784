#include "db/sqlite/failure.h"

#include "db/provider_errors.h"

#include <sqlite3.h>

namespace velcoran::sqlite {

namespace {

constexpr int kPrimaryCode = 0xFF;

std::int32_t numberOf(int result, const QString& words) {
    switch (result & kPrimaryCode) {
        case SQLITE_ERROR:
            return words.startsWith(u"no such table") ? base::kNoSuchObject : base::kStatementError;
        case SQLITE_AUTH:
        case SQLITE_MISMATCH:
        case SQLITE_RANGE:
        case SQLITE_TOOBIG:
        case SQLITE_READONLY:
            return base::kStatementError;
        default:
            return base::kProviderFailure;
    }
}

QString descriptionOf(int result, const QString& words) {
    switch (result & kPrimaryCode) {
        case SQLITE_BUSY:
        case SQLITE_LOCKED:
            return db::conflictText(db::Conflict::LockTimeout, words);
        default:
            return words;
    }
}

}  // namespace

base::Error failureOf(int result, const QString& words) {
    return {numberOf(result, words), descriptionOf(result, words)};
}

}  // namespace velcoran::sqlite
