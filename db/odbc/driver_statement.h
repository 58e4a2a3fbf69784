#pragma once

#include "bound_columns.h"
#include "link.h"

#include <QString>

#include <deque>
#include <exception>
#include <functional>
#include <memory>
#include <vector>

namespace velcoran::odbc {

/// The driver's side of a statement. Its functions are for the worker's steps, one at a time; the columns and the
/// block that next() filled are read by the statement's owner between steps.
class DriverStatement {
public:
    explicit DriverStatement(std::shared_ptr<Link> link);
    /// Frees the handle; on the worker, unless the link is disconnected.
    ~DriverStatement();
    DriverStatement(const DriverStatement&) = delete;
    DriverStatement& operator=(const DriverStatement&) = delete;

    /// Runs a text at once. @throws Error; Cancelled
    void execute(const QString& text, const SharedToken& token);
    /// Prepares a text and describes its columns. @throws Error; Cancelled
    void prepare(const QString& text, const SharedToken& token);
    /// Runs what was prepared, again from its first row when it ran before. @throws Error; Cancelled
    void run(const SharedToken& token);
    /// Reads on into block(). @return false at the end @throws Error; Cancelled; the statement is closed then
    bool next(const CancelToken& token);
    /// Reads the rest of the rows into memory, because another statement needs the connection. A failure is kept for
    /// the next(). @param token  of the other statement
    void storeRows(const CancelToken& token) noexcept;
    /// Ends the run; the statement can run again. What is left of its rows is given up.
    void close() noexcept;
    /// Frees the handle.
    void release() noexcept;

    [[nodiscard]] const std::vector<ColumnPlan>& columns() const { return m_plans; }
    [[nodiscard]] provider::BlockBuilder& block() { return m_block; }

private:
    enum class State { Closed, Open, Stored, AtEnd };

    void start(const SharedToken& token, const std::function<SQLRETURN()>& call);
    void describe(const CancelToken& token);
    [[nodiscard]] DriverColumn describeColumn(SQLUSMALLINT number, const CancelToken& token);
    void skipEmptyResults(const CancelToken& token);
    bool fetch(provider::BlockBuilder& block, const CancelToken& token);
    bool takeStored();
    void finish(const CancelToken& token);
    void endRun() noexcept;
    [[nodiscard]] provider::BlockBuilder emptyBlock() const;

    std::shared_ptr<Link> m_link;
    StatementHandle m_statement;
    std::vector<ColumnPlan> m_plans;
    std::unique_ptr<BoundColumns> m_boundColumns;
    State m_state = State::Closed;
    provider::BlockBuilder m_block;
    std::deque<provider::BlockBuilder> m_stored;
    std::exception_ptr m_storedFailure;
};

}  // namespace velcoran::odbc
