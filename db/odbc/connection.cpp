#include "connection.h"

#include "db/provider_errors.h"
#include "rows.h"
#include "session.h"

namespace velcoran::odbc {

namespace {

class Connection final : public com::Object<IConnection> {
public:
    Connection(const QString& text, const Waits& waits, DiagnosticSink sink)
        : m_session(std::make_shared<Session>(text, waits, std::move(sink))) {}

    std::int32_t State() override { return m_session->isOpen() ? kStateOpen : kStateClosed; }

    com::HResult Execute(com::Bstr text, IRows** rows) override {
        return com::guarded([&] {
            if (rows == nullptr) return com::kNullPointer;
            *rows = nullptr;
            const auto statement = com::makeObject<Statement>(m_session);
            statement->execute(com::toQString(text));
            *rows = com::Ref<IRows>(statement.get()).release();
            return com::kOk;
        });
    }

    com::HResult OpenRowset(com::Bstr text, std::int32_t cursorLocation, std::int32_t, std::int32_t,
                            IRows** rows) override {
        if (cursorLocation != kCursorClient) return com::guarded([] { throw db::cursorLocationError(); });
        return Execute(text, rows);
    }

    com::HResult Prepare(com::Bstr text, IStatement** statement) override {
        return com::guarded([&] {
            if (statement == nullptr) return com::kNullPointer;
            *statement = nullptr;
            auto prepared = com::makeObject<Statement>(m_session);
            prepared->prepare(com::toQString(text));
            *statement = prepared.release();
            return com::kOk;
        });
    }

    com::HResult Cancel() override {
        m_session->cancelAll();
        return com::kOk;
    }

    void close() { m_session->close(); }

protected:
    [[nodiscard]] bool answersTo(const com::Guid& id) const override { return id == IFreeThreadedConnection::kId; }

private:
    std::shared_ptr<Session> m_session;
};

}  // namespace

com::Ref<IConnection> openConnection(const QString& connectionText, const Waits& waits, DiagnosticSink sink) {
    return com::Ref<IConnection>(com::makeObject<Connection>(connectionText, waits, std::move(sink)).get());
}

void closeConnection(const com::Ref<IConnection>& connection) {
    auto* own = dynamic_cast<Connection*>(connection.get());
    if (own == nullptr) throw db::foreignConnectionError();
    own->close();
}

}  // namespace velcoran::odbc
