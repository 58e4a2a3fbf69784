#pragma once

#include "com/object.h"

#include <velcoran/connection.h>

#include <QString>

#include <vector>

namespace velcoran::provider {

/// A provider's statement as its callers see it: prepared or running, it is also the rows of Execute and OpenRowset.
/// What fails behind it becomes a code and the thread's error information.
class StatementShell : public com::Object<IStatement> {
public:
    com::HResult Columns(const ColumnDescription** columns, std::uint32_t* count) final;
    com::HResult Run() final;
    com::HResult Fetch(std::uint32_t maxRows, const RowBlock** block) final;
    com::HResult Cancel() final;

protected:
    /// Describes the next column; the descriptions stay as they are once somebody has asked for them.
    void describe(const QString& name, ColumnType type, int scale);
    [[nodiscard]] bool isDescribed() const { return !m_descriptions.empty(); }

    /// Starts the statement, again from its first row when it ran before. @throws Error; Cancelled
    virtual void start() = 0;
    /// Reads on. @return a block of at most maxRows rows, of none at the end @throws Error; Cancelled
    virtual const RowBlock& read(std::uint32_t maxRows) = 0;
    /// Makes the running or next call fail soon. Any thread.
    virtual void stop() noexcept = 0;

    [[nodiscard]] bool answersTo(const com::Guid& id) const final { return id == IRows::kId; }

private:
    std::vector<QString> m_names;
    std::vector<ColumnDescription> m_descriptions;
};

}  // namespace velcoran::provider
