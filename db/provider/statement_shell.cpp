#include "statement_shell.h"

namespace velcoran::provider {

com::HResult StatementShell::Columns(const ColumnDescription** columns, std::uint32_t* count) {
    return com::guarded([&] {
        if (columns == nullptr || count == nullptr) return com::kNullPointer;
        *columns = m_descriptions.data();
        *count = static_cast<std::uint32_t>(m_descriptions.size());
        return com::kOk;
    });
}

com::HResult StatementShell::Run() {
    return com::guarded([this] { start(); });
}

com::HResult StatementShell::Fetch(std::uint32_t maxRows, const RowBlock** block) {
    return com::guarded([&] {
        if (block == nullptr) return com::kNullPointer;
        *block = nullptr;
        if (maxRows == 0) return com::kInvalidArgument;
        *block = &read(maxRows);
        return (*block)->rowCount == 0 ? com::kFalse : com::kOk;
    });
}

com::HResult StatementShell::Cancel() {
    stop();
    return com::kOk;
}

void StatementShell::describe(const QString& name, ColumnType type, int scale) {
    const QString& kept = m_names.emplace_back(name);  // its characters stay in place when the list grows
    m_descriptions.push_back(
        {reinterpret_cast<const char16_t*>(kept.utf16()), static_cast<std::uint32_t>(kept.size()), type, scale});
}

}  // namespace velcoran::provider
