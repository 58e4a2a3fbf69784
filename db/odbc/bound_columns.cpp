#include "bound_columns.h"

#include "bound_values.h"

#include <algorithm>

namespace velcoran::odbc {

using namespace Qt::StringLiterals;

namespace {

constexpr std::size_t kBlockBytes = std::size_t{1} << 20U;
constexpr std::size_t kMaxRows = 4096;
constexpr std::size_t kAlignment = 8;

/// Buffer of a long column whose longer values are read again: most "unlimited" texts are short.
constexpr std::uint32_t kShortBufferBytes = 514;

constexpr std::size_t kFirstPiece = 8192;
constexpr std::size_t kMaxPiece = std::size_t{1} << 20U;

std::size_t aligned(std::size_t bytes) { return (bytes + kAlignment - 1) / kAlignment * kAlignment; }

bool hasVariableLength(const ColumnPlan& plan) {
    return plan.kind == ValueKind::Text || plan.kind == ValueKind::Number;
}

std::size_t terminatorBytes(const ColumnPlan& plan) {
    return plan.cType == SQL_C_WCHAR ? sizeof(SQLWCHAR) : sizeof(SQLCHAR);
}

/// A driver may leave the end of a piece empty where a character would not fit whole.
std::size_t filledBytes(const char* piece, std::size_t bytes, std::size_t unit) {
    const auto isZero = [](char c) { return c == 0; };
    while (bytes >= unit && std::all_of(piece + bytes - unit, piece + bytes, isZero)) bytes -= unit;
    return bytes;
}

bool isCut(SQLLEN length, std::size_t bufferBytes, const ColumnPlan& plan) {
    if (length == SQL_NULL_DATA) return false;
    return length == SQL_NO_TOTAL || length < 0 ||
           static_cast<std::size_t>(length) > bufferBytes - terminatorBytes(plan);
}

}  // namespace

BoundColumns::BoundColumns(Link& link, const StatementHandle& statement, const std::vector<ColumnPlan>& plans,
                           const CancelToken& token)
    : m_link(link), m_statement(statement) {
    chooseMode(plans);
    allocate();
    bind(token);
}

void BoundColumns::chooseMode(const std::vector<ColumnPlan>& plans) {
    const DriverTraits& traits = m_link.traits();
    const bool hasLong = std::any_of(plans.begin(), plans.end(), [](const ColumnPlan& plan) { return plan.isLong; });
    const bool needsReread = hasLong || traits.isLoose;
    bool isBound = true;
    std::size_t rowBytes = sizeof(SQLUSMALLINT);
    for (const ColumnPlan& plan : plans) {
        Binding binding{plan, static_cast<SQLUSMALLINT>(m_bindings.size() + 1), false, nullptr, nullptr};
        isBound = isBound && (!plan.isLong || traits.canReread);
        binding.isBound = isBound;
        if (plan.isLong) binding.plan.valueBytes = kShortBufferBytes;
        rowBytes += binding.plan.valueBytes + sizeof(SQLLEN);
        m_bindings.push_back(std::move(binding));
    }
    const bool isSingle = !isBound || (needsReread && !traits.canRereadInBlock);
    m_rowsetSize =
        isSingle ? 1 : static_cast<std::uint32_t>(std::clamp<std::size_t>(kBlockBytes / rowBytes, 1, kMaxRows));
}

void BoundColumns::allocate() {
    std::size_t bytes = 0;
    for (const Binding& binding : m_bindings)
        bytes += aligned(std::size_t{binding.plan.valueBytes} * m_rowsetSize) + sizeof(SQLLEN) * m_rowsetSize;
    m_memory = std::make_unique<std::byte[]>(bytes);
    m_status.assign(m_rowsetSize, SQL_ROW_SUCCESS);
    std::byte* at = m_memory.get();
    for (Binding& binding : m_bindings) {
        binding.values = at;
        at += aligned(std::size_t{binding.plan.valueBytes} * m_rowsetSize);
        binding.lengths = reinterpret_cast<SQLLEN*>(at);
        at += sizeof(SQLLEN) * m_rowsetSize;
    }
}

void BoundColumns::setAttribute(SQLINTEGER attribute, SQLPOINTER value, const CancelToken& token) {
    m_link.check(SQLSetStmtAttrW(m_statement.get(), attribute, value, 0), token, m_statement);
}

void BoundColumns::bind(const CancelToken& token) {
    setAttribute(SQL_ATTR_ROW_ARRAY_SIZE, reinterpret_cast<SQLPOINTER>(std::uintptr_t{m_rowsetSize}), token);
    setAttribute(SQL_ATTR_ROW_STATUS_PTR, m_status.data(), token);
    setAttribute(SQL_ATTR_ROWS_FETCHED_PTR, &m_fetched, token);
    for (const Binding& binding : m_bindings) {
        if (!binding.isBound) continue;
        m_link.check(SQLBindCol(m_statement.get(), binding.number, binding.plan.cType, binding.values,
                                static_cast<SQLLEN>(binding.plan.valueBytes), binding.lengths),
                     token, m_statement);
    }
}

bool BoundColumns::fetch(provider::BlockBuilder& block, const CancelToken& token) {
    const std::uint32_t most = m_rowsetSize == 1 ? static_cast<std::uint32_t>(kMaxRows) : m_rowsetSize;
    block.start(most);
    do {
        const std::uint32_t rows = fetchRowset(token);
        if (rows == 0) break;
        appendRowset(block, rows, token);
        block.addRows(rows);
    } while (m_rowsetSize == 1 && block.rowCount() < most && block.byteCount() < kBlockBytes);
    return block.rowCount() != 0;
}

/// @return rows that arrived; 0 at the end
std::uint32_t BoundColumns::fetchRowset(const CancelToken& token) {
    m_fetched = 0;
    const SQLRETURN result = m_link.call(token, m_statement, [this] { return SQLFetch(m_statement.get()); });
    if (result == SQL_NO_DATA) {
        m_link.check(result, token, m_statement);
        return 0;
    }
    if (m_rowsetSize == 1 && SQL_SUCCEEDED(result)) m_fetched = 1;
    const auto count = static_cast<std::uint32_t>(std::min<SQLULEN>(m_fetched, m_rowsetSize));
    checkRows(result, count, token);
    return count;
}

void BoundColumns::checkRows(SQLRETURN result, std::uint32_t count, const CancelToken& token) {
    const auto end = m_status.begin() + static_cast<std::ptrdiff_t>(count);
    const bool hasBadRow = m_rowsetSize > 1 && std::find(m_status.begin(), end, SQL_ROW_ERROR) != end;
    // The driver calls a block with a bad row a success with information; the information is the error.
    m_link.check(hasBadRow ? static_cast<SQLRETURN>(SQL_ERROR) : result, token, m_statement);
}

void BoundColumns::appendRowset(provider::BlockBuilder& block, std::uint32_t rowCount, const CancelToken& token) {
    for (std::size_t i = 0; i < m_bindings.size(); ++i) {
        if (m_bindings[i].isBound) {
            appendBound(block.column(i), m_bindings[i], rowCount, token);
        } else {
            appendUnbound(block.column(i), m_bindings[i], token);
        }
    }
}

void BoundColumns::appendBound(provider::ColumnBuilder& column, const Binding& binding, std::uint32_t rowCount,
                               const CancelToken& token) {
    const std::uint32_t stride = binding.plan.valueBytes;
    const auto isCutAt = [&](std::uint32_t row) { return isCut(binding.lengths[row], stride, binding.plan); };
    const auto appendRows = [&](std::uint32_t first, std::uint32_t count) {
        appendValues(column, binding.plan.kind,
                     {binding.values + std::size_t{first} * stride, binding.lengths + first, stride}, count);
    };
    if (!hasVariableLength(binding.plan)) return appendRows(0, rowCount);
    std::uint32_t first = 0;
    for (std::uint32_t row = 0; row < rowCount; ++row) {
        if (!isCutAt(row)) continue;
        appendRows(first, row - first);
        readAgain(column, binding, row, token);
        first = row + 1;
    }
    appendRows(first, rowCount - first);
}

/// Reads a value that did not fit its buffer. A value is never shown cut.
void BoundColumns::readAgain(provider::ColumnBuilder& column, const Binding& binding, std::uint32_t row,
                             const CancelToken& token) {
    const DriverTraits& traits = m_link.traits();
    if (!(m_rowsetSize == 1 ? traits.canReread : traits.canRereadInBlock)) {
        throw base::Error(base::kProviderFailure,
                          u"O valoare a coloanei %1 este mai lungă decât spune driverul."_s.arg(binding.plan.name));
    }
    if (m_rowsetSize > 1) {
        m_link.check(SQLSetPos(m_statement.get(), row + 1, SQL_POSITION, SQL_LOCK_NO_CHANGE), token, m_statement);
    }
    appendPieces(column, binding, token);
}

void BoundColumns::appendUnbound(provider::ColumnBuilder& column, const Binding& binding, const CancelToken& token) {
    if (hasVariableLength(binding.plan)) return appendPieces(column, binding, token);
    const SQLRETURN result = m_link.call(token, m_statement, [&] {
        return SQLGetData(m_statement.get(), binding.number, binding.plan.cType, binding.values,
                          static_cast<SQLLEN>(binding.plan.valueBytes), binding.lengths);
    });
    m_link.check(result, token, m_statement);
    appendValues(column, binding.plan.kind, {binding.values, binding.lengths, binding.plan.valueBytes}, 1);
}

void BoundColumns::appendPieces(provider::ColumnBuilder& column, const Binding& binding, const CancelToken& token) {
    if (!readPieces(binding, token)) {
        column.appendNull();
    } else if (binding.plan.kind == ValueKind::Number) {
        column.appendNumber({m_pieces.data(), m_pieces.size()});
    } else {
        column.appendText({reinterpret_cast<const char16_t*>(m_pieces.data()), m_pieces.size() / sizeof(char16_t)});
    }
}

/// Reads one value, piece by piece. @return false for null
bool BoundColumns::readPieces(const Binding& binding, const CancelToken& token) {
    const std::size_t terminator = terminatorBytes(binding.plan);
    std::size_t piece = kFirstPiece;
    m_pieces.clear();
    for (;;) {
        const std::size_t start = m_pieces.size();
        m_pieces.resize(start + piece);
        SQLLEN length = 0;
        const SQLRETURN result = m_link.call(token, m_statement, [&] {
            return SQLGetData(m_statement.get(), binding.number, binding.plan.cType, m_pieces.data() + start,
                              static_cast<SQLLEN>(piece), &length);
        });
        // "Cut" is what every piece but the last is asked for to be; no news of the driver's.
        const bool hasMore = result == SQL_SUCCESS_WITH_INFO && isCut(length, piece, binding.plan);
        m_link.check(hasMore ? static_cast<SQLRETURN>(SQL_SUCCESS) : result, token, m_statement);
        const bool isOver = result == SQL_NO_DATA || length == SQL_NULL_DATA;
        if (isOver) m_pieces.resize(start);
        if (isOver) return length != SQL_NULL_DATA;
        if (!hasMore) {
            m_pieces.resize(start + std::min<std::size_t>(static_cast<std::size_t>(length), piece - terminator));
            return true;
        }
        m_pieces.resize(start + filledBytes(m_pieces.data() + start, piece - terminator, terminator));
        piece = std::min(piece * 2, kMaxPiece);
    }
}

}  // namespace velcoran::odbc
