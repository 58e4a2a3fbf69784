#pragma once

#include "base/error.h"

#include <QString>
#include <QStringList>

#include <velcoran/connection.h>

#include <functional>
#include <memory>
#include <optional>

namespace velcoran::db {

/// The error that a failed call on an object left behind: number and description from its com::IErrorSource, or the
/// code itself where it has none.
[[nodiscard]] base::Error errorOf(com::HResult result, com::IUnknown* object);

/// Throws what a failed call left behind: Cancelled for a stop (kStopped), else the Error of errorOf.
[[noreturn]] void throwError(com::HResult result, com::IUnknown* object);

/// A column as a statement describes it.
struct Column {
    QString name;
    ColumnType type = ColumnType::Text;
    int scale = 0;
};

/// Forward-only rows of a running statement. Copies share the rows.
class Rows {
public:
    Rows() = default;
    explicit Rows(com::Ref<IRows> rows);

    /// As the provider described them when it was asked first, here or at the statement.
    /// @throws Error of the provider; kTypeMismatch for a description that points nowhere
    [[nodiscard]] const QList<Column>& columns() const;
    /// Reads on. @return null at the end; otherwise at least one row, valid until the next call
    /// @throws Error of the provider; kTypeMismatch for a block that breaks the contract (block_check.h)
    [[nodiscard]] const RowBlock* fetch(std::uint32_t maxRows = kMaxBlockRows) const;
    /// Makes the running or next fetch fail soon. From any thread.
    void cancel() const noexcept;

    static constexpr std::uint32_t kMaxBlockRows = 4096;

private:
    struct Source {
        com::Ref<IRows> rows;
        std::optional<QList<Column>> columns;
    };
    std::shared_ptr<Source> m_source;
};

/// A prepared statement; columns() is known before run().
class Statement {
public:
    Statement() = default;
    explicit Statement(com::Ref<IStatement> statement);

    [[nodiscard]] bool isNull() const { return !m_statement; }
    /// @throws Error of the provider; kTypeMismatch for a description that points nowhere
    [[nodiscard]] const QList<Column>& columns() const;
    /// Starts the statement. @return its rows @throws Error of the provider
    [[nodiscard]] Rows run() const;
    void cancel() const noexcept;

private:
    com::Ref<IStatement> m_statement;
    Rows m_rows;
};

/// The host's connection as the component uses it: failures become base::Error, the interface is shared by reference
/// and never opened, tested or closed. A null connection fails every call with kObjectNotSet, a closed one with what
/// its provider says (kInvalidConnection).
class Connection {
public:
    Connection() = default;
    explicit Connection(com::Ref<IConnection> connection) : m_connection(std::move(connection)) {}

    [[nodiscard]] bool isNull() const { return !m_connection; }
    [[nodiscard]] const com::Ref<IConnection>& interface() const { return m_connection; }

    /// Runs a statement and returns its forward rows. This and the two below fail with kInvalidProcedureCall while the
    /// keeper holds a run on the connection.
    [[nodiscard]] Rows execute(const QString& text) const;
    /// Runs a statement for a client-side row set (keyset cursor, optimistic lock) and returns its forward rows.
    [[nodiscard]] Rows openRowset(const QString& text) const;
    [[nodiscard]] Statement prepare(const QString& text) const;
    /// @throws Error kObjectNotSet without a connection, kInvalidConnection for a closed one, kInvalidProcedureCall for
    ///     one with a run that the keeper holds
    void requireOpen() const;
    /// Cancels what runs on the connection. From any thread.
    void cancel() const noexcept;
    /// True when execute and openRowset may be called from another thread than the window's.
    [[nodiscard]] bool isFreeThreaded() const;

private:
    com::Ref<IConnection> m_connection;
};

/// How a window's thread spends the time in which a statement runs: the window's own (form/) runs the call on a worker,
/// waits a third of a second and then keeps the window painted and cancellable.
class ICallRunner {
public:
    virtual ~ICallRunner() = default;
    /// Runs a call to its end and lets its exception through.
    /// @param connection  what the call uses; cancelled when the user stops or closes the window
    /// @param call        owns what it touches: a call that does not come back after a cancel goes on by itself
    /// @throws Cancelled when the user stopped it or closed the window
    virtual void run(const Connection& connection, std::function<void()> call) = 0;
};

}  // namespace velcoran::db
