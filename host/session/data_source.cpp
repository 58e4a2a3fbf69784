#include "data_source.h"

#include "trace.h"

#include "base/error.h"
#include "db/fence.h"
#include "db/odbc/connection.h"
#include "db/odbc/connection_text.h"
#include "db/sqlite/database.h"

#include <new>
#include <utility>

using namespace Qt::StringLiterals;

namespace velcoran::host {

namespace {

/// What a trace says about one connection; nothing without a trace.
class OpeningTrace {
public:
    explicit OpeningTrace(std::shared_ptr<Trace> trace) : m_trace(std::move(trace)) {
        if (m_trace) m_subject = m_trace->nextConnection();
    }
    void operator()(const QString& words) const noexcept {
        if (m_trace) m_trace->tell(m_subject, words);
    }
    void operator()(const odbc::DiagnosticRecord& record) const noexcept {
        try {
            (*this)(u"record %1 %2: %3"_s.arg(record.state, QString::number(record.nativeNumber), record.text));
        } catch (const std::bad_alloc&) {  // the driver's call goes on without its line
        }
    }
    [[nodiscard]] com::Ref<IConnection> around(com::Ref<IConnection> connection) const {
        return traceConnection(std::move(connection), m_trace, m_subject);
    }

private:
    std::shared_ptr<Trace> m_trace;
    QString m_subject;
};

/// A source as a trace may name it: a connection text holds a password.
QString nameOf(const DataSource& source) {
    if (source.odbc.isEmpty()) return u"database "_s + source.file;
    const bool isName = source.odbc.startsWith(u'@') || source.odbc.startsWith(u"env:");
    return isName ? u"ODBC "_s + source.odbc : u"ODBC"_s;
}

OpenedConnection openProvider(const DataSource& source, const OpeningTrace& tell) {
    if (source.odbc.isEmpty()) {
        com::Ref<IConnection> connection = sqlite::openDatabase(source.file);
        return {connection, [connection] { sqlite::closeDatabase(connection); }};
    }
    com::Ref<IConnection> connection = odbc::openConnection(odbc::resolveConnectionText(source.odbc), {}, tell);
    return {connection, [connection] { odbc::closeConnection(connection); }};
}

}  // namespace

OpenedConnection openSource(const DataSource& source, const std::shared_ptr<Trace>& trace) {
    const OpeningTrace tell(trace);
    tell(u"open "_s + nameOf(source));
    try {
        OpenedConnection opened = openProvider(source, tell);
        tell(u"opened"_s);
        return {tell.around(db::fenceConnection(opened.connection)), [tell, close = opened.close] {
                    tell(u"close"_s);
                    close();
                }};
    } catch (const base::Error& error) {
        tell(u"failed "_s + QString::fromUtf8(error.what()));
        throw;
    }
}

}  // namespace velcoran::host
