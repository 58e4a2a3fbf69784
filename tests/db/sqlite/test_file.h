#pragma once

#include "db/connection.h"

#include <QString>
#include <QTemporaryDir>

struct sqlite3;

namespace velcoran::sqlite {

/// A database file of a test, and the connection that the provider opens on it.
class TestFile {
public:
    /// @param script  statements that make the tables, run by the database itself
    explicit TestFile(const char* script = "");

    [[nodiscard]] QString path() const { return m_folder.filePath(QStringLiteral("test.db")); }
    [[nodiscard]] const db::Connection& connection() const { return m_connection; }

    /// Another program that writes to the file.
    class Writer {
    public:
        explicit Writer(const TestFile& file);
        ~Writer();
        Writer(const Writer&) = delete;
        Writer& operator=(const Writer&) = delete;
        /// Runs statements, which must work.
        void run(const char* script) const;
        /// @return the database's code
        [[nodiscard]] int tryRun(const char* script) const;

    private:
        sqlite3* m_database = nullptr;
    };
    /// Waits until a statement holds the file's lock for readers, that is until it runs.
    void awaitReader() const;

    /// The first value of a statement's first row as text; "<null>" for null.
    [[nodiscard]] QString value(const QString& statement) const;
    /// Number of the error that a statement ends with, run to its end; 0 for none.
    [[nodiscard]] std::int32_t errorNumber(const QString& statement) const;

private:
    QTemporaryDir m_folder;
    db::Connection m_connection;
};

}  // namespace velcoran::sqlite
