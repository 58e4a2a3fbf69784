#include "session.h"

#include "db/provider_errors.h"

namespace velcoran::odbc {

using namespace Qt::StringLiterals;

namespace {

base::Error timeoutError(std::chrono::milliseconds wait) {
    const auto seconds = std::chrono::duration<double>(wait).count();
    return {base::kProviderFailure, u"Serverul nu a răspuns în timpul de așteptare (%1 s)."_s.arg(seconds)};
}

}  // namespace

Session::Session(const QString& connectionText, const Waits& waits, DiagnosticSink sink)
    : m_link(std::make_shared<Link>(std::move(sink))), m_worker(m_link->gate(), waits.cancel) {
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

Session::~Session() { close(); }

void Session::requireOpen() const {
    if (m_isClosed) throw db::closedConnectionError();
    if (m_link->isLost()) throw lostError();
}

void Session::run(const SharedToken& token, Worker::Step step) {
    requireOpen();
    try {
        m_worker.run(token, std::move(step));
    } catch (const base::Cancelled&) {
        token->clear();
        if (m_isClosed) throw db::closedConnectionError();
        throw;
    } catch (const Worker::Abandoned&) {
        m_link->noteLost();
        const bool wasWished = token->isRequested();
        token->clear();
        if (m_isClosed) throw db::closedConnectionError();
        if (wasWished) throw base::Cancelled();
        throw lostError();
    }
}

void Session::cancelAll() noexcept {
    if (const SharedToken token = m_link->openToken()) m_worker.cancel(*token);
    m_worker.cancelAll();
}

void Session::close() noexcept {
    m_isClosed = true;
    m_worker.stop([link = m_link] { link->disconnect(); });
}

}  // namespace velcoran::odbc
