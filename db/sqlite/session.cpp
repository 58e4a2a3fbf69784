#include "session.h"

#include "db/provider/errors.h"
#include "dialect.h"
#include "failure.h"
#include "file_system.h"
#include "functions.h"

#include <QFileInfo>

#include <sqlite3.h>

#include <algorithm>

namespace velcoran::sqlite {

using namespace Qt::StringLiterals;

namespace {

/// How long a statement waits for a writer, in looks at the lock with a pause between two.
constexpr int kBusyPauseMilliseconds = 20;
constexpr int kBusyLooks = 3000 / kBusyPauseMilliseconds;
/// Steps of the database's machine between two looks at the cancel wish: some tens of microseconds.
constexpr int kProgressSteps = 2000;

constexpr const char* kSetUp[] = {
    "PRAGMA cache_size = -65536",  // 64 MiB, in units of 1 KiB
    "PRAGMA threads = 1",          // one helper for large sorts
    "PRAGMA query_only = ON",
    "SELECT count(*) FROM sqlite_master",  // reads the header: fails here for what is no database
};

int authorize(void*, int action, const char*, const char*, const char*, const char*) {
    switch (action) {
        case SQLITE_SELECT:
        case SQLITE_READ:
        case SQLITE_FUNCTION:
        case SQLITE_RECURSIVE:
            return SQLITE_OK;
        default:
            return SQLITE_DENY;
    }
}

[[noreturn]] void throwUnusable(const QString& path, const QString& reason) {
    throw base::Error(base::kProviderFailure, u"%1: %2."_s.arg(path, reason));
}

}  // namespace

void StatementCloser::operator()(sqlite3_stmt* statement) const { sqlite3_finalize(statement); }

Session::Session(const QString& path) : m_path(path) {
    const QFileInfo file(path);
    if (!file.exists()) throwUnusable(path, u"fișierul nu există"_s);
    if (!file.isFile()) throwUnusable(path, u"nu este un fișier"_s);
    constexpr int kFlags = SQLITE_OPEN_READONLY | SQLITE_OPEN_NOMUTEX | SQLITE_OPEN_EXRESCODE;
    const int result = sqlite3_open_v2(path.toUtf8().constData(), &m_database, kFlags, fileSystemName());
    try {
        if (m_database == nullptr) throw std::bad_alloc();
        requireDone(result);
        setUp();
    } catch (...) {
        sqlite3_close_v2(m_database);
        throw;
    }
}

/// @throws Error of the database for a result that is none of success
void Session::requireDone(int result) const {
    if (result != SQLITE_OK) throw failureOf(result, QString::fromUtf8(sqlite3_errmsg(m_database)), m_path);
}

Session::~Session() { sqlite3_close_v2(m_database); }

void Session::setUp() {
    sqlite3_busy_handler(m_database, onBusy, this);
    // A name in double quotes that names nothing is an error, not a text.
    sqlite3_db_config(m_database, SQLITE_DBCONFIG_DQS_DML, 0, nullptr);
    registerFunctions(m_database);
    for (const char* statement : kSetUp) requireDone(sqlite3_exec(m_database, statement, nullptr, nullptr, nullptr));
    sqlite3_progress_handler(m_database, kProgressSteps, onProgress, this);
    sqlite3_set_authorizer(m_database, authorize, nullptr);
}

bool Session::isStopWished() const { return m_current != nullptr && m_current->isRequested(); }

int Session::onProgress(void* session) { return static_cast<Session*>(session)->isStopWished() ? 1 : 0; }

/// @return 0 to give up
int Session::onBusy(void* session, int looks) {
    if (looks >= kBusyLooks || static_cast<Session*>(session)->isStopWished()) return 0;
    sqlite3_sleep(kBusyPauseMilliseconds);
    return 1;
}

Session::Turn::Turn(Session& session, provider::CancelToken& token) : m_session(session), m_lock(session.m_turn) {
    if (session.isClosed()) throw provider::closedConnectionError();
    if (token.take()) throw base::Cancelled();
    session.m_current = &token;
}

Session::Turn::~Turn() { m_session.m_current = nullptr; }

Session::Activity::Activity(Session& session, provider::CancelToken& token) : m_session(session), m_token(token) {
    const std::scoped_lock lock(m_session.m_activityMutex);
    m_session.m_active.push_back(&m_token);
}

Session::Activity::~Activity() {
    const std::scoped_lock lock(m_session.m_activityMutex);
    auto& active = m_session.m_active;
    active.erase(std::find(active.begin(), active.end(), &m_token));
}

void Session::cancelAll() {
    const std::scoped_lock lock(m_activityMutex);
    for (provider::CancelToken* token : m_active) token->request();
}

StatementHandle Session::prepare(const QString& text) {
    const QByteArray statement = rewrite(text).toUtf8();
    if (statement.contains('\0')) throw base::Error(base::kStatementError, u"Interogarea conține un octet nul."_s);
    sqlite3_stmt* compiled = nullptr;
    const char* rest = nullptr;
    const int result = sqlite3_prepare_v3(m_database, statement.constData(), static_cast<int>(statement.size()) + 1, 0,
                                          &compiled, &rest);
    StatementHandle handle(compiled);
    if (result != SQLITE_OK) throwError(result, *m_current);
    if (!handle) throw base::Error(base::kStatementError, u"Interogarea este goală."_s);
    if (!isEmptyStatement(QString::fromUtf8(rest)))
        throw base::Error(base::kStatementError, u"Se poate rula o singură interogare o dată."_s);
    if (sqlite3_column_count(compiled) == 0 || sqlite3_stmt_isexplain(compiled) != 0)
        throw base::Error(base::kStatementError, u"Numai interogările SELECT sunt permise."_s);
    return handle;
}

void Session::throwError(int result, provider::CancelToken& token) {
    const bool wasWished = token.take();
    if ((result & 0xFF) == SQLITE_INTERRUPT || wasWished) throw base::Cancelled();
    if ((result & 0xFF) == SQLITE_NOMEM) throw std::bad_alloc();
    throw failureOf(result, QString::fromUtf8(sqlite3_errmsg(m_database)), m_path);
}

void Session::reset(sqlite3_stmt* statement) {
    const std::scoped_lock lock(m_turn);
    sqlite3_reset(statement);
}

void Session::finalize(StatementHandle statement) {
    const std::scoped_lock lock(m_turn);
    statement.reset();
}

}  // namespace velcoran::sqlite
