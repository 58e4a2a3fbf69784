#pragma once

#include "com/object.h"

#include <velcoran/connection.h>

#include <QString>

#include <cstdint>
#include <utility>

namespace velcoran::db {

/// Hands a result on. A failure's number and description become the thread's error information, so that the outer
/// object answers for the inner one.
com::HResult handOn(com::HResult result, com::IUnknown* inner);

/// How a text reaches a connection.
enum class Via : std::uint8_t { execute, recordset, command };

/// Bases of objects that stand in front of a connection, a prepared statement or rows: every call is handed on, with
/// its failure, until a function is overridden.
class ForwardingRows : public com::Object<IRows> {
public:
    explicit ForwardingRows(com::Ref<IRows> inner) : m_inner(std::move(inner)) {}

    com::HResult Columns(const ColumnDescription** columns, std::uint32_t* count) override {
        return handOn(m_inner->Columns(columns, count), m_inner.get());
    }
    com::HResult Fetch(std::uint32_t maxRows, const RowBlock** block) override {
        return handOn(m_inner->Fetch(maxRows, block), m_inner.get());
    }
    com::HResult Cancel() override { return m_inner->Cancel(); }

private:
    com::Ref<IRows> m_inner;
};

class ForwardingStatement : public com::Object<IStatement> {
public:
    explicit ForwardingStatement(com::Ref<IStatement> inner) : m_inner(std::move(inner)) {}

    com::HResult Columns(const ColumnDescription** columns, std::uint32_t* count) override {
        return handOn(m_inner->Columns(columns, count), m_inner.get());
    }
    com::HResult Run() override { return handOn(m_inner->Run(), m_inner.get()); }
    com::HResult Fetch(std::uint32_t maxRows, const RowBlock** block) override {
        return handOn(m_inner->Fetch(maxRows, block), m_inner.get());
    }
    com::HResult Cancel() override { return m_inner->Cancel(); }

protected:
    [[nodiscard]] bool answersTo(const com::Guid& id) const override { return id == IRows::kId; }

private:
    com::Ref<IStatement> m_inner;
};

class ForwardingConnection : public com::Object<IConnection> {
public:
    explicit ForwardingConnection(com::Ref<IConnection> inner)
        : m_inner(std::move(inner)), m_isFreeThreaded(m_inner.as<IFreeThreadedConnection>()) {}

    std::int32_t State() override { return m_inner->State(); }
    com::HResult Execute(com::Bstr text, IRows** rows) override;
    com::HResult OpenRowset(com::Bstr text, std::int32_t cursorLocation, std::int32_t cursorType, std::int32_t lockType,
                            IRows** rows) override;
    com::HResult Prepare(com::Bstr text, IStatement** statement) override;
    com::HResult Cancel() override { return m_inner->Cancel(); }

protected:
    /// Called before a text reaches the inner connection. @throws Error to keep it away
    virtual void admit(const QString& text, Via via);
    /// What the caller gets for rows and statements of the inner connection.
    virtual com::Ref<IRows> wrap(com::Ref<IRows> rows, const QString& text);
    virtual com::Ref<IStatement> wrap(com::Ref<IStatement> statement, const QString& text);
    [[nodiscard]] bool answersTo(const com::Guid& id) const override {
        return m_isFreeThreaded && id == IFreeThreadedConnection::kId;
    }

private:
    template <class Result, class Call>
    com::HResult forward(com::Bstr text, Via via, Result** result, Call call);

    com::Ref<IConnection> m_inner;
    bool m_isFreeThreaded;
};

}  // namespace velcoran::db
