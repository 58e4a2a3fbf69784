#include "base/error.h"
#include "base/short_decimal.h"
#include "sample_data.h"
#include "sample_file.h"
#include "sample_rows.h"

#include <sqlite3.h>

#include <memory>

namespace velcoran::host {

namespace {

/// Nobody else sees the file before it is whole: a failure throws it away, so nothing has to be safe against one.
constexpr const char* kSetUp =
    "PRAGMA journal_mode = OFF; PRAGMA synchronous = OFF; PRAGMA locking_mode = EXCLUSIVE;"
    "PRAGMA cache_size = -65536; PRAGMA temp_store = MEMORY; PRAGMA page_size = 4096;";

const char* declaredType(SampleType type) {
    switch (type) {
        case SampleType::Integer:
            return "INTEGER";
        case SampleType::Text:
            return "TEXT COLLATE NOCASE";
        case SampleType::Amount:
            return "NUMERIC";
        case SampleType::DateTime:
            return "TEXT";
    }
    return "";
}

/// Inserts the rows into a new database.
class DatabaseSink final : public ISampleSink {
public:
    explicit DatabaseSink(const SampleFile& file) : m_file(file) {
        if (sqlite3_open(file.temporaryPath().c_str(), &m_database) != SQLITE_OK) fail();
    }
    ~DatabaseSink() override {
        m_insert.reset();
        sqlite3_close(m_database);
    }
    DatabaseSink(const DatabaseSink&) = delete;
    DatabaseSink& operator=(const DatabaseSink&) = delete;

    void run(const std::string& statements) {
        check(sqlite3_exec(m_database, statements.c_str(), nullptr, nullptr, nullptr));
    }
    void createTables();
    void createIndexes();
    /// Closes the file. Everything is on its way to the disk then.
    void close() {
        m_insert.reset();
        check(sqlite3_close(m_database));
        m_database = nullptr;
    }

    void beginTable(const SampleTable& table) override;
    void addRow(std::span<const SampleValue> values) override;
    void endTable() override { m_insert.reset(); }

private:
    struct Finalizer {
        void operator()(sqlite3_stmt* statement) const { sqlite3_finalize(statement); }
    };

    void bind(int parameter, const SampleValue& value);
    void check(int result) {
        if (result != SQLITE_OK) fail();
    }
    [[noreturn]] void fail() {
        m_file.fail(QString::fromUtf8(m_database == nullptr ? "out of memory" : sqlite3_errmsg(m_database)));
    }

    const SampleFile& m_file;
    sqlite3* m_database = nullptr;
    std::unique_ptr<sqlite3_stmt, Finalizer> m_insert;
};

void DatabaseSink::createTables() {
    for (const SampleTable& table : sampleTables()) {
        std::string text = "CREATE TABLE " + quotedName(table.name) + " (";
        for (const SampleColumn& column : table.columns)
            text += quotedName(column.name) + ' ' + declaredType(column.type) + ", ";
        text.replace(text.size() - 2, 2, ")");
        run(text);
    }
}

void DatabaseSink::createIndexes() {
    for (const SampleIndex& index : sampleIndexes())
        run(std::string("CREATE ") + (index.isUnique ? "UNIQUE " : "") + "INDEX " + index.name + " ON " +
            quotedName(index.table) + " (" + quotedName(index.column) + ')');
}

void DatabaseSink::beginTable(const SampleTable& table) {
    std::string text = "INSERT INTO " + quotedName(table.name) + " VALUES (";
    for (std::size_t i = 0; i < table.columns.size(); ++i) text += i == 0 ? "?" : ", ?";
    text += ')';
    sqlite3_stmt* statement = nullptr;
    check(sqlite3_prepare_v2(m_database, text.c_str(), -1, &statement, nullptr));
    m_insert.reset(statement);
}

void DatabaseSink::bind(int parameter, const SampleValue& value) {
    sqlite3_stmt* const insert = m_insert.get();
    if (const auto* text = std::get_if<std::string>(&value)) {
        check(sqlite3_bind_text(insert, parameter, text->data(), static_cast<int>(text->size()), SQLITE_STATIC));
    } else if (const auto* number = std::get_if<std::int64_t>(&value)) {
        check(sqlite3_bind_int64(insert, parameter, *number));
    } else if (const auto* amount = std::get_if<SampleAmount>(&value)) {
        check(sqlite3_bind_double(insert, parameter, base::ShortDecimal{amount->mantissa, amount->scale}.toReal()));
    } else {
        check(sqlite3_bind_null(insert, parameter));
    }
}

void DatabaseSink::addRow(std::span<const SampleValue> values) {
    int parameter = 0;
    for (const SampleValue& value : values) bind(++parameter, value);
    if (sqlite3_step(m_insert.get()) != SQLITE_DONE) fail();
    check(sqlite3_reset(m_insert.get()));
}

}  // namespace

void writeSampleDatabase(const QString& path, const SampleOptions& options) {
    SampleFile file(path);
    DatabaseSink sink(file);
    sink.run(kSetUp);
    sink.createTables();
    sink.run("BEGIN");
    writeAllRows(options, sink);
    sink.run("COMMIT");
    sink.createIndexes();
    sink.run("ANALYZE");
    sink.close();
    file.commit();
}

}  // namespace velcoran::host
