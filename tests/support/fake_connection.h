#pragma once

#include "base/error.h"
#include "base/short_decimal.h"
#include "com/object.h"

#include <QString>
#include <QStringList>

#include <velcoran/connection.h>

#include <chrono>
#include <condition_variable>
#include <functional>
#include <mutex>
#include <optional>
#include <set>
#include <vector>

namespace velcoran::tests {

/// A column of a scripted answer.
struct FakeColumn {
    QString name;
    ColumnType type = ColumnType::Text;
    int scale = 0;
};

/// A cell written as text, whatever the column's type; nothing for null. Decimals "12.5" are brought to the column's
/// scale exactly, date-times are "yyyy-mm-dd" or "yyyy-mm-dd hh:mm:ss".
using FakeCell = std::optional<QString>;

/// What the connection answers to a statement.
struct FakeAnswer {
    QList<FakeColumn> columns = {};
    std::vector<std::vector<FakeCell>> rows = {};
    /// The rows are given this often, block after block: a million rows from a few.
    std::uint32_t repeat = 1;
    /// Rows a block at most.
    std::uint32_t blockRows = 1000;

    /// The call fails: Execute, OpenRowset or Prepare.
    std::optional<base::Error> openError = std::nullopt;
    /// Run of a prepared statement fails.
    std::optional<base::Error> runError = std::nullopt;
    /// The fetch of this block (0 for the first) fails.
    std::optional<base::Error> fetchError = std::nullopt;
    std::uint32_t fetchErrorAt = 0;

    /// How long Execute, OpenRowset and Prepare take; Run; every Fetch. A cancel ends the time and the call fails with
    /// the number kStopped.
    std::chrono::milliseconds openDelay{0};
    std::chrono::milliseconds runDelay{0};
    std::chrono::milliseconds fetchDelay{0};
    /// How many cancels it takes: some drivers miss those that come at a wrong moment.
    int cancelsNeeded = 1;
    /// No cancel ends these times: a dead server. answerAtLast() does.
    bool isDeaf = false;
    /// Done inside Execute, OpenRowset and Prepare, on the thread that calls them: a host that dispatches events there.
    std::function<void()> meanwhile = {};
};

/// The columns of a report's statement, amounts with two places; no rows.
[[nodiscard]] FakeAnswer reportColumns();

/// A statement that reached the connection.
struct FakeCall {
    QString via;  ///< "execute", "recordset", "prepare" or "run"
    QString text;

    friend bool operator==(const FakeCall&, const FakeCall&) = default;
};

/// A connection that answers from a script. Thread-safe.
///
///     auto connection = FakeConnection::create();
///     connection->answer(u"FROM An"_s, {.columns = {{u"An"_s, ColumnType::Int64}}, .rows = {{u"2026"_s}}});
///     db::Connection used(connection->asConnection());
///
/// The answer given last whose key is contained in a statement's text counts; the empty key answers everything. A
/// statement without an answer fails with kStatementError.
class FakeConnection final : public com::Object<IConnection> {
public:
    [[nodiscard]] static com::Ref<FakeConnection> create() { return com::makeObject<FakeConnection>(); }
    [[nodiscard]] com::Ref<IConnection> asConnection() { return com::Ref<IConnection>(this); }

    void answer(const QString& key, FakeAnswer answer);
    /// Every later call fails with kInvalidConnection and State is 0, as on a closed connection.
    void close();
    /// Whether calls may come from other threads than the window's; true at first.
    void setFreeThreaded(bool isFreeThreaded);

    [[nodiscard]] QList<FakeCall> calls() const;
    void clearCalls();
    /// Cancels that reached the connection or one of its statements.
    [[nodiscard]] int cancelCount() const;
    /// Ends every wait that no cancel ends.
    void answerAtLast();
    /// True while a delay is being waited for.
    [[nodiscard]] bool isBusy() const;

    std::int32_t State() override;
    com::HResult Execute(com::Bstr text, IRows** rows) override;
    com::HResult OpenRowset(com::Bstr text, std::int32_t cursorLocation, std::int32_t cursorType, std::int32_t lockType,
                            IRows** rows) override;
    com::HResult Prepare(com::Bstr text, IStatement** statement) override;
    com::HResult Cancel() override;

    /// For the statements of this connection: notes a call, waits for a delay.
    void note(const QString& via, const QString& text);
    void pause(std::chrono::milliseconds time, const FakeAnswer& answer);
    void requireOpen() const;

protected:
    [[nodiscard]] bool answersTo(const com::Guid& id) const override;

private:
    [[nodiscard]] FakeAnswer begin(const QString& via, const QString& text);
    com::HResult openRows(const QString& via, com::Bstr text, IRows** rows);

    mutable std::mutex m_mutex;
    std::condition_variable m_cancelled;
    std::vector<std::pair<QString, FakeAnswer>> m_answers;
    QList<FakeCall> m_calls;
    int m_cancels = 0;
    int m_waiting = 0;
    int m_lateAnswers = 0;
    bool m_isClosed = false;
    bool m_isFreeThreaded = true;
};

}  // namespace velcoran::tests
