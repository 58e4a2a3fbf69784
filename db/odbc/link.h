#pragma once

#include "connection_text.h"
#include "diagnostics.h"
#include "handles.h"
#include "worker.h"

#include <QString>

#include <chrono>
#include <memory>
#include <mutex>
#include <vector>

namespace velcoran::odbc {

class Cursor;

/// What a driver can do, asked once.
struct DriverTraits {
    bool isLoose = false;           ///< values are not held to their column's type and length
    bool canReread = false;         ///< SQLGetData works on bound columns, in any order
    bool canRereadInBlock = false;  ///< also on any row of a block
};

/// The driver's side of a connection: the handles, and the statement that is open. All functions are for the worker's
/// steps alone, except where they say otherwise.
class Link {
public:
    explicit Link(DiagnosticSink sink);
    ~Link();
    Link(const Link&) = delete;
    Link& operator=(const Link&) = delete;

    /// @throws Error kProviderFailure, kAuthenticationFailed
    void connect(const QString& text, std::chrono::milliseconds wait);
    /// Frees everything. Never throws, does nothing the second time.
    void disconnect() noexcept;

    [[nodiscard]] const DriverTraits& traits() const { return m_traits; }
    [[nodiscard]] StatementHandle allocateStatement();

    /// Makes a driver call on a statement, so that a cancel can end it. @return the driver's result, unchecked
    template <class Call>
    SQLRETURN call(const CancelToken& token, const StatementHandle& statement, Call call) {
        return m_gate->pass(token, statement.get(), call);
    }
    /// Looks at a result. SQL_NO_DATA passes, warnings are told.
    /// @throws Cancelled when the token wishes it or the driver says so; Error. A connection is noted as lost when the
    ///         driver calls it dead; one that does not know is taken by its word
    SQLRETURN check(SQLRETURN result, const CancelToken& token, const StatementHandle& statement);

    /// For the end of rows: a driver may take the end of the connection for it.
    /// @throws Error kProviderFailure when the driver calls the connection dead
    void requireAlive();

    /// Makes a cursor the open one; the one that was open reads its rows into memory first.
    void open(Cursor& cursor, const SharedToken& token);
    void noteClosed(const Cursor& cursor);
    void enlist(Cursor& cursor) { m_cursors.push_back(&cursor); }
    void strikeOff(const Cursor& cursor);

    /// Any thread.
    [[nodiscard]] const std::shared_ptr<CancelGate>& gate() const { return m_gate; }
    [[nodiscard]] bool isLost() const { return m_isLost.load(); }
    void noteLost() { m_isLost.store(true); }
    /// The token of the open statement, also between its calls; may be null.
    [[nodiscard]] SharedToken openToken() const;

private:
    SQLRETURN tell(SQLRETURN result, SQLSMALLINT handleType, SQLHANDLE handle) const;
    QList<DiagnosticRecord> tellAll(SQLSMALLINT handleType, SQLHANDLE handle) const;
    void wish(SQLINTEGER attribute, std::uintptr_t value);
    void readTraits();
    enum class Life : std::uint8_t { Alive, Dead, Unknown };
    [[nodiscard]] Life life() const;
    [[nodiscard]] base::Error failureOf(const QList<DiagnosticRecord>& records);
    void setOpenToken(const SharedToken& token);

    std::shared_ptr<CancelGate> m_gate;
    EnvironmentHandle m_environment;
    ConnectionHandle m_connection;
    bool m_isConnected = false;
    Secrets m_secrets;
    DiagnosticSink m_sink;
    DriverTraits m_traits;
    Cursor* m_openCursor = nullptr;
    std::vector<Cursor*> m_cursors;
    std::atomic<bool> m_isLost{false};
    mutable std::mutex m_tokenMutex;
    std::weak_ptr<CancelToken> m_openToken;
};

}  // namespace velcoran::odbc
