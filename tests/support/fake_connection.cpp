#include "fake_connection.h"

#include <QDateTime>
#include <QTimeZone>

#include <cstring>
#include <memory>

namespace velcoran::tests {

using namespace Qt::StringLiterals;

namespace {

/// One column of one block, with the buffers behind it.
class FakeBuffer {
public:
    void fill(const FakeAnswer& answer, std::size_t first, std::size_t count, qsizetype column);
    [[nodiscard]] const ColumnBlock& block() const { return m_block; }

private:
    void append(const FakeColumn& column, const FakeCell& cell);
    void appendDecimal(const FakeColumn& column, const QString& text);

    std::vector<std::int64_t> m_integers;
    std::vector<base::Int128> m_wide;
    std::vector<double> m_reals;
    std::u16string m_characters;
    std::vector<std::uint32_t> m_offsets;
    std::vector<std::uint8_t> m_nulls;
    bool m_hasNull = false;
    ColumnBlock m_block{};
};

[[noreturn]] void badCell(const FakeColumn& column, const QString& text) {
    throw base::Error(base::kTypeMismatch, u"scripted cell \"%1\" of column %2"_s.arg(text, column.name));
}

std::int64_t microsecondsOf(const FakeColumn& column, const QString& text) {
    const QString full = text.size() == 10 ? text + u" 00:00:00"_s : text;
    QDateTime moment = QDateTime::fromString(full, u"yyyy-MM-dd hh:mm:ss"_s);
    moment.setTimeSpec(Qt::UTC);
    if (!moment.isValid()) badCell(column, text);
    return moment.toMSecsSinceEpoch() * 1000;
}

void FakeBuffer::appendDecimal(const FakeColumn& column, const QString& text) {
    const auto value = base::ShortDecimal::parse(text.toStdString());
    const auto scaled = value ? value->rounded(column.scale) : std::nullopt;
    if (!scaled || scaled->toText() != value->toText()) badCell(column, text);
    if (column.type == ColumnType::Decimal64) {
        m_integers.push_back(static_cast<std::int64_t>(scaled->mantissa));
    } else {
        m_wide.push_back(scaled->mantissa);
    }
}

void FakeBuffer::append(const FakeColumn& column, const FakeCell& cell) {
    m_nulls.push_back(cell ? 0 : 1);
    m_hasNull = m_hasNull || !cell;
    switch (column.type) {
        case ColumnType::Int64:
            m_integers.push_back(cell ? cell->toLongLong() : 0);
            break;
        case ColumnType::Decimal64:
        case ColumnType::Decimal128:
            appendDecimal(column, cell.value_or(u"0"_s));
            break;
        case ColumnType::Double:
            m_reals.push_back(cell ? cell->toDouble() : 0);
            break;
        case ColumnType::Text:
            if (cell) m_characters += cell->toStdU16String();
            m_offsets.push_back(static_cast<std::uint32_t>(m_characters.size()));
            break;
        case ColumnType::DateTime:
            m_integers.push_back(cell ? microsecondsOf(column, *cell) : 0);
            break;
    }
}

void FakeBuffer::fill(const FakeAnswer& answer, std::size_t first, std::size_t count, qsizetype column) {
    const FakeColumn& description = answer.columns[column];
    *this = FakeBuffer();
    m_offsets.push_back(0);
    for (std::size_t row = first; row < first + count; ++row)
        append(description, answer.rows.at(row).at(static_cast<std::size_t>(column)));
    m_block.type = description.type;
    m_block.scale = description.scale;
    m_block.nulls = m_hasNull ? m_nulls.data() : nullptr;
    if (description.type == ColumnType::Text) {
        m_block.values = m_characters.data();
        m_block.offsets = m_offsets.data();
    } else if (description.type == ColumnType::Decimal128) {
        m_block.values = m_wide.data();
    } else if (description.type == ColumnType::Double) {
        m_block.values = m_reals.data();
    } else {
        m_block.values = m_integers.data();
    }
}

/// Rows of an answer; also the prepared statement.
class FakeStatement final : public com::Object<IStatement> {
public:
    FakeStatement(FakeConnection* connection, QString text, FakeAnswer answer, bool isRunning)
        : m_connection(connection), m_text(std::move(text)), m_answer(std::move(answer)), m_isRunning(isRunning) {
        for (const FakeColumn& column : m_answer.columns)
            m_descriptions.push_back({reinterpret_cast<const char16_t*>(column.name.utf16()),
                                      static_cast<std::uint32_t>(column.name.size()), column.type, column.scale});
    }

