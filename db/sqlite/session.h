#pragma once

#include "base/error.h"
#include "db/provider/cancel_token.h"

#include <QString>

#include <atomic>
#include <memory>
#include <mutex>
#include <vector>

struct sqlite3;
struct sqlite3_stmt;

namespace velcoran::sqlite {

struct StatementCloser {
    void operator()(sqlite3_stmt* statement) const;
};
using StatementHandle = std::unique_ptr<sqlite3_stmt, StatementCloser>;

/// The open database behind a connection and its statements; lives as long as the longest of them. One call at a time
/// uses it (Turn), cancels and state may come from any thread.
class Session {
public:
    /// Opens the file read-only and sets it up. @throws Error kProviderFailure
    explicit Session(const QString& path);
    ~Session();
    Session(const Session&) = delete;
    Session& operator=(const Session&) = delete;

    /// The use of the database for the length of one call; the statement of the token can be cancelled meanwhile.
    class Turn {
    public:
        /// Waits for its turn. @throws Error kInvalidConnection when closed; Cancelled
        Turn(Session& session, provider::CancelToken& token);
        ~Turn();
        Turn(const Turn&) = delete;
        Turn& operator=(const Turn&) = delete;

    private:
        Session& m_session;
        std::unique_lock<std::mutex> m_lock;
    };

    /// While it lives, a cancel of the connection reaches the token.
    class Activity {
    public:
        Activity(Session& session, provider::CancelToken& token);
        ~Activity();
        Activity(const Activity&) = delete;
        Activity& operator=(const Activity&) = delete;

    private:
        Session& m_session;
        provider::CancelToken& m_token;
    };

    /// Compiles one statement of the component's dialect. Needs a Turn.
    /// @throws Error of the database; kStatementError for text after the statement and for none
    [[nodiscard]] StatementHandle prepare(const QString& text);
    /// Throws what the last call on the database left behind: Error or Cancelled. Needs a Turn.
    [[noreturn]] void throwError(int result, provider::CancelToken& token);

    void close() { m_isClosed = true; }
    [[nodiscard]] bool isClosed() const { return m_isClosed; }
    void cancelAll();

    /// Ends a statement's run, frees a statement; each in its turn, also when closed.
    void reset(sqlite3_stmt* statement);
    void finalize(StatementHandle statement);

private:
    void setUp();
    void requireDone(int result) const;

    QString m_path;
    sqlite3* m_database = nullptr;
    std::mutex m_turn;
    provider::CancelToken* m_current = nullptr;  ///< of the call whose turn it is
    std::atomic<bool> m_isClosed{false};
    std::mutex m_activityMutex;
    std::vector<provider::CancelToken*> m_active;

    [[nodiscard]] bool isStopWished() const;
    static int onProgress(void* session);
    static int onBusy(void* session, int looks);
};

}  // namespace velcoran::sqlite
