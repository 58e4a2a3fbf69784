#include "rows.h"

#include "db/provider_errors.h"
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

}  // namespace

Statement::Statement(std::shared_ptr<Session> session, const QString& text) : m_session(std::move(session)) {
    const Session::Activity activity(*m_session, m_token);
    const Session::Turn turn(*m_session, m_token);
    m_statement = m_session->prepare(text);
    describe(text);
}

Statement::~Statement() {
    m_activity.reset();
    m_session->finalize(std::move(m_statement));
}

void Statement::describe(const QString& text) {
    const int count = sqlite3_column_count(m_statement.get());
    m_names.reserve(static_cast<std::size_t>(count));
    const QStringList written = writtenColumnNames(text);
    for (int i = 0; i < count; ++i) {
        const ColumnType type = expectedType(sqlite3_column_decltype(m_statement.get(), i));
        QString& name = m_names.emplace_back(QString::fromUtf8(sqlite3_column_name(m_statement.get(), i)));
        if (written.size() == count && name.compare(written[i], Qt::CaseInsensitive) == 0) name = written[i];
        m_descriptions.push_back(
            {reinterpret_cast<const char16_t*>(name.utf16()), static_cast<std::uint32_t>(name.size()), type, 0});
        m_builders.emplace_back(type);
    }
    m_columns.resize(static_cast<std::size_t>(count));
}

com::HResult Statement::Columns(const ColumnDescription** columns, std::uint32_t* count) {
    return com::guarded([&] {
        if (columns == nullptr || count == nullptr) return com::kNullPointer;
        *columns = m_descriptions.data();
        *count = static_cast<std::uint32_t>(m_descriptions.size());
        return com::kOk;
    });
}

void Statement::start() {
    m_activity.reset();
    m_activity.emplace(*m_session, m_token);
    const Session::Turn turn(*m_session, m_token);
    sqlite3_reset(m_statement.get());
    m_isAtEnd = false;
}

com::HResult Statement::Run() {
    return com::guarded([this] {
        try {
            start();
        } catch (...) {
            m_activity.reset();
            throw;
        }
    });
}

com::HResult Statement::Fetch(std::uint32_t maxRows, const RowBlock** block) {
    return com::guarded([&] {
        if (block == nullptr) return com::kNullPointer;
        *block = nullptr;
        if (maxRows == 0) return com::kInvalidArgument;
        try {
            const Session::Turn turn(*m_session, m_token);
            const bool hasRows = readBlock(maxRows);
            *block = &m_block;
            return hasRows ? com::kOk : com::kFalse;
        } catch (...) {
            stop();
            throw;
        }
    });
}

/// Ends a run that failed: what it holds of the database is given back, and a further Fetch needs a Run.
void Statement::stop() {
    m_session->reset(m_statement.get());
    m_activity.reset();
    m_isAtEnd = false;
}

bool Statement::readBlock(std::uint32_t maxRows) {
    if (!m_isAtEnd && !m_activity) throw db::closedRowsError();
    const std::size_t columnCount = m_builders.size();
    const std::size_t most = std::max<std::size_t>(1, kBlockBytes / (kValueBytes * columnCount));
    const auto rowLimit = static_cast<std::uint32_t>(std::min<std::size_t>(maxRows, most));
    for (ColumnBuilder& builder : m_builders) builder.start(rowLimit);
    std::uint32_t rows = 0;
    std::size_t bytes = 0;
    sqlite3_stmt* const statement = m_statement.get();
    while (!m_isAtEnd && rows < rowLimit && bytes < kBlockBytes) {
        const int result = sqlite3_step(statement);
        if (result == SQLITE_DONE) {
            m_isAtEnd = true;
            m_activity.reset();
            sqlite3_reset(statement);
        } else if (result != SQLITE_ROW) {
            m_session->throwError(result, m_token);
        } else {
            for (std::size_t i = 0; i < columnCount; ++i)
                bytes += m_builders[i].append(sqlite3_column_value(statement, static_cast<int>(i)));
            ++rows;
        }
    }
    std::transform(m_builders.begin(), m_builders.end(), m_columns.begin(),
                   [](ColumnBuilder& builder) { return builder.finish(); });
    m_block = {rows, static_cast<std::uint32_t>(columnCount), m_columns.data()};
    return rows != 0;
}

com::HResult Statement::Cancel() {
    m_token.request();
    return com::kOk;
}

}  // namespace velcoran::sqlite