    com::HResult Columns(const ColumnDescription** columns, std::uint32_t* count) override {
        *columns = m_descriptions.data();
        *count = static_cast<std::uint32_t>(m_descriptions.size());
        return com::kOk;
    }

    com::HResult Run() override {
        return com::guarded([this] {
            m_connection->requireOpen();
            m_connection->note(u"run"_s, m_text);
            throwIfCancelled();
            m_connection->pause(m_answer.runDelay, m_answer);
            if (m_answer.runError) throw *m_answer.runError;
            m_isRunning = true;
            m_row = 0;
            m_round = 0;
            m_fetches = 0;
        });
    }

    com::HResult Fetch(std::uint32_t maxRows, const RowBlock** block) override {
        return com::guarded([&] {
            if (block == nullptr) return com::kNullPointer;
            *block = nullptr;
            m_connection->requireOpen();
            throwIfCancelled();
            m_connection->pause(m_answer.fetchDelay, m_answer);
            throwIfCancelled();
            return next(maxRows, block);
        });
    }

    com::HResult Cancel() override {
        m_isCancelled = true;
        return m_connection->Cancel();
    }

protected:
    [[nodiscard]] bool answersTo(const com::Guid& id) const override { return id == IRows::kId; }

private:
    com::HResult next(std::uint32_t maxRows, const RowBlock** block) {
        if (!m_isRunning) throw base::Error(base::kOperationOnClosedObject, u"The statement does not run"_s);
        if (m_answer.fetchError && m_fetches == m_answer.fetchErrorAt) throw *m_answer.fetchError;
        ++m_fetches;
        if (m_answer.rows.empty() || m_round == m_answer.repeat) {
            m_block = {};
            *block = &m_block;
            return com::kFalse;
        }
        const std::size_t count = std::min<std::size_t>({m_answer.rows.size() - m_row, maxRows, m_answer.blockRows});
        fill(count);
        m_row += count;
        if (m_row == m_answer.rows.size()) {
            m_row = 0;
            ++m_round;
        }
        *block = &m_block;
        return com::kOk;
    }

    void fill(std::size_t count) {
        const bool isSame = m_filledFirst == m_row && m_filledCount == count;
        if (!isSame) {
            m_buffers.resize(static_cast<std::size_t>(m_answer.columns.size()));
            m_blocks.clear();
            for (std::size_t column = 0; column < m_buffers.size(); ++column) {
                m_buffers[column].fill(m_answer, m_row, count, static_cast<qsizetype>(column));
                m_blocks.push_back(m_buffers[column].block());
            }
            m_filledFirst = m_row;
            m_filledCount = count;
        }
        m_block = {static_cast<std::uint32_t>(count), static_cast<std::uint32_t>(m_blocks.size()), m_blocks.data()};
    }

    void throwIfCancelled() {
        if (m_isCancelled.exchange(false)) throw base::Cancelled();
    }

