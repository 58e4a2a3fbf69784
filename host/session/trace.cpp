#include "trace.h"

#include "db/connection.h"
#include "db/forwarding.h"

#include <QDateTime>

#include <chrono>
#include <cstdio>
#include <utility>

using namespace Qt::StringLiterals;

namespace velcoran::host {

namespace {

QString oneLine(const QString& words) {
    QString line;
    line.reserve(words.size());
    for (const QChar each : words) {
        if (each == u'\\')
            line += u"\\\\"_s;
        else if (each == u'\n')
            line += u"\\n"_s;
        else if (each == u'\r')
            line += u"\\r"_s;
        else if (each == u'\t')
            line += u"\\t"_s;
        else if (each.category() == QChar::Other_Control || each == QChar::LineSeparator ||
                 each == QChar::ParagraphSeparator)
            line += u"\\u%1"_s.arg(each.unicode(), 4, 16, QChar(u'0'));
        else
            line += each;
    }
    return line;
}

/// One subject of a trace, with its own clock.
class CallTrace {
public:
    CallTrace(std::shared_ptr<Trace> trace, QString subject)
        : m_trace(std::move(trace)), m_subject(std::move(subject)) {}

    void tell(const QString& words) const { m_trace->tell(m_subject, words); }
    void start() { m_start = std::chrono::steady_clock::now(); }
    /// Tells what has ended, with its time.
    void tellEnd(const QString& words) const { tell(u"%1 after %2 s"_s.arg(words, seconds())); }
    /// Tells a failure of an object. @return the result
    com::HResult look(com::HResult result, com::IUnknown* object) const {
        if (com::succeeded(result)) return result;
        const base::Error error = db::errorOf(result, object);
        const QString source = error.source().isEmpty() ? QString() : u" [%1]"_s.arg(error.source());
        tell(u"failed after %1 s%2 %3: %4"_s.arg(seconds(), source, QString::number(error.number()),
                                                 error.description()));
        return result;
    }
    [[nodiscard]] CallTrace of(const QString& subject) const { return {m_trace, subject}; }
    [[nodiscard]] const QString& subject() const { return m_subject; }

private:
    [[nodiscard]] QString seconds() const {
        const std::chrono::duration<double> time = std::chrono::steady_clock::now() - m_start;
        return QString::number(time.count(), 'f', 3);
    }

    std::shared_ptr<Trace> m_trace;
    QString m_subject;
    std::chrono::steady_clock::time_point m_start = std::chrono::steady_clock::now();
};

/// Counts the rows of a statement until its end.
class RowCount {
public:
    com::HResult count(com::HResult result, const RowBlock* block, const CallTrace& teller) {
        if (result == com::kFalse) {
            teller.tellEnd(u"end of %1 rows"_s.arg(m_rows));
            m_isOver = true;
        } else if (com::succeeded(result)) {
            if (std::exchange(m_rows, m_rows + block->rowCount) == 0) teller.tellEnd(u"first rows"_s);
        } else {
            m_isOver = true;
        }
        return result;
    }
    void begin() { *this = {}; }
    /// For rows that nobody has read to their end.
    void leave(const CallTrace& teller) const {
        if (!m_isOver) teller.tellEnd(u"left at %1 rows"_s.arg(m_rows));
    }

private:
    std::int64_t m_rows = 0;
    bool m_isOver = false;
};

class TracedRows final : public db::ForwardingRows {
public:
    TracedRows(com::Ref<IRows> inner, CallTrace teller)
        : ForwardingRows(std::move(inner)), m_teller(std::move(teller)) {}

    com::HResult Fetch(std::uint32_t maxRows, const RowBlock** block) override {
        const com::HResult result = m_teller.look(ForwardingRows::Fetch(maxRows, block), asObject());
        return m_count.count(result, block != nullptr ? *block : nullptr, m_teller);
    }
    com::HResult Cancel() override {
        m_teller.tell(u"cancel"_s);
        return ForwardingRows::Cancel();
    }

protected:
    ~TracedRows() override { m_count.leave(m_teller); }

private:
    com::IUnknown* asObject() { return static_cast<IRows*>(this); }

    CallTrace m_teller;
    RowCount m_count;
};

class TracedStatement final : public db::ForwardingStatement {
public:
    TracedStatement(com::Ref<IStatement> inner, CallTrace teller)
        : ForwardingStatement(std::move(inner)), m_teller(std::move(teller)) {}

