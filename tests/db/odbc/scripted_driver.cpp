/// An ODBC driver whose statements say what happens to them:
///
///     rows N                        a column "n" with the integers 1 to N
///     fail STATE NATIVE WORDS       an error with one record
///     warn STATE NATIVE WORDS       one row, and a warning with it
///     die ...                       the connection is dead from now on, and then one of the above
///
/// A dead connection fails every statement. "Dead=unknown" in the connection text makes a driver that does not know the
/// attribute; "ReadOnly=refused" one that refuses read-only access.

#include <sql.h>
#include <sqlext.h>
#include <sqlucode.h>

#include <algorithm>
#include <cstring>
#include <memory>
#include <sstream>
#include <string>

namespace {

struct Record {
    std::string state;
    int native = 0;
    std::string words;
};

struct DriverConnection {
    bool isDead = false;
    bool knowsDead = true;
    bool refusesReadOnly = false;
    Record record;
};

struct DriverStatement {
    DriverConnection* connection = nullptr;
    std::string text;
    int rowCount = 0;
    int row = 0;
    SQLPOINTER values = nullptr;
    SQLLEN* lengths = nullptr;
    SQLULEN arraySize = 1;
    SQLULEN* fetched = nullptr;
    SQLUSMALLINT* status = nullptr;
    Record record;
};

std::string narrow(const SQLWCHAR* text, SQLINTEGER length) {
    std::string result;
    for (SQLINTEGER i = 0; length == SQL_NTS ? text[i] != 0 : i < length; ++i)
        result.push_back(static_cast<char>(text[i]));
    return result;
}

/// @param capacity  units of the buffer, its terminator's included
template <class Length>
void widen(const std::string& text, SQLWCHAR* buffer, std::size_t capacity, Length* length,
           std::size_t lengthUnit = 1) {
    if (buffer != nullptr && capacity != 0) {
        const std::size_t count = std::min(text.size(), capacity - 1);
        std::copy_n(text.begin(), count, buffer);
        buffer[count] = 0;
    }
    if (length != nullptr) *length = static_cast<Length>(text.size() * lengthUnit);
}

SQLRETURN fail(DriverStatement& statement, Record record) {
    statement.record = std::move(record);
    return SQL_ERROR;
}

SQLRETURN run(DriverStatement& statement) {
    statement.row = statement.rowCount = 0;
    if (statement.connection->isDead)
        return fail(statement, {"08S01", 20006, "[Test][Driver]Write to the server failed"});
    std::istringstream script(statement.text);
    std::string word;
    script >> word;
    if (word == "die") {
        statement.connection->isDead = true;
        script >> word;
    }
    if (word == "rows") {
        script >> statement.rowCount;
        return SQL_SUCCESS;
    }
    Record record;
    script >> record.state >> record.native;
    std::getline(script >> std::ws, record.words);
    record.words.insert(0, "[Test][Server]");
    if (word == "warn") {
        statement.rowCount = 1;
        statement.record = std::move(record);
        return SQL_SUCCESS_WITH_INFO;
    }
    return fail(statement, std::move(record));
}

DriverStatement& statementOf(SQLHANDLE handle) {
    auto& statement = *static_cast<DriverStatement*>(handle);
    statement.record = {};
    return statement;
}

DriverConnection& connectionOf(SQLHANDLE handle) {
    auto& connection = *static_cast<DriverConnection*>(handle);
    connection.record = {};
    return connection;
}

}  // namespace

