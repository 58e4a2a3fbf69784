#include "rows.h"

#include <algorithm>

namespace velcoran::odbc {

Statement::Statement(std::shared_ptr<Session> session)
    : m_session(std::move(session)), m_cursor(std::make_shared<Cursor>(m_session->link())) {}

Statement::~Statement() {
    // The handle is freed on the driver's thread; nobody waits for it.
    m_session->post([cursor = std::move(m_cursor)] { cursor->release(); });
}

void Statement::execute(const QString& text) {
    m_session->run(m_token, [cursor = m_cursor, text, token = m_token] { cursor->execute(text, token); });
    describe();
}

void Statement::prepare(const QString& text) {
    m_session->run(m_token, [cursor = m_cursor, text, token = m_token] { cursor->prepare(text, token); });
    describe();
}

void Statement::describe() {
    if (!m_descriptions.empty()) return;  // handed out: they stay as they are
    for (const ColumnPlan& plan : m_cursor->columns()) m_names.push_back(plan.name);
    for (std::size_t i = 0; i < m_names.size(); ++i) {
        const ColumnPlan& plan = m_cursor->columns()[i];
        m_descriptions.push_back({reinterpret_cast<const char16_t*>(m_names[i].utf16()),
                                  static_cast<std::uint32_t>(m_names[i].size()), plan.expected, plan.scale});
    }
    m_columns.resize(m_descriptions.size());
}

com::HResult Statement::Columns(const ColumnDescription** columns, std::uint32_t* count) {
    return com::guarded([&] {
        if (columns == nullptr || count == nullptr) return com::kNullPointer;
        *columns = m_descriptions.data();
        *count = static_cast<std::uint32_t>(m_descriptions.size());
        return com::kOk;
    });
}

com::HResult Statement::Run() {
    return com::guarded([this] {
        m_position = m_available = 0;
        m_session->run(m_token, [cursor = m_cursor, token = m_token] { cursor->run(token); });
        describe();
    });
}

com::HResult Statement::Fetch(std::uint32_t maxRows, const RowBlock** block) {
    return com::guarded([&] {
        if (block == nullptr) return com::kNullPointer;
        *block = nullptr;
        if (maxRows == 0) return com::kInvalidArgument;
        m_session->requireOpen();
        stopWhenCancelled();
        if (m_position == m_available) {
            m_position = m_available = 0;
            m_session->run(m_token, [cursor = m_cursor, token = m_token] { cursor->next(*token); });
            m_available = m_cursor->block().rowCount;
        }
        *block = &showRows(maxRows);
        return m_block.rowCount == 0 ? com::kFalse : com::kOk;
    });
}

/// A cancel between two fetches, while rows of the last block are still here.
void Statement::stopWhenCancelled() {
    if (m_position == m_available || !m_token->isRequested()) return;
    m_token->clear();
    m_position = m_available = 0;
    m_session->post([cursor = m_cursor] { cursor->close(); });
    throw base::Cancelled();
}

const RowBlock& Statement::showRows(std::uint32_t maxRows) {
    const std::uint32_t count = std::min(maxRows, m_available - m_position);
    const auto& builders = m_cursor->block().columns;
    m_columns.resize(builders.size());
    std::transform(builders.begin(), builders.end(), m_columns.begin(),
                   [this](const ColumnBuilder& builder) { return builder.block(m_position); });
    m_block = {count, static_cast<std::uint32_t>(m_columns.size()), m_columns.data()};
    m_position += count;
    return m_block;
}

com::HResult Statement::Cancel() {
    m_session->cancel(*m_token);
    return com::kOk;
}

}  // namespace velcoran::odbc
