#include "failure.h"

#include "db/provider/errors.h"

#include <QFile>

#include <sqlite3.h>

namespace velcoran::sqlite {

using namespace Qt::StringLiterals;

namespace {

int primaryCode(int result) { return result & 0xFF; }

/// A write-ahead log belongs to the database, as its header says
/// (https://sqlite.org/fileformat.html#file_format_version_numbers).
bool isWriteAheadLogged(const QString& path) {
    constexpr qint64 kReadVersionAt = 19;
    constexpr char kWriteAheadLog = 2;
    QFile file(path);
    return file.open(QIODevice::ReadOnly) && file.read(kReadVersionAt + 1).endsWith(kWriteAheadLog);
}

std::int32_t numberOf(int result, const QString& words) {
    switch (primaryCode(result)) {
        case SQLITE_ERROR:
            return words.startsWith(u"no such table") ? base::kNoSuchObject : base::kStatementError;
        case SQLITE_AUTH:
        case SQLITE_MISMATCH:
        case SQLITE_RANGE:
        case SQLITE_TOOBIG:
            return base::kStatementError;
        case SQLITE_READONLY:  // the extended codes are about files
            return result == SQLITE_READONLY ? base::kStatementError : base::kProviderFailure;
        default:
            return base::kProviderFailure;
    }
}

/// What is wrong with a file and what to do about it; empty where the database's words have to do.
QString explanationOf(int result, const QString& path) {
    if (result == SQLITE_READONLY_ROLLBACK)
        return u"un program a lăsat o modificare neterminată, în fișierul %1-journal. Deschideți baza de date o dată "
               u"cu "
               "acel program, ca să o încheie, apoi reîncercați."_s.arg(path);
    const bool mayBeLog = primaryCode(result) == SQLITE_READONLY || primaryCode(result) == SQLITE_CANTOPEN;
    if (mayBeLog && isWriteAheadLogged(path))
        return u"baza de date are un jurnal WAL și nu poate fi citită dintr-un dosar în care nu se poate scrie. Dați "
               "drept de scriere în dosar sau treceți baza de date la alt jurnal (PRAGMA journal_mode = DELETE)."_s;
    if (primaryCode(result) == SQLITE_CORRUPT)
        return u"fișierul bazei de date este deteriorat sau a fost scurtat de alt program în timpul citirii."_s;
    return {};
}

QString fileProblem(int result, const QString& words, const QString& path) {
    const QString explanation = explanationOf(result, path);
    return u"%1: %2"_s.arg(path, explanation.isEmpty() ? words : explanation + u'\n' + words);
}

QString descriptionOf(int result, const QString& words, const QString& path) {
    switch (primaryCode(result)) {
        case SQLITE_BUSY:
        case SQLITE_LOCKED:
        case SQLITE_PROTOCOL:
            return provider::conflictText(provider::Conflict::LockTimeout, words);
        case SQLITE_READONLY:
            return result == SQLITE_READONLY ? words : fileProblem(result, words, path);
        case SQLITE_IOERR:
        case SQLITE_CORRUPT:
        case SQLITE_CANTOPEN:
        case SQLITE_NOTADB:
        case SQLITE_PERM:
        case SQLITE_FULL:
            return fileProblem(result, words, path);
        default:
            return words;
    }
}

}  // namespace

base::Error failureOf(int result, const QString& words, const QString& path) {
    return {numberOf(result, words), descriptionOf(result, words, path)};
}

}  // namespace velcoran::sqlite
