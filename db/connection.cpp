#include "connection.h"

#include "block_check.h"
#include "com/error_information.h"
#include "keeper.h"

namespace velcoran::db {

namespace {

template <class Interface>
Interface& require(const com::Ref<Interface>& object) {
    if (!object)
        throw base::Error(base::kObjectNotSet, QStringLiteral("Conexiunea la baza de date nu este stabilită."));
    return *object;
}

template <class Interface>
void check(com::HResult result, const com::Ref<Interface>& object) {
    if (com::failed(result)) throwError(result, object.get());
}

/// A provider that reports success hands its object over; one that does not is treated as a failed one.
template <class Interface>
com::Ref<Interface> requireResult(com::Ref<Interface> object) {
    if (!object)
        throw base::Error(base::kProviderFailure, QStringLiteral("Furnizorul de date nu a întors niciun obiect."));
    return object;
}

/// A connection with a run that never came back takes no other call.
IConnection& requireFree(const com::Ref<IConnection>& connection) {
    if (connection && keeper().holds(connection.get())) {
        throw base::Error(base::kInvalidProcedureCall,
                          QStringLiteral("Conexiunea este ocupată: serverul nu a răspuns la oprirea unei interogări."));
    }
    return require(connection);
}

/// A cancel that fails is asked again as long as anybody waits; there is nobody to tell.
template <class Interface>
void cancelQuietly(const com::Ref<Interface>& object) noexcept {
    try {
        if (object) (void)object->Cancel();
    } catch (...) {  // a host's own exception
    }
}

QString plainText(com::HResult result) {
    return QStringLiteral("Furnizorul de date a eșuat cu codul 0x%1.")
        .arg(static_cast<std::uint32_t>(result), 8, 16, QLatin1Char('0'));
}

}  // namespace

void throwError(com::HResult result, com::IUnknown* object) {
    const base::Error error = errorOf(result, object);
    if (error.number() == base::kStopped) throw base::Cancelled();
    throw error;
}

base::Error errorOf(com::HResult result, com::IUnknown* object) {
    com::Ref<com::IErrorSource> source;
    if (object != nullptr) source = com::Ref<com::IUnknown>(object).as<com::IErrorSource>();
    std::int32_t number = 0;
    com::Text description;
    com::Text origin;
    if (source && source->LastError(&number, description.receive(), origin.receive()) == com::kOk && number != 0)
        return {number, com::toQString(description.get()), com::toQString(origin.get())};
    return {com::numberOfResult(result), plainText(result)};
}

Rows::Rows(com::Ref<IRows> rows) : m_source(std::make_shared<Source>(Source{std::move(rows), std::nullopt})) {}

const QList<Column>& Rows::columns() const {
    IRows& rows = require(m_source ? m_source->rows : com::Ref<IRows>());
    if (!m_source->columns) {
        const ColumnDescription* descriptions = nullptr;
        std::uint32_t count = 0;
        check(rows.Columns(&descriptions, &count), m_source->rows);
        m_source->columns = checkedColumns(descriptions, count);
    }
    return *m_source->columns;
}

const RowBlock* Rows::fetch(std::uint32_t maxRows) const {
    const QList<Column>& described = columns();  // before the call: the provider's next one may end the block
    const RowBlock* block = nullptr;
    const com::HResult result = m_source->rows->Fetch(maxRows, &block);
    check(result, m_source->rows);
    if (block == nullptr || block->rowCount == 0) return nullptr;
    if (result == com::kFalse) throwRowsAfterEnd();
    checkBlock(*block, maxRows, described);
    return block;
}

void Rows::cancel() const noexcept {
    if (m_source) cancelQuietly(m_source->rows);
}

Statement::Statement(com::Ref<IStatement> statement)
    : m_statement(std::move(statement)), m_rows(com::Ref<IRows>(m_statement.get())) {}

const QList<Column>& Statement::columns() const { return m_rows.columns(); }

Rows Statement::run() const {
    check(require(m_statement).Run(), m_statement);
    return m_rows;
}

void Statement::cancel() const noexcept { cancelQuietly(m_statement); }

Rows Connection::execute(const QString& text) const {
    com::Ref<IRows> rows;
    check(requireFree(m_connection).Execute(com::toText(text).get(), rows.receive()), m_connection);
    return Rows(requireResult(std::move(rows)));
}

Rows Connection::openRowset(const QString& text) const {
    com::Ref<IRows> rows;
    check(requireFree(m_connection)
              .OpenRowset(com::toText(text).get(), kCursorClient, kCursorKeyset, kLockOptimistic, rows.receive()),
          m_connection);
    return Rows(requireResult(std::move(rows)));
}

Statement Connection::prepare(const QString& text) const {
    com::Ref<IStatement> statement;
    check(requireFree(m_connection).Prepare(com::toText(text).get(), statement.receive()), m_connection);
    return Statement(requireResult(std::move(statement)));
}

void Connection::requireOpen() const {
    if (requireFree(m_connection).State() != kStateClosed) return;
    throw base::Error(base::kInvalidConnection, QStringLiteral("Conexiunea la baza de date este închisă."));
}

void Connection::cancel() const noexcept { cancelQuietly(m_connection); }

bool Connection::isFreeThreaded() const { return m_connection && m_connection.as<IFreeThreadedConnection>(); }

}  // namespace velcoran::db