    com::Ref<FakeConnection> m_connection;
    QString m_text;
    FakeAnswer m_answer;
    std::vector<ColumnDescription> m_descriptions;
    std::atomic<bool> m_isCancelled{false};
    bool m_isRunning;
    std::size_t m_row = 0;
    std::uint32_t m_round = 0;
    std::uint32_t m_fetches = 0;
    std::vector<FakeBuffer> m_buffers;
    std::vector<ColumnBlock> m_blocks;
    std::size_t m_filledFirst = 0;
    std::size_t m_filledCount = 0;
    RowBlock m_block{};
};

}  // namespace

void FakeConnection::answer(const QString& key, FakeAnswer answer) {
    const std::scoped_lock lock(m_mutex);
    m_answers.emplace_back(key, std::move(answer));
}

void FakeConnection::close() {
    const std::scoped_lock lock(m_mutex);
    m_isClosed = true;
}

void FakeConnection::setFreeThreaded(bool isFreeThreaded) {
    const std::scoped_lock lock(m_mutex);
    m_isFreeThreaded = isFreeThreaded;
}

QList<FakeCall> FakeConnection::calls() const {
    const std::scoped_lock lock(m_mutex);
    return m_calls;
}

void FakeConnection::clearCalls() {
    const std::scoped_lock lock(m_mutex);
    m_calls.clear();
}

int FakeConnection::cancelCount() const {
    const std::scoped_lock lock(m_mutex);
    return m_cancels;
}

bool FakeConnection::isBusy() const {
    const std::scoped_lock lock(m_mutex);
    return m_waiting > 0;
}

bool FakeConnection::answersTo(const com::Guid& id) const {
    const std::scoped_lock lock(m_mutex);
    return m_isFreeThreaded && id == IFreeThreadedConnection::kId;
}

std::int32_t FakeConnection::State() {
    const std::scoped_lock lock(m_mutex);
    return m_isClosed ? kStateClosed : kStateOpen;
}

void FakeConnection::note(const QString& via, const QString& text) {
    const std::scoped_lock lock(m_mutex);
    m_calls.append({via, text});
}

void FakeConnection::requireOpen() const {
    const std::scoped_lock lock(m_mutex);
    if (m_isClosed) throw base::Error(base::kInvalidConnection, u"The connection is closed"_s);
}

void FakeConnection::pause(std::chrono::milliseconds time, const FakeAnswer& answer) {
    if (time.count() == 0) return;
    std::unique_lock lock(m_mutex);
    const int& ends = answer.isDeaf ? m_lateAnswers : m_cancels;
    const int enough = ends + (answer.isDeaf ? 1 : answer.cancelsNeeded);
    ++m_waiting;
    const bool isEnded = m_cancelled.wait_for(lock, time, [&] { return ends >= enough; });
    --m_waiting;
    if (isEnded && !answer.isDeaf) throw base::Cancelled();
}

void FakeConnection::answerAtLast() {
    {
        const std::scoped_lock lock(m_mutex);
        ++m_lateAnswers;
    }
    m_cancelled.notify_all();
}

FakeAnswer FakeConnection::begin(const QString& via, const QString& text) {
    requireOpen();
    note(via, text);
    std::optional<FakeAnswer> found;
    {
        const std::scoped_lock lock(m_mutex);
        for (const auto& [key, answer] : m_answers)
            if (text.contains(key)) found = answer;
    }
    if (!found) throw base::Error(base::kStatementError, u"no answer is scripted for: "_s + text);
    if (found->meanwhile) found->meanwhile();
    pause(found->openDelay, *found);
    if (found->openError) throw *found->openError;
    return *found;
}

com::HResult FakeConnection::openRows(const QString& via, com::Bstr text, IRows** rows) {
    return com::guarded([&] {
        if (rows == nullptr) return com::kNullPointer;
        *rows = nullptr;
        const QString statement = com::toQString(text);
        FakeAnswer answer = begin(via, statement);
        *rows = com::makeObject<FakeStatement>(this, statement, std::move(answer), true).release();
        return com::kOk;
    });
}

com::HResult FakeConnection::Execute(com::Bstr text, IRows** rows) { return openRows(u"execute"_s, text, rows); }

com::HResult FakeConnection::OpenRowset(com::Bstr text, std::int32_t, std::int32_t, std::int32_t, IRows** rows) {
    return openRows(u"recordset"_s, text, rows);
}

com::HResult FakeConnection::Prepare(com::Bstr text, IStatement** statement) {
    return com::guarded([&] {
        if (statement == nullptr) return com::kNullPointer;
        *statement = nullptr;
        const QString words = com::toQString(text);
        FakeAnswer answer = begin(u"prepare"_s, words);
        *statement = com::makeObject<FakeStatement>(this, words, std::move(answer), false).release();
        return com::kOk;
    });
}

com::HResult FakeConnection::Cancel() {
    {
        const std::scoped_lock lock(m_mutex);
        ++m_cancels;
    }
    m_cancelled.notify_all();
    return com::kOk;
}

FakeAnswer reportColumns() {
    FakeAnswer answer;
    for (const char16_t* name : {u"TipRaport", u"CodClient", u"NumeClient", u"DataDoc", u"NumarFactura", u"ValoareNeta",
                                 u"ValoareTVA", u"ValoareBruta", u"Moneda", u"CursValutar", u"ValoareTaxe"}) {
        const QString column = QString::fromUtf16(name);
        const bool isAmount = column.startsWith(u"Valoare") || column == QStringLiteral("CursValutar");
        answer.columns.append({column, isAmount ? ColumnType::Decimal64 : ColumnType::Text, isAmount ? 2 : 0});
    }
    return answer;
}

}  // namespace velcoran::tests
