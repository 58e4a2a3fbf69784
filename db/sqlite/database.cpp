#include "database.h"

#include "db/provider_errors.h"
#include "rows.h"

namespace velcoran::sqlite {

namespace {

class Connection final : public com::Object<IConnection> {
public:
    explicit Connection(const QString& path) : m_session(std::make_shared<Session>(path)) {}

    std::int32_t State() override { return m_session->isClosed() ? kStateClosed : kStateOpen; }

    com::HResult Execute(com::Bstr text, IRows** rows) override {
        return com::guarded([&] {
            if (rows == nullptr) return com::kNullPointer;
            *rows = nullptr;
            const auto statement = com::makeObject<Statement>(m_session, com::toQString(text));
            statement->start();
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
            *statement = com::makeObject<Statement>(m_session, com::toQString(text)).release();
            return com::kOk;
        });
    }

    com::HResult Cancel() override {
        return com::guarded([this] { m_session->cancelAll(); });
    }

    void close() { m_session->close(); }

protected:
    [[nodiscard]] bool answersTo(const com::Guid& id) const override { return id == IFreeThreadedConnection::kId; }

private:
    std::shared_ptr<Session> m_session;
};

}  // namespace

com::Ref<IConnection> openDatabase(const QString& path) {
    return com::Ref<IConnection>(com::makeObject<Connection>(path).get());
}

void closeDatabase(const com::Ref<IConnection>& connection) {
    auto* own = dynamic_cast<Connection*>(connection.get());
    if (own == nullptr) throw db::foreignConnectionError();
    own->close();
}

}  // namespace velcoran::sqlite