    com::HResult Run() override {
        if (m_hasRun) m_count.leave(m_teller);
        m_hasRun = true;
        m_count.begin();
        m_teller.start();
        m_teller.tell(u"run"_s);
        const com::HResult result = m_teller.look(ForwardingStatement::Run(), asObject());
        if (com::succeeded(result)) m_teller.tellEnd(u"answered"_s);
        return result;
    }
    com::HResult Fetch(std::uint32_t maxRows, const RowBlock** block) override {
        const com::HResult result = m_teller.look(ForwardingStatement::Fetch(maxRows, block), asObject());
        return m_count.count(result, block != nullptr ? *block : nullptr, m_teller);
    }
    com::HResult Cancel() override {
        m_teller.tell(u"cancel"_s);
        return ForwardingStatement::Cancel();
    }

protected:
    ~TracedStatement() override {
        if (m_hasRun) m_count.leave(m_teller);
    }

private:
    com::IUnknown* asObject() { return static_cast<IStatement*>(this); }

    CallTrace m_teller;
    RowCount m_count;
    bool m_hasRun = false;
};

class TracedConnection final : public db::ForwardingConnection {
public:
    TracedConnection(com::Ref<IConnection> inner, CallTrace teller)
        : ForwardingConnection(std::move(inner)), m_teller(std::move(teller)) {}

    com::HResult Execute(com::Bstr text, IRows** rows) override {
        return during(u"execute"_s, text, [&] { return ForwardingConnection::Execute(text, rows); });
    }
    com::HResult OpenRowset(com::Bstr text, std::int32_t cursorLocation, std::int32_t cursorType, std::int32_t lockType,
                            IRows** rows) override {
        return during(u"recordset"_s, text, [&] {
            return ForwardingConnection::OpenRowset(text, cursorLocation, cursorType, lockType, rows);
        });
    }
    com::HResult Prepare(com::Bstr text, IStatement** statement) override {
        return during(u"command"_s, text, [&] { return ForwardingConnection::Prepare(text, statement); });
    }
    com::HResult Cancel() override {
        m_teller.tell(u"cancel"_s);
        return ForwardingConnection::Cancel();
    }

protected:
    ~TracedConnection() override { m_teller.tellEnd(u"let go"_s); }

private:
    template <class Call>
    com::HResult during(const QString& via, com::Bstr text, Call call) {
        CallTrace teller = m_teller.of(u"%1.%2"_s.arg(m_teller.subject()).arg(++m_statements));
        teller.tell(u"%1 %2"_s.arg(via, com::toQString(text)));
        m_opening = &teller;
        const com::HResult result = call();
        m_opening = nullptr;
        teller.look(result, static_cast<IConnection*>(this));
        if (com::succeeded(result)) teller.tellEnd(u"answered"_s);
        return result;
    }
    com::Ref<IRows> wrap(com::Ref<IRows> rows, const QString&) override {
        return com::Ref<IRows>::adopt(com::makeObject<TracedRows>(std::move(rows), *m_opening).release());
    }
    com::Ref<IStatement> wrap(com::Ref<IStatement> statement, const QString&) override {
        return com::Ref<IStatement>::adopt(
            com::makeObject<TracedStatement>(std::move(statement), *m_opening).release());
    }

    CallTrace m_teller;
    int m_statements = 0;
    const CallTrace* m_opening = nullptr;  ///< of the statement that is being opened
};

}  // namespace

Trace::Trace(const QString& file) : m_file(file) {}

void Trace::tell(const QString& subject, const QString& words) noexcept {
    try {
        const QDateTime now = QDateTime::currentDateTime();
        const QString moment = now.toOffsetFromUtc(now.offsetFromUtc()).toString(Qt::ISODateWithMs);
        const QByteArray line = u"%1 %2 %3"_s.arg(moment, subject, oneLine(words)).toUtf8();
        const std::scoped_lock lock(m_mutex);
        if (m_isBroken) return;
        m_isBroken = true;
        m_file.append(line);
        m_isBroken = false;
    } catch (...) {
        const base::Error error = base::currentError();
        std::fprintf(stderr, "velcoran-host: the trace ends here: %s\n", error.description().toUtf8().constData());
    }
}

std::shared_ptr<Trace> openTrace(const QString& file) {
    return file.isEmpty() ? nullptr : std::make_shared<Trace>(file);
}

com::Ref<IConnection> traceConnection(com::Ref<IConnection> connection, std::shared_ptr<Trace> trace,
                                      const QString& subject) {
    if (!connection || !trace) return connection;
    return com::Ref<IConnection>::adopt(
        com::makeObject<TracedConnection>(std::move(connection), CallTrace(std::move(trace), subject)).release());
}

}  // namespace velcoran::host
