#include "row_set.h"

#include "row_store.h"

namespace velcoran::db {

using namespace Qt::StringLiterals;

struct RowSet::Data {
    RowStore rows;
    QStringList columns;
    QString filter;
    std::vector<std::uint32_t> visible;  ///< numbers of the rows that pass, while there is a filter
    std::uint32_t position = 0;          ///< among the rows that pass

    [[nodiscard]] std::uint32_t count() const {
        return filter.isEmpty() ? rows.rowCount() : static_cast<std::uint32_t>(visible.size());
    }
    [[nodiscard]] int columnNamed(const QString& name) const;
    [[nodiscard]] std::uint32_t rowAt(std::uint32_t place) const { return filter.isEmpty() ? place : visible[place]; }
};

namespace {

[[noreturn]] void throwClosed() {
    throw base::Error(base::kOperationOnClosedObject,
                      u"Operațiunea nu este permisă: setul de înregistrări este închis."_s);
}

[[noreturn]] void throwNoRecord() { throw base::Error(base::kNoCurrentRecord, u"Nu există o înregistrare curentă."_s); }

[[noreturn]] void throwNoColumn(const QString& column) {
    throw base::Error(base::kInvalidProcedureCall, u"Nu există nicio coloană cu numele %1."_s.arg(column));
}

}  // namespace

int RowSet::Data::columnNamed(const QString& name) const {
    for (int i = 0; i < columns.size(); ++i)
        if (columns[i].compare(name, Qt::CaseInsensitive) == 0) return i;
    throwNoColumn(name);
}

RowSet::RowSet() = default;
RowSet::~RowSet() = default;
RowSet::RowSet(RowSet&&) noexcept = default;
RowSet& RowSet::operator=(RowSet&&) noexcept = default;

void RowSet::open(const Connection& connection, const QString& text, ICallRunner& runner) {
    close();
    const auto data = std::make_shared<Data>();
    runner.run(connection, [connection, text, data] {
        const Rows rows = connection.openRowset(text);
        for (const Column& column : rows.columns()) data->columns.append(column.name);
        while (const RowBlock* block = rows.fetch()) data->rows.append(*block);
    });
    m_data = data;
}

void RowSet::close() { m_data.reset(); }

bool RowSet::isOpen() const { return m_data != nullptr; }

const QStringList& RowSet::columns() const {
    if (!m_data) throwClosed();
    return m_data->columns;
}

qsizetype RowSet::recordCount() const {
    if (!m_data) throwClosed();
    return m_data->count();
}

void RowSet::moveFirst() {
    if (!m_data) throwClosed();
    if (m_data->count() == 0) throwNoRecord();
    m_data->position = 0;
}

void RowSet::moveNext() {
    if (isEof()) throwNoRecord();
    ++m_data->position;
}

bool RowSet::isEof() const {
    if (!m_data) throwClosed();
    return m_data->position >= m_data->count();
}

std::optional<QString> RowSet::field(int column) const {
    if (isEof()) throwNoRecord();
    if (column < 0 || column >= m_data->columns.size()) throwNoColumn(QString::number(column));
    return m_data->rows.text(m_data->rowAt(m_data->position), column);
}

QString RowSet::cell(qsizetype row, int column) const {
    if (!m_data) throwClosed();
    if (row < 0 || row >= m_data->count()) throwNoRecord();
    if (column < 0 || column >= m_data->columns.size()) throwNoColumn(QString::number(column));
    return m_data->rows.text(m_data->rowAt(static_cast<std::uint32_t>(row)), column).value_or(QString());
}

void RowSet::setFilter(const QString& expression) {
    if (!m_data) throwClosed();
    if (expression.isEmpty()) {
        m_data->visible = {};
    } else {
        const RowFilter filter = RowFilter::parse(expression);
        m_data->visible = m_data->rows.select(filter, m_data->columnNamed(filter.column));
    }
    m_data->filter = expression;
    m_data->position = 0;
}

const QString& RowSet::filter() const {
    if (!m_data) throwClosed();
    return m_data->filter;
}

}  // namespace velcoran::db
