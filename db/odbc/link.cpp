#include "link.h"

#include "driver_statement.h"

#include <algorithm>

namespace velcoran::odbc {

using namespace Qt::StringLiterals;

namespace {

SQLPOINTER attributeValue(std::uintptr_t value) { return reinterpret_cast<SQLPOINTER>(value); }

SQLUINTEGER readNumber(SQLHDBC connection, SQLUSMALLINT information) {
    SQLUINTEGER value = 0;
    const SQLRETURN result = SQLGetInfoW(connection, information, &value, sizeof value, nullptr);
    return SQL_SUCCEEDED(result) ? value : 0;
}

QString readText(SQLHDBC connection, SQLUSMALLINT information) {
    constexpr std::size_t kUnits = 128;
    SQLWCHAR text[kUnits] = {};
    SQLSMALLINT bytes = 0;
    const SQLRETURN result = SQLGetInfoW(connection, information, text, sizeof text, &bytes);
    if (!SQL_SUCCEEDED(result)) return {};
    return QString::fromUtf16(reinterpret_cast<const char16_t*>(text));
}

}  // namespace

Link::Link(DiagnosticSink sink) : m_sink(std::move(sink)) {}

Link::~Link() { disconnect(); }

void Link::enter(const CancelToken& token, const StatementHandle& statement) {
    const std::scoped_lock lock(m_callMutex);
    if (token.isRequested()) throw base::Cancelled();
    m_calledStatement = statement.get();
    m_calledToken = &token;
}

void Link::leave() {
    const std::scoped_lock lock(m_callMutex);
    m_calledStatement = nullptr;
    m_calledToken = nullptr;
}

void Link::cancelCall() {
    const std::scoped_lock lock(m_callMutex);
    if (m_calledStatement != nullptr && m_calledToken->isRequested()) SQLCancel(m_calledStatement);
}

/// The records of a handle's last call, which are logged and told to the sink.
QList<DiagnosticRecord> Link::tellAll(SQLSMALLINT handleType, SQLHANDLE handle) const {
    QList<DiagnosticRecord> records = readDiagnostics(handleType, handle);
    for (DiagnosticRecord& record : records) {
        record.text = m_secrets.scrub(record.text);
        qCDebug(logOdbc) << record.state << record.nativeNumber << record.text;
        if (m_sink) m_sink(record);
    }
    return records;
}

/// For a call that only asks for something: a refusal is told and nothing more.
SQLRETURN Link::tell(SQLRETURN result, SQLSMALLINT handleType, SQLHANDLE handle) const {
    if (result == SQL_ERROR || result == SQL_SUCCESS_WITH_INFO) tellAll(handleType, handle);
    return result;
}

void Link::connect(const QString& text, std::chrono::milliseconds wait) {
    m_secrets = Secrets(text);
    const auto require = [this](SQLRETURN result, SQLSMALLINT type, SQLHANDLE handle) {
        if (result == SQL_SUCCESS) return;
        const QList<DiagnosticRecord> records = tellAll(type, handle);
        if (!SQL_SUCCEEDED(result)) throw errorOf(records, Phase::Connecting, m_secrets);
    };
    // An environment of its own: the driver manager may let only one call at a time into an environment.
    SQLHANDLE handle = nullptr;
    if (!SQL_SUCCEEDED(SQLAllocHandle(SQL_HANDLE_ENV, SQL_NULL_HANDLE, &handle)))
        throw base::Error(base::kProviderFailure, u"Administratorul de drivere ODBC nu pornește."_s);
    m_environment = EnvironmentHandle(handle);
    require(SQLSetEnvAttr(m_environment.get(), SQL_ATTR_ODBC_VERSION, attributeValue(SQL_OV_ODBC3), 0), SQL_HANDLE_ENV,
            m_environment.get());
    require(SQLAllocHandle(SQL_HANDLE_DBC, m_environment.get(), &handle), SQL_HANDLE_ENV, m_environment.get());
    m_connection = ConnectionHandle(handle);
    const auto seconds = std::max<std::int64_t>(1, std::chrono::duration_cast<std::chrono::seconds>(wait).count());
    wish(SQL_ATTR_LOGIN_TIMEOUT, static_cast<std::uintptr_t>(seconds));
    require(SQLDriverConnectW(m_connection.get(), nullptr, wideText(text), SQL_NTS, nullptr, 0, nullptr,
                              SQL_DRIVER_NOPROMPT),
            SQL_HANDLE_DBC, m_connection.get());
    m_isConnected = true;
    wish(SQL_ATTR_ACCESS_MODE, SQL_MODE_READ_ONLY);
    readTraits();
}

/// Asks for a connection attribute; a driver that does not know it goes without.
void Link::wish(SQLINTEGER attribute, std::uintptr_t value) {
    tell(SQLSetConnectAttrW(m_connection.get(), attribute, attributeValue(value), SQL_IS_UINTEGER), SQL_HANDLE_DBC,
         m_connection.get());
}

void Link::readTraits() {
    constexpr SQLUINTEGER kAnyBound = SQL_GD_ANY_COLUMN | SQL_GD_ANY_ORDER | SQL_GD_BOUND;
    const SQLUINTEGER extensions = readNumber(m_connection.get(), SQL_GETDATA_EXTENSIONS);
    m_traits.isLoose = readText(m_connection.get(), SQL_DBMS_NAME).startsWith(u"SQLite", Qt::CaseInsensitive);
    m_traits.canReread = (extensions & kAnyBound) == kAnyBound;
    m_traits.canRereadInBlock = m_traits.canReread && (extensions & SQL_GD_BLOCK) != 0;
}

void Link::disconnect() noexcept {
    for (DriverStatement* statement : std::exchange(m_statements, {})) statement->release();
    m_openStatement = nullptr;
    if (m_isConnected) SQLDisconnect(m_connection.get());
    m_isConnected = false;
    m_connection.reset();
    m_environment.reset();
}

StatementHandle Link::allocateStatement(DriverStatement& owner) {
    SQLHANDLE handle = nullptr;
    if (!SQL_SUCCEEDED(SQLAllocHandle(SQL_HANDLE_STMT, m_connection.get(), &handle)))
        throw failureOf(tellAll(SQL_HANDLE_DBC, m_connection.get()));
    StatementHandle statement(handle);
    // Values may hold braces; a driver that looks for escape sequences would take them for some.
    tell(SQLSetStmtAttrW(statement.get(), SQL_ATTR_NOSCAN, attributeValue(SQL_NOSCAN_ON), SQL_IS_UINTEGER),
         SQL_HANDLE_STMT, statement.get());
    m_statements.push_back(&owner);
    return statement;
}

Link::Life Link::life() const {
    SQLULEN dead = SQL_CD_FALSE;  // wide enough for drivers that write more than the standard says
    const SQLRETURN result =
        SQLGetConnectAttrW(m_connection.get(), SQL_ATTR_CONNECTION_DEAD, &dead, SQL_IS_UINTEGER, nullptr);
    if (!SQL_SUCCEEDED(result)) return Life::Unknown;
    return dead == SQL_CD_TRUE ? Life::Dead : Life::Alive;
}

/// What a call failed with. A connection that is lost by it is noted.
base::Error Link::failureOf(const QList<DiagnosticRecord>& records) {
    const Life now = life();
    if (now == Life::Dead || (now == Life::Unknown && speakOfLoss(records))) noteLost();
    const base::Error error = errorOf(records, Phase::Running, m_secrets);
    if (!isLost()) return error;
    return {base::kProviderFailure, error.description(), error.source()};
}

SQLRETURN Link::check(SQLRETURN result, const CancelToken& token, const StatementHandle& statement) {
    if (result == SQL_SUCCESS || result == SQL_NO_DATA) {
        if (token.isRequested()) throw base::Cancelled();
        return result;
    }
    const QList<DiagnosticRecord> records = tellAll(SQL_HANDLE_STMT, statement.get());
    if (SQL_SUCCEEDED(result)) {
        if (token.isRequested()) throw base::Cancelled();
        return result;
    }
    const base::Error error = failureOf(records);
    if (token.isRequested() || (!isLost() && isCancelled(records))) throw base::Cancelled();
    throw error;
}

void Link::requireAlive() {
    if (life() != Life::Dead) return;
    noteLost();
    throw lostError();
}

void Link::open(DriverStatement& statement, const SharedToken& token) {
    if (m_openStatement != nullptr && m_openStatement != &statement) m_openStatement->storeRows(*token);
    m_openStatement = &statement;
    setOpenToken(token);
}

void Link::noteClosed(const DriverStatement& statement) {
    if (m_openStatement != &statement) return;
    m_openStatement = nullptr;
    setOpenToken(nullptr);
}

void Link::strikeOff(const DriverStatement& statement) {
    noteClosed(statement);
    std::erase(m_statements, &statement);
}

SharedToken Link::openToken() const {
    const std::scoped_lock lock(m_tokenMutex);
    return m_openToken.lock();
}

void Link::setOpenToken(const SharedToken& token) {
    const std::scoped_lock lock(m_tokenMutex);
    m_openToken = token;
}

}  // namespace velcoran::odbc
