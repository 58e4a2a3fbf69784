#include "base/short_decimal.h"
#include "sample_data.h"
#include "sample_rows.h"
#include "system/durable_file.h"

#include <cstring>
#include <string_view>

namespace velcoran::host {

namespace {

/// The most rows that the server takes in one INSERT.
constexpr std::size_t kBatchRows = 1000;

std::string declaredType(const SampleColumn& column) {
    switch (column.type) {
        case SampleType::Integer:
            return "INT";
        case SampleType::Text:
            return "NVARCHAR(" + std::to_string(column.length) + ')';
        case SampleType::Amount:
            return "DECIMAL(19,4)";
        case SampleType::DateTime:
            return "DATETIME";
    }
    return {};
}

std::string bracketed(const char* name) { return '[' + std::string(name) + ']'; }

std::string amountText(const SampleAmount& amount) {
    return base::ShortDecimal{amount.mantissa, amount.scale}.toText(amount.scale);
}

std::string textLiteral(const std::string& text) {
    std::string literal = "N'";
    for (const char character : text) literal.append(character == '\'' ? 2 : 1, character);
    return literal + '\'';
}

/// Without hyphens a date means the same in every language of the server.
std::string dateLiteral(std::string text) {
    std::erase(text, '-');
    return '\'' + text + '\'';
}

std::string literalOf(const SampleColumn& column, const SampleValue& value) {
    if (const auto* text = std::get_if<std::string>(&value))
        return column.type == SampleType::DateTime ? dateLiteral(*text) : textLiteral(*text);
    if (const auto* number = std::get_if<std::int64_t>(&value)) return std::to_string(*number);
    if (const auto* amount = std::get_if<SampleAmount>(&value)) return amountText(*amount);
    return "NULL";
}

/// The script, text after text.
class ScriptFile {
public:
    explicit ScriptFile(const QString& path) : m_file(path) {}

    /// @throws Error kPathAccess
    ScriptFile& operator<<(std::string_view text) {
        m_file.write(QByteArrayView(text.data(), static_cast<qsizetype>(text.size())));
        return *this;
    }
    /// @throws Error kPathAccess; then the old file stands
    void commit() { m_file.commit(); }

private:
    system::DurableFile m_file;
};

/// Writes the rows as INSERT statements.
class ScriptSink final : public ISampleSink {
public:
    explicit ScriptSink(ScriptFile& out) : m_out(out) {}

    void beginTable(const SampleTable& table) override {
        m_table = &table;
        m_rows = 0;
    }
    void addRow(std::span<const SampleValue> values) override {
        if (m_rows % kBatchRows == 0) beginBatch();
        m_out << (m_rows % kBatchRows == 0 ? "(" : ",\n(");
        for (std::size_t i = 0; i < values.size(); ++i)
            m_out << (i == 0 ? "" : ", ") << literalOf(m_table->columns[i], values[i]);
        m_out << ")";
        ++m_rows;
    }
    void endTable() override {
        if (m_rows != 0) m_out << ";\nGO\n";
    }

private:
    void beginBatch() {
        if (m_rows != 0) m_out << ";\nGO\n";
        m_out << "INSERT INTO " << bracketed(m_table->name) << " (";
        for (std::size_t i = 0; i < m_table->columns.size(); ++i)
            m_out << (i == 0 ? "" : ", ") << bracketed(m_table->columns[i].name);
        m_out << ") VALUES\n";
    }

    ScriptFile& m_out;
    const SampleTable* m_table = nullptr;
    std::size_t m_rows = 0;
};

void writeTables(ScriptFile& out) {
    for (const SampleTable& table : sampleTables()) {
        out << "CREATE TABLE " << bracketed(table.name) << " (";
        const char* separator = "\n    ";
        for (const SampleColumn& column : table.columns) {
            const bool isKey = table.key != nullptr && std::strcmp(table.key, column.name) == 0;
            out << separator << bracketed(column.name) << " " << declaredType(column)
                << (isKey ? " NOT NULL PRIMARY KEY" : " NULL");
            separator = ",\n    ";
        }
        out << "\n);\nGO\n";
    }
}

/// The unique indexes are there already, behind the keys.
void writeIndexes(ScriptFile& out) {
    for (const SampleIndex& index : sampleIndexes())
        if (!index.isUnique)
            out << "CREATE INDEX " << index.name << " ON " << bracketed(index.table) << " (" << bracketed(index.column)
                << ");\nGO\n";
}

}  // namespace

void writeSampleScript(const QString& path, const SampleOptions& options) {
    ScriptFile out(path);
    out << "\xEF\xBB\xBFSET NOCOUNT ON;\nGO\n";
    writeTables(out);
    ScriptSink sink(out);
    writeAllRows(options, sink);
    writeIndexes(out);
    out.commit();
}

}  // namespace velcoran::host
