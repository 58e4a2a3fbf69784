#include "host/trace.h"

#include "db/connection.h"
#include "db/forwarding.h"
#include "system/file_name.h"

#include <QDateTime>
#include <QElapsedTimer>

#include <cerrno>
#include <cstdio>
#include <mutex>
#include <utility>

#include <fcntl.h>
#include <unistd.h>

using namespace Qt::StringLiterals;

namespace velcoran::host {

struct Trace::File {
    QString path;
    int descriptor = -1;
    std::mutex mutex;
    bool hasFailed = false;
};

Trace::Trace(const QString& path) : m_file(std::make_unique<File>()) {
    m_file->path = path;
    const QByteArray name = system::nameBytes(path);
    m_file->descriptor = ::open(name.constData(), O_WRONLY | O_APPEND | O_CREAT | O_CLOEXEC | O_NOCTTY, 0600);
    if (m_file->descriptor < 0) throw base::Error(base::kPathAccess, path + u": "_s + qt_error_string(errno));
}

Trace::~Trace() { ::close(m_file->descriptor); }

void Trace::write(const QString& line) noexcept {
    const std::scoped_lock lock(m_file->mutex);
    const QByteArray bytes =
        QDateTime::currentDateTime().toString(Qt::ISODateWithMs).toUtf8() + ' ' + line.simplified().toUtf8() + '\n';
    if (::write(m_file->descriptor, bytes.constData(), static_cast<std::size_t>(bytes.size())) == bytes.size()) return;
    if (std::exchange(m_file->hasFailed, true)) return;
    std::fprintf(stderr, "velcoran-host: the trace %s takes no more\n", m_file->path.toUtf8().constData());
}

namespace {

/// Times a call and tells a failure.
class Timed {
public:
    explicit Timed(Trace& trace) : m_trace(trace) { m_clock.start(); }

    com::HResult tell(const QString& what, com::HResult result, com::IUnknown* object) {
        QString words = u"%1: %2 ms"_s.arg(what, QString::number(m_clock.elapsed()));
        if (com::failed(result)) {
            const base::Error error = db::errorOf(result, object);
            words += u", error %1: %2"_s.arg(QString::number(error.number()), error.description());
        }
        m_trace.write(words);
        return result;
    }

private:
    Trace& m_trace;
    QElapsedTimer m_clock;
};

/// Adds up what the fetches of one statement bring; the end and a failure are told.
class FetchCount {
public:
    explicit FetchCount(std::shared_ptr<Trace> trace) : m_trace(std::move(trace)) { m_clock.start(); }

    com::HResult add(com::HResult result, const RowBlock* block, com::IUnknown* object) {
        if (com::succeeded(result) && result != com::kFalse && block != nullptr) {
            m_rows += block->rowCount;
            return result;
        }
        return Timed(*m_trace).tell(u"%1 rows, %2 ms since the start"_s.arg(m_rows).arg(m_clock.elapsed()), result,
                                    object);
    }

private:
    std::shared_ptr<Trace> m_trace;
    QElapsedTimer m_clock;
    std::uint64_t m_rows = 0;
};

class TracedRows final : public db::ForwardingRows {
public:
    TracedRows(com::Ref<IRows> inner, std::shared_ptr<Trace> trace)
        : ForwardingRows(std::move(inner)), m_count(std::move(trace)) {}

    com::HResult Fetch(std::uint32_t maxRows, const RowBlock** block) override {
        const com::HResult result = ForwardingRows::Fetch(maxRows, block);
        return m_count.add(result, block == nullptr ? nullptr : *block, static_cast<IRows*>(this));
    }

private:
    FetchCount m_count;
};

class TracedStatement final : public db::ForwardingStatement {
public:
    TracedStatement(com::Ref<IStatement> inner, std::shared_ptr<Trace> trace)
        : ForwardingStatement(std::move(inner)), m_trace(trace), m_count(std::move(trace)) {}

    com::HResult Run() override {
        Timed timed(*m_trace);
        m_count = FetchCount(m_trace);
        return timed.tell(u"run"_s, ForwardingStatement::Run(), static_cast<IStatement*>(this));
    }
    com::HResult Fetch(std::uint32_t maxRows, const RowBlock** block) override {
        const com::HResult result = ForwardingStatement::Fetch(maxRows, block);
        return m_count.add(result, block == nullptr ? nullptr : *block, static_cast<IStatement*>(this));
    }
    com::HResult Cancel() override {
        m_trace->write(u"cancel"_s);
        return ForwardingStatement::Cancel();
    }

private:
    std::shared_ptr<Trace> m_trace;
    FetchCount m_count;
};

class TracedConnection final : public db::ForwardingConnection {
public:
    TracedConnection(com::Ref<IConnection> connection, std::shared_ptr<Trace> trace)
        : ForwardingConnection(std::move(connection)), m_trace(std::move(trace)) {}

    com::HResult Execute(com::Bstr text, IRows** rows) override {
        return told([&] { return ForwardingConnection::Execute(text, rows); });
    }
    com::HResult OpenRowset(com::Bstr text, std::int32_t cursorLocation, std::int32_t cursorType, std::int32_t lockType,
                            IRows** rows) override {
        return told([&] { return ForwardingConnection::OpenRowset(text, cursorLocation, cursorType, lockType, rows); });
    }
    com::HResult Prepare(com::Bstr text, IStatement** statement) override {
        return told([&] { return ForwardingConnection::Prepare(text, statement); });
    }
    com::HResult Cancel() override {
        m_trace->write(u"cancel"_s);
        return ForwardingConnection::Cancel();
    }

private:
    template <class Call>
    com::HResult told(Call call) {
        Timed timed(*m_trace);
        const com::HResult result = call();
        return timed.tell(com::failed(result) ? u"refused"_s : u"answered"_s, result, static_cast<IConnection*>(this));
    }
    void admit(const QString& text, db::Via via) override {
        const QString how = via == db::Via::execute     ? u"execute"_s
                            : via == db::Via::recordset ? u"recordset"_s
                                                        : u"command"_s;
        m_trace->write(how + u": "_s + text);
    }
    com::Ref<IRows> wrap(com::Ref<IRows> rows, const QString&) override {
        return com::Ref<IRows>::adopt(com::makeObject<TracedRows>(std::move(rows), m_trace).release());
    }
    com::Ref<IStatement> wrap(com::Ref<IStatement> statement, const QString&) override {
        return com::Ref<IStatement>::adopt(com::makeObject<TracedStatement>(std::move(statement), m_trace).release());
    }

    std::shared_ptr<Trace> m_trace;
};

}  // namespace

com::Ref<IConnection> traceConnection(com::Ref<IConnection> connection, std::shared_ptr<Trace> trace) {
    if (!connection || !trace) return connection;
    return com::Ref<IConnection>::adopt(
        com::makeObject<TracedConnection>(std::move(connection), std::move(trace)).release());
}

}  // namespace velcoran::host
