/// An ODBC driver whose statements say what happens to them:
///
///     rows N                        a column "n" with the integers 1 to N
///     rows N bad K STATE NATIVE WORDS  ... of which row K has an error, in a fetch that is a success with information
///     texts N1 N2 ...               a long column "n" with texts of so many letters, "abc" and so on from the start
///     fail STATE NATIVE WORDS       an error with one record
///     warn STATE NATIVE WORDS       one row, and a warning with it
///     die ...                       the connection is dead from now on, and then one of the above
///
/// A dead connection fails every statement. "Dead=unknown" in the connection text makes a driver that does not know the
/// attribute; "ReadOnly=refused" one that refuses read-only access; "Reread=any" and "Reread=block" one whose bound
/// values can be read again, of a single row or of a block.

#include <sql.h>
#include <sqlext.h>
#include <sqlucode.h>

#include <algorithm>
#include <cstring>
#include <memory>
#include <sstream>
#include <string>
#include <vector>

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
    SQLUINTEGER reread = 0;
    Record record;
};

struct DriverStatement {
    DriverConnection* connection = nullptr;
    std::string text;
    int rowCount = 0;
    int row = 0;
    int badRow = 0;
    Record badRecord;
    std::vector<std::size_t> texts;  ///< lengths; none for a column of integers
    std::size_t first = 0;           ///< row of the block that was fetched
    std::size_t position = 0;        ///< row whose text is read in pieces
    std::size_t offset = 0;          ///< letters of it that were given
    SQLPOINTER values = nullptr;
    SQLLEN bufferBytes = 0;
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

Record readRecord(std::istream& script) {
    Record record;
    script >> record.state >> record.native;
    std::getline(script >> std::ws, record.words);
    record.words.insert(0, "[Test][Server]");
    return record;
}

/// Gives letters of the present text, as many as fit in front of a terminator.
SQLRETURN giveLetters(DriverStatement& statement, SQLPOINTER buffer, SQLLEN bytes, SQLLEN* length) {
    constexpr std::size_t kLetters = 26;
    auto* units = static_cast<SQLWCHAR*>(buffer);
    const std::size_t left = statement.texts[statement.position] - statement.offset;
    const std::size_t count = std::min(left, static_cast<std::size_t>(bytes) / sizeof(SQLWCHAR) - 1);
    for (std::size_t i = 0; i < count; ++i) units[i] = static_cast<SQLWCHAR>('a' + (statement.offset + i) % kLetters);
    units[count] = 0;
    *length = static_cast<SQLLEN>(left * sizeof(SQLWCHAR));
    statement.offset += count;
    if (count == left) return SQL_SUCCESS;
    statement.record = {"01004", 0, "[Test][Driver]String data, right truncated"};
    return SQL_SUCCESS_WITH_INFO;
}

SQLRETURN run(DriverStatement& statement) {
    statement.row = statement.rowCount = statement.badRow = 0;
    statement.texts.clear();
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
        script >> statement.rowCount >> word;
        if (word != "bad") return SQL_SUCCESS;
        script >> statement.badRow;
        statement.badRecord = readRecord(script);
        return SQL_SUCCESS;
    }
    if (word == "texts") {
        for (std::size_t length = 0; script >> length;) statement.texts.push_back(length);
        statement.rowCount = static_cast<int>(statement.texts.size());
        return SQL_SUCCESS;
    }
    Record record = readRecord(script);
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
    constexpr SQLUINTEGER kAny = SQL_GD_ANY_COLUMN | SQL_GD_ANY_ORDER | SQL_GD_BOUND;
    if (given.find("Reread=any") != std::string::npos) connection.reread = kAny;
    if (given.find("Reread=block") != std::string::npos) connection.reread = kAny | SQL_GD_BLOCK;
    if (outLength != nullptr) *outLength = 0;
    return SQL_SUCCESS;
}

SQLRETURN SQL_API SQLDisconnect(SQLHDBC) { return SQL_SUCCESS; }

