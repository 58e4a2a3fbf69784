#include "statement.h"

#include "db/provider/errors.h"
#include "dialect.h"

#include <sqlite3.h>

#include <algorithm>

namespace velcoran::sqlite {

using namespace Qt::StringLiterals;

namespace {

/// A block ends at about this size.
constexpr std::size_t kBlockBytes = std::size_t{1} << 20U;
constexpr std::size_t kValueBytes = 8;

/// What a declared type lets expect, by the database's own rules of affinity.
ColumnType expectedType(const char* declared) {
    if (declared == nullptr) return ColumnType::Text;
    const QString type = QString::fromUtf8(declared).toUpper();
    if (type.contains(u"INT")) return ColumnType::Int64;
    for (const QStringView text : {u"CHAR", u"CLOB", u"TEXT", u"BLOB"})
        if (type.contains(text)) return ColumnType::Text;
    return ColumnType::Decimal64;
}

/// Adds a value to its column. @return bytes of text that it took
std::size_t append(provider::ColumnBuilder& column, sqlite3_value* value) {
    switch (sqlite3_value_type(value)) {
        case SQLITE_INTEGER:
            column.appendInteger(sqlite3_value_int64(value));
            return 0;
        case SQLITE_FLOAT:
            column.appendReal(sqlite3_value_double(value));
            return 0;
        case SQLITE_NULL:
            column.appendNull();
            return 0;
        default: {
            const auto* text = reinterpret_cast<const char*>(sqlite3_value_text(value));
            const std::size_t length = text == nullptr ? 0U : static_cast<std::size_t>(sqlite3_value_bytes(value));
            column.appendUtf8({text, length});
            return length * sizeof(char16_t);
        }
    }
}

}  // namespace

Statement::Statement(std::shared_ptr<Session> session, const QString& text) : m_session(std::move(session)) {
    const Session::Activity activity(*m_session, m_token);
    const Session::Turn turn(*m_session, m_token);
    m_statement = m_session->prepare(text);
    describeColumns(text);
}

Statement::~Statement() {
    m_activity.reset();
    m_session->finalize(std::move(m_statement));
}

void Statement::describeColumns(const QString& text) {
    const int count = sqlite3_column_count(m_statement.get());
    const QStringList written = writtenColumnNames(text);
    for (int i = 0; i < count; ++i) {
        const ColumnType type = expectedType(sqlite3_column_decltype(m_statement.get(), i));
        const QString name = QString::fromUtf8(sqlite3_column_name(m_statement.get(), i));
        const bool isWritten = written.size() == count && name.compare(written[i], Qt::CaseInsensitive) == 0;
        describe(isWritten ? written[i] : name, type, 0);
        m_block.addColumn(type);
    }
}

void Statement::start() {
    m_activity.reset();
    m_activity.emplace(*m_session, m_token);
    try {
        const Session::Turn turn(*m_session, m_token);
        sqlite3_reset(m_statement.get());
        m_isAtEnd = false;
    } catch (...) {
        m_activity.reset();
        throw;
    }
}

const RowBlock& Statement::read(std::uint32_t maxRows) {
    try {
        const Session::Turn turn(*m_session, m_token);
        readBlock(maxRows);
        return m_block.show(0, m_block.rowCount());
    } catch (...) {
        endRun();
        throw;
    }
}

/// Ends a run that failed: what it holds of the database is given back, and a further Fetch needs a Run.
void Statement::endRun() {
    m_session->reset(m_statement.get());
    m_activity.reset();
    m_isAtEnd = false;
}

void Statement::readBlock(std::uint32_t maxRows) {
    if (!m_isAtEnd && !m_activity) throw provider::closedRowsError();
    const std::size_t columnCount = m_block.columnCount();
    const std::size_t most = std::max<std::size_t>(1, kBlockBytes / (kValueBytes * columnCount));
    const auto rowLimit = static_cast<std::uint32_t>(std::min<std::size_t>(maxRows, most));
    m_block.start(rowLimit);
    std::size_t bytes = 0;
    sqlite3_stmt* const statement = m_statement.get();
    while (!m_isAtEnd && m_block.rowCount() < rowLimit && bytes < kBlockBytes) {
        const int result = sqlite3_step(statement);
        if (result == SQLITE_DONE) {
            m_isAtEnd = true;
            m_activity.reset();
            sqlite3_reset(statement);
        } else if (result != SQLITE_ROW) {
            m_session->throwError(result, m_token);
        } else {
            for (std::size_t i = 0; i < columnCount; ++i)
                bytes += append(m_block.column(i), sqlite3_column_value(statement, static_cast<int>(i)));
            m_block.addRows(1);
        }
    }
}

}  // namespace velcoran::sqlite
