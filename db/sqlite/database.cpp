#include "database.h"

#include "db/provider/connection_shell.h"
#include "statement.h"

namespace velcoran::sqlite {

namespace {

class Connection final : public provider::ConnectionShell {
public:
    explicit Connection(const QString& path) : m_session(std::make_shared<Session>(path)) {}

    void close() { m_session->close(); }

protected:
    [[nodiscard]] bool isOpen() const override { return !m_session->isClosed(); }
    [[nodiscard]] com::Ref<IStatement> prepare(const QString& text) override {
        return com::Ref<IStatement>(com::makeObject<Statement>(m_session, text).get());
    }
    [[nodiscard]] com::Ref<IStatement> run(const QString& text) override {
        const auto statement = com::makeObject<Statement>(m_session, text);
        statement->start();
        return com::Ref<IStatement>(statement.get());
    }
    void stopAll() noexcept override { m_session->cancelAll(); }

private:
    std::shared_ptr<Session> m_session;
};

}  // namespace

com::Ref<IConnection> openDatabase(const QString& path) {
    return com::Ref<IConnection>(com::makeObject<Connection>(path).get());
}

void closeDatabase(const com::Ref<IConnection>& connection) { provider::ownConnection<Connection>(connection).close(); }

}  // namespace velcoran::sqlite