SQLRETURN SQL_API SQLGetInfoW(SQLHDBC handle, SQLUSMALLINT information, SQLPOINTER value, SQLSMALLINT bytes,
                              SQLSMALLINT* length) {
    if (information == SQL_DBMS_NAME || information == SQL_DRIVER_ODBC_VER) {
        widen(information == SQL_DBMS_NAME ? "Scripted" : "03.00", static_cast<SQLWCHAR*>(value),
              static_cast<std::size_t>(bytes) / sizeof(SQLWCHAR), length, sizeof(SQLWCHAR));
    } else if (information == SQL_GETDATA_EXTENSIONS) {
        std::memcpy(value, &static_cast<DriverConnection*>(handle)->reread, sizeof(SQLUINTEGER));
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

SQLRETURN SQL_API SQLDescribeColW(SQLHSTMT handle, SQLUSMALLINT, SQLWCHAR* name, SQLSMALLINT capacity,
                                  SQLSMALLINT* length, SQLSMALLINT* type, SQLULEN* size, SQLSMALLINT* digits,
                                  SQLSMALLINT* nullable) {
    widen("n", name, static_cast<std::size_t>(capacity), length);
    const bool isText = !statementOf(handle).texts.empty();
    *type = isText ? SQL_WLONGVARCHAR : SQL_INTEGER;
    *size = isText ? 0 : 10;
    *digits = 0;
    *nullable = SQL_NO_NULLS;
    return SQL_SUCCESS;
}

SQLRETURN SQL_API SQLBindCol(SQLHSTMT handle, SQLUSMALLINT, SQLSMALLINT, SQLPOINTER values, SQLLEN bytes,
                             SQLLEN* lengths) {
    DriverStatement& statement = statementOf(handle);
    statement.values = values;
    statement.bufferBytes = bytes;
    statement.lengths = lengths;
    return SQL_SUCCESS;
}

SQLRETURN SQL_API SQLFetch(SQLHSTMT handle) {
    DriverStatement& statement = statementOf(handle);
    SQLRETURN result = SQL_SUCCESS;
    const int first = statement.row;
    SQLULEN count = 0;
    for (; count < statement.arraySize && statement.row < statement.rowCount; ++count) {
        const std::int64_t value = ++statement.row;
        const bool isBad = statement.row == statement.badRow;
        if (statement.status != nullptr) statement.status[count] = isBad ? SQL_ROW_ERROR : SQL_ROW_SUCCESS;
        if (isBad) statement.record = statement.badRecord;
        if (isBad) result = SQL_SUCCESS_WITH_INFO;
        if (statement.values == nullptr) continue;
        char* buffer = static_cast<char*>(statement.values) + count * static_cast<SQLULEN>(statement.bufferBytes);
        if (!statement.texts.empty()) {
            statement.position = static_cast<std::size_t>(value - 1);
            statement.offset = 0;
            result = std::max(result, giveLetters(statement, buffer, statement.bufferBytes, &statement.lengths[count]));
        } else {
            std::memcpy(buffer, &value, sizeof value);
            statement.lengths[count] = sizeof value;
        }
    }
    statement.first = static_cast<std::size_t>(first);
    statement.position = statement.first;
    statement.offset = 0;
    if (statement.fetched != nullptr) *statement.fetched = count;
    return count == 0 ? SQL_NO_DATA : result;
}

SQLRETURN SQL_API SQLSetPos(SQLHSTMT handle, SQLSETPOSIROW row, SQLUSMALLINT, SQLUSMALLINT) {
    DriverStatement& statement = statementOf(handle);
    statement.position = statement.first + row - 1;
    statement.offset = 0;
    return SQL_SUCCESS;
}

SQLRETURN SQL_API SQLGetData(SQLHSTMT handle, SQLUSMALLINT, SQLSMALLINT, SQLPOINTER buffer, SQLLEN bytes,
                             SQLLEN* length) {
    return giveLetters(statementOf(handle), buffer, bytes, length);
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