#pragma GCC visibility push(default)
extern "C" {

SQLRETURN SQL_API SQLAllocHandle(SQLSMALLINT type, SQLHANDLE parent, SQLHANDLE* handle) {
    if (type == SQL_HANDLE_ENV) *handle = new int(0);
    if (type == SQL_HANDLE_DBC) *handle = new DriverConnection;
    if (type == SQL_HANDLE_STMT) {
        auto statement = std::make_unique<DriverStatement>();
        statement->connection = static_cast<DriverConnection*>(parent);
        *handle = statement.release();
    }
    return SQL_SUCCESS;
}

SQLRETURN SQL_API SQLFreeHandle(SQLSMALLINT type, SQLHANDLE handle) {
    if (type == SQL_HANDLE_ENV) delete static_cast<int*>(handle);
    if (type == SQL_HANDLE_DBC) delete static_cast<DriverConnection*>(handle);
    if (type == SQL_HANDLE_STMT) delete static_cast<DriverStatement*>(handle);
    return SQL_SUCCESS;
}

SQLRETURN SQL_API SQLSetEnvAttr(SQLHENV, SQLINTEGER, SQLPOINTER, SQLINTEGER) { return SQL_SUCCESS; }

SQLRETURN SQL_API SQLDriverConnectW(SQLHDBC handle, SQLHWND, SQLWCHAR* text, SQLSMALLINT length, SQLWCHAR*, SQLSMALLINT,
                                    SQLSMALLINT* outLength, SQLUSMALLINT) {
    DriverConnection& connection = connectionOf(handle);
    const std::string given = narrow(text, length);
    connection.knowsDead = given.find("Dead=unknown") == std::string::npos;
    connection.refusesReadOnly = given.find("ReadOnly=refused") != std::string::npos;
    if (outLength != nullptr) *outLength = 0;
    return SQL_SUCCESS;
}

SQLRETURN SQL_API SQLDisconnect(SQLHDBC) { return SQL_SUCCESS; }

SQLRETURN SQL_API SQLGetInfoW(SQLHDBC, SQLUSMALLINT information, SQLPOINTER value, SQLSMALLINT bytes,
                              SQLSMALLINT* length) {
    if (information == SQL_DBMS_NAME || information == SQL_DRIVER_ODBC_VER) {
        widen(information == SQL_DBMS_NAME ? "Scripted" : "03.00", static_cast<SQLWCHAR*>(value),
              static_cast<std::size_t>(bytes) / sizeof(SQLWCHAR), length, sizeof(SQLWCHAR));
    } else if (value != nullptr) {
        std::memset(value, 0, sizeof(SQLUSMALLINT));
    }
    return SQL_SUCCESS;
}

SQLRETURN SQL_API SQLSetConnectAttrW(SQLHDBC handle, SQLINTEGER attribute, SQLPOINTER, SQLINTEGER) {
    DriverConnection& connection = connectionOf(handle);
    if (attribute != SQL_ATTR_ACCESS_MODE || !connection.refusesReadOnly) return SQL_SUCCESS;
    connection.record = {"HYC00", 0, "[Test][Driver]Access mode is not supported"};
    return SQL_ERROR;
}

SQLRETURN SQL_API SQLGetConnectAttrW(SQLHDBC handle, SQLINTEGER attribute, SQLPOINTER value, SQLINTEGER, SQLINTEGER*) {
    DriverConnection& connection = connectionOf(handle);
    if (attribute == SQL_ATTR_CONNECTION_DEAD && connection.knowsDead) {
        *static_cast<SQLUINTEGER*>(value) = connection.isDead ? SQL_CD_TRUE : SQL_CD_FALSE;
        return SQL_SUCCESS;
    }
    connection.record = {"HY092", 0, "[Test][Driver]Invalid attribute"};
    return SQL_ERROR;
}

SQLRETURN SQL_API SQLSetStmtAttrW(SQLHSTMT handle, SQLINTEGER attribute, SQLPOINTER value, SQLINTEGER) {
    DriverStatement& statement = statementOf(handle);
    if (attribute == SQL_ATTR_ROW_ARRAY_SIZE) statement.arraySize = reinterpret_cast<SQLULEN>(value);
    if (attribute == SQL_ATTR_ROWS_FETCHED_PTR) statement.fetched = static_cast<SQLULEN*>(value);
    if (attribute == SQL_ATTR_ROW_STATUS_PTR) statement.status = static_cast<SQLUSMALLINT*>(value);
    return SQL_SUCCESS;
}

SQLRETURN SQL_API SQLPrepareW(SQLHSTMT handle, SQLWCHAR* text, SQLINTEGER length) {
    statementOf(handle).text = narrow(text, length);
    return SQL_SUCCESS;
}

SQLRETURN SQL_API SQLExecute(SQLHSTMT handle) { return run(statementOf(handle)); }

SQLRETURN SQL_API SQLExecDirectW(SQLHSTMT handle, SQLWCHAR* text, SQLINTEGER length) {
    DriverStatement& statement = statementOf(handle);
    statement.text = narrow(text, length);
    return run(statement);
}

SQLRETURN SQL_API SQLNumResultCols(SQLHSTMT, SQLSMALLINT* count) {
    *count = 1;
    return SQL_SUCCESS;
}

SQLRETURN SQL_API SQLDescribeColW(SQLHSTMT, SQLUSMALLINT, SQLWCHAR* name, SQLSMALLINT capacity, SQLSMALLINT* length,
                                  SQLSMALLINT* type, SQLULEN* size, SQLSMALLINT* digits, SQLSMALLINT* nullable) {
    widen("n", name, static_cast<std::size_t>(capacity), length);
    *type = SQL_INTEGER;
    *size = 10;
    *digits = 0;
    *nullable = SQL_NO_NULLS;
    return SQL_SUCCESS;
}

SQLRETURN SQL_API SQLBindCol(SQLHSTMT handle, SQLUSMALLINT, SQLSMALLINT, SQLPOINTER values, SQLLEN, SQLLEN* lengths) {
    DriverStatement& statement = statementOf(handle);
    statement.values = values;
    statement.lengths = lengths;
    return SQL_SUCCESS;
}

SQLRETURN SQL_API SQLFetch(SQLHSTMT handle) {
    DriverStatement& statement = statementOf(handle);
    SQLULEN count = 0;
    for (; count < statement.arraySize && statement.row < statement.rowCount; ++count) {
        const std::int64_t value = ++statement.row;
        std::memcpy(static_cast<char*>(statement.values) + count * sizeof value, &value, sizeof value);
        statement.lengths[count] = sizeof value;
        if (statement.status != nullptr) statement.status[count] = SQL_ROW_SUCCESS;
    }
    if (statement.fetched != nullptr) *statement.fetched = count;
    return count == 0 ? SQL_NO_DATA : SQL_SUCCESS;
}

SQLRETURN SQL_API SQLMoreResults(SQLHSTMT handle) {
    statementOf(handle);
    return SQL_NO_DATA;
}

SQLRETURN SQL_API SQLFreeStmt(SQLHSTMT, SQLUSMALLINT) { return SQL_SUCCESS; }
SQLRETURN SQL_API SQLCloseCursor(SQLHSTMT) { return SQL_SUCCESS; }
SQLRETURN SQL_API SQLCancel(SQLHSTMT) { return SQL_SUCCESS; }

SQLRETURN SQL_API SQLGetDiagRecW(SQLSMALLINT type, SQLHANDLE handle, SQLSMALLINT number, SQLWCHAR* state,
                                 SQLINTEGER* native, SQLWCHAR* words, SQLSMALLINT capacity, SQLSMALLINT* length) {
    const Record* record = nullptr;
    if (type == SQL_HANDLE_DBC) record = &static_cast<DriverConnection*>(handle)->record;
    if (type == SQL_HANDLE_STMT) record = &static_cast<DriverStatement*>(handle)->record;
    if (record == nullptr || number != 1 || record->state.empty()) return SQL_NO_DATA;
    constexpr std::size_t kStateUnits = 6;
    widen<SQLSMALLINT>(record->state, state, kStateUnits, nullptr);
    if (native != nullptr) *native = record->native;
    widen(record->words, words, static_cast<std::size_t>(capacity), length);
    return SQL_SUCCESS;
}

/// The driver manager takes records from drivers that have this function too.
SQLRETURN SQL_API SQLGetDiagFieldW(SQLSMALLINT, SQLHANDLE, SQLSMALLINT, SQLSMALLINT, SQLPOINTER, SQLSMALLINT,
                                   SQLSMALLINT*) {
    return SQL_NO_DATA;
}

}  // extern "C"
#pragma GCC visibility pop
