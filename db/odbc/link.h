#pragma once

#include "connection_text.h"
#include "diagnostics.h"
#include "handles.h"
#include "worker.h"

#include <QString>

#include <atomic>
#include <chrono>
#include <memory>
#include <mutex>
#include <vector>

namespace velcoran::odbc {

class DriverStatement;

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
    /// A handle for a statement, which is told to let go of it (release) before the connection goes.
    [[nodiscard]] StatementHandle allocateStatement(DriverStatement& owner);

    /// Makes a driver call on a statement, so that a cancel can end it. @return the driver's result, unchecked
    /// @throws Cancelled when the wish is there before the call
    template <class Call>
    SQLRETURN call(const CancelToken& token, const StatementHandle& statement, Call call) {
        enter(token, statement);
        const SQLRETURN result = call();
        leave();
        return result;
    }
    /// Any thread: cancels the driver call that is under way, when its token wishes it, and no later one: the call does
    /// not end while a cancel of it goes on. May block as long as the driver does.
    void cancelCall();
    /// Looks at a result. SQL_NO_DATA passes, warnings are told.
    /// @throws Cancelled when the token wishes it or the driver says so; Error. A connection is noted as lost when the
    ///         driver calls it dead; one that does not know is taken by its word
    SQLRETURN check(SQLRETURN result, const CancelToken& token, const StatementHandle& statement);

    /// For the end of rows: a driver may take the end of the connection for it.
    /// @throws Error kProviderFailure when the driver calls the connection dead
    void requireAlive();

    /// Makes a statement the open one; the one that was open reads its rows into memory first.
    void open(DriverStatement& statement, const SharedToken& token);
    void noteClosed(const DriverStatement& statement);
    void strikeOff(const DriverStatement& statement);

    /// Any thread.
    [[nodiscard]] bool isLost() const { return m_isLost.load(); }
    void noteLost() { m_isLost.store(true); }
    /// The token of the open statement, also between its calls; may be null.
    [[nodiscard]] SharedToken openToken() const;

private:
    void enter(const CancelToken& token, const StatementHandle& statement);
    void leave();
    SQLRETURN tell(SQLRETURN result, SQLSMALLINT handleType, SQLHANDLE handle) const;
    QList<DiagnosticRecord> tellAll(SQLSMALLINT handleType, SQLHANDLE handle) const;
    void wish(SQLINTEGER attribute, std::uintptr_t value);
    void readTraits();
    enum class Life : std::uint8_t { Alive, Dead, Unknown };
    [[nodiscard]] Life life() const;
    [[nodiscard]] base::Error failureOf(const QList<DiagnosticRecord>& records);
    void setOpenToken(const SharedToken& token);

    EnvironmentHandle m_environment;
    ConnectionHandle m_connection;
    bool m_isConnected = false;
    Secrets m_secrets;
    DiagnosticSink m_sink;
    DriverTraits m_traits;
    DriverStatement* m_openStatement = nullptr;
    std::vector<DriverStatement*> m_statements;
    std::mutex m_callMutex;
    SQLHANDLE m_calledStatement = nullptr;  ///< of the call under way, with its token
    const CancelToken* m_calledToken = nullptr;
    std::atomic<bool> m_isLost{false};
    mutable std::mutex m_tokenMutex;
    std::weak_ptr<CancelToken> m_openToken;
};

}  // namespace velcoran::odbc
