#include "driver_statement.h"

#include "db/provider/errors.h"

#include <algorithm>

namespace velcoran::odbc {

using namespace Qt::StringLiterals;

namespace {

constexpr std::size_t kNameUnits = 256;

}  // namespace

DriverStatement::DriverStatement(std::shared_ptr<Link> link) : m_link(std::move(link)) {}

DriverStatement::~DriverStatement() { release(); }

void DriverStatement::release() noexcept {
    if (!m_statement) return;
    m_link->strikeOff(*this);
    m_boundColumns.reset();
    m_statement.reset();
    m_state = State::Closed;
}

void DriverStatement::execute(const QString& text, const SharedToken& token) {
    start(token,
          [&] { return SQLExecDirectW(m_statement.get(), wideText(text), static_cast<SQLINTEGER>(text.size())); });
}

void DriverStatement::prepare(const QString& text, const SharedToken& token) {
    try {
        m_link->open(*this, token);
        m_statement = m_link->allocateStatement(*this);
        const SQLRETURN result = m_link->call(*token, m_statement, [&] {
            return SQLPrepareW(m_statement.get(), wideText(text), static_cast<SQLINTEGER>(text.size()));
        });
        m_link->check(result, *token, m_statement);
        describe(*token);
        m_link->noteClosed(*this);
    } catch (...) {
        m_link->noteClosed(*this);
        throw;
    }
}

void DriverStatement::run(const SharedToken& token) {
    close();
    start(token, [this] { return SQLExecute(m_statement.get()); });
}

/// Runs the statement and stands before its first row.
void DriverStatement::start(const SharedToken& token, const std::function<SQLRETURN()>& call) {
    try {
        m_link->open(*this, token);
        if (!m_statement) m_statement = m_link->allocateStatement(*this);
        m_state = State::Open;
        m_link->check(m_link->call(*token, m_statement, call), *token, m_statement);
        if (m_plans.empty()) skipEmptyResults(*token);
        if (!m_boundColumns && !m_plans.empty())
            m_boundColumns = std::make_unique<BoundColumns>(*m_link, m_statement, m_plans, *token);
        m_block = emptyBlock();
        if (m_plans.empty()) finish(*token);
    } catch (...) {
        close();
        throw;
    }
}

/// A batch may begin with statements that return no rows.
void DriverStatement::skipEmptyResults(const CancelToken& token) {
    for (;;) {
        describe(token);
        if (!m_plans.empty()) return;
        const SQLRETURN result = m_link->call(token, m_statement, [this] { return SQLMoreResults(m_statement.get()); });
        if (m_link->check(result, token, m_statement) == SQL_NO_DATA) return;
    }
}

void DriverStatement::describe(const CancelToken& token) {
    SQLSMALLINT count = 0;
    const SQLRETURN result =
        m_link->call(token, m_statement, [&] { return SQLNumResultCols(m_statement.get(), &count); });
    m_link->check(result, token, m_statement);
    m_plans.clear();
    for (SQLSMALLINT number = 1; number <= count; ++number) {
        const DriverColumn column = describeColumn(static_cast<SQLUSMALLINT>(number), token);
        m_plans.push_back(planColumn(column, m_link->traits().isLoose));
    }
}

DriverColumn DriverStatement::describeColumn(SQLUSMALLINT number, const CancelToken& token) {
    DriverColumn column;
    SQLWCHAR name[kNameUnits] = {};
    SQLSMALLINT length = 0;
    SQLSMALLINT nullable = 0;
    const SQLRETURN result = m_link->call(token, m_statement, [&] {
        return SQLDescribeColW(m_statement.get(), number, name, kNameUnits, &length, &column.sqlType, &column.size,
                               &column.digits, &nullable);
    });
    m_link->check(result, token, m_statement);
    const auto kept = std::clamp<qsizetype>(length, 0, kNameUnits - 1);
    column.name = QString::fromUtf16(reinterpret_cast<const char16_t*>(name), kept);
    SQLLEN isUnsigned = SQL_FALSE;
    if (column.sqlType == SQL_BIGINT &&
        SQL_SUCCEEDED(SQLColAttributeW(m_statement.get(), number, SQL_DESC_UNSIGNED, nullptr, 0, nullptr, &isUnsigned)))
        column.isUnsigned = isUnsigned == SQL_TRUE;
    return column;
}

provider::BlockBuilder DriverStatement::emptyBlock() const {
    provider::BlockBuilder block;
    for (const ColumnPlan& plan : m_plans)
        block.addColumn(plan.expected,
                        plan.expected == ColumnType::Decimal64 ? std::optional(plan.scale) : std::nullopt);
    return block;
}

bool DriverStatement::next(const CancelToken& token) {
    if (m_state == State::Stored) return takeStored();
    if (m_state == State::AtEnd) {
        m_block.start(0);
        return false;
    }
    if (m_state == State::Closed) throw provider::closedRowsError();
    try {
        return fetch(m_block, token);
    } catch (...) {
        close();
        throw;
    }
}

bool DriverStatement::fetch(provider::BlockBuilder& block, const CancelToken& token) {
    if (m_boundColumns->fetch(block, token)) return true;
    finish(token);
    return false;
}

/// After the last row: an error that the server found at the end is reported with what follows the rows.
void DriverStatement::finish(const CancelToken& token) {
    const SQLRETURN result = m_link->call(token, m_statement, [this] { return SQLMoreResults(m_statement.get()); });
    m_link->check(result, token, m_statement);
    m_link->requireAlive();
    endRun();
    m_state = State::AtEnd;
}

void DriverStatement::storeRows(const CancelToken& token) noexcept {
    try {
        for (;;) {
            provider::BlockBuilder block = emptyBlock();
            if (!fetch(block, token)) break;
            m_stored.push_back(std::move(block));
        }
    } catch (...) {
        m_storedFailure = std::current_exception();
        endRun();
    }
    m_state = State::Stored;
}

bool DriverStatement::takeStored() {
    if (!m_stored.empty()) {
        m_block = std::move(m_stored.front());
        m_stored.pop_front();
        return true;
    }
    m_block.start(0);
    m_state = m_storedFailure ? State::Closed : State::AtEnd;
    if (m_storedFailure) std::rethrow_exception(std::exchange(m_storedFailure, nullptr));
    return false;
}

void DriverStatement::endRun() noexcept {
    if (m_statement && m_state == State::Open) SQLFreeStmt(m_statement.get(), SQL_CLOSE);
    m_link->noteClosed(*this);
    m_state = State::Closed;
}

void DriverStatement::close() noexcept {
    endRun();
    m_stored.clear();
    m_storedFailure = nullptr;
}

}  // namespace velcoran::odbc
