#include "odbc_connection.h"

#include "statement.h"

namespace velcoran::odbc {

using namespace Qt::StringLiterals;

namespace {

base::Error timeoutError(std::chrono::milliseconds wait) {
    const auto seconds = std::chrono::duration<double>(wait).count();
    return {base::kProviderFailure, u"Serverul nu a răspuns în timpul de așteptare (%1 s)."_s.arg(seconds)};
}

}  // namespace

OdbcConnection::OdbcConnection(const QString& connectionText, const Waits& waits, DiagnosticSink sink)
    : m_link(std::make_shared<Link>(std::move(sink))), m_worker([link = m_link] { link->cancelCall(); }, waits.cancel) {
    const auto connect = [link = m_link, connectionText, wait = waits.login] { link->connect(connectionText, wait); };
    try {
        m_worker.run(std::make_shared<CancelToken>(), connect, std::chrono::steady_clock::now() + waits.login);
    } catch (const Worker::Abandoned&) {
        m_worker.post([link = m_link] { link->disconnect(); });
        throw timeoutError(waits.login);
    } catch (const base::Cancelled&) {
        throw timeoutError(waits.login);
    }
}

OdbcConnection::~OdbcConnection() { close(); }

void OdbcConnection::requireOpen() const {
    if (m_isClosed) throw provider::closedConnectionError();
    if (m_link->isLost()) throw lostError();
}

void OdbcConnection::perform(const SharedToken& token, Worker::Step step) {
    requireOpen();
    try {
        m_worker.run(token, std::move(step));
    } catch (const base::Cancelled&) {
        token->take();
        if (m_isClosed) throw provider::closedConnectionError();
        throw;
    } catch (const Worker::Abandoned&) {
        m_link->noteLost();
        const bool wasWished = token->isRequested();
        token->take();
        if (m_isClosed) throw provider::closedConnectionError();
        if (wasWished) throw base::Cancelled();
        throw lostError();
    }
}

com::Ref<IStatement> OdbcConnection::prepare(const QString& text) {
    const auto statement = com::makeObject<Statement>(com::Ref<OdbcConnection>(this));
    statement->prepare(text);
    return com::Ref<IStatement>(statement.get());
}

com::Ref<IStatement> OdbcConnection::run(const QString& text) {
    const auto statement = com::makeObject<Statement>(com::Ref<OdbcConnection>(this));
    statement->execute(text);
    return com::Ref<IStatement>(statement.get());
}

void OdbcConnection::stopAll() noexcept {
    if (const SharedToken token = m_link->openToken()) m_worker.cancel(*token);
    m_worker.cancelAll();
}

void OdbcConnection::close() noexcept {
    m_isClosed = true;
    m_worker.stop([link = m_link] { link->disconnect(); });
}

}  // namespace velcoran::odbc
