#include "host/statement_watch.h"

#include "host/decorated.h"

#include <QString>

#include <algorithm>
#include <type_traits>
#include <utility>

using namespace Qt::StringLiterals;

namespace velcoran::host {

namespace {

using Clock = StatementWatch::Clock;

/// A cancel reaches only what runs at that moment: it is repeated until the call returns.
constexpr auto kCancelInterval = std::chrono::milliseconds(100);
/// About three years: a clock counts so far.
constexpr double kLongest = 1e8;

Clock::duration durationOf(double seconds) {
    return std::chrono::duration_cast<Clock::duration>(std::chrono::duration<double>(std::min(seconds, kLongest)));
}

}  // namespace

StatementWatch::StatementWatch(std::optional<double> timeout) : m_timeout(timeout) {
    if (m_timeout) m_thread = std::thread([this] { work(); });
}

StatementWatch::~StatementWatch() {
    {
        const std::lock_guard lock(m_mutex);
        m_isEnding = true;
    }
    m_changed.notify_all();
    if (m_thread.joinable()) m_thread.join();
}

/// The lock is held while a call is cancelled, so that the cancel cannot reach the statement after it.
void StatementWatch::work() noexcept {
    std::unique_lock lock(m_mutex);
    while (!m_isEnding) {
        if (m_calls.empty()) {
            m_changed.wait(lock);
            continue;
        }
        const auto first = m_calls.begin();
        if (Clock::now() < first->first) {
            m_changed.wait_until(lock, Clock::time_point(first->first));
            continue;
        }
        auto node = m_calls.extract(first);
        Call& call = *node.mapped();
        call.m_isTimedOut = true;
        m_hasTimedOut = true;
        call.m_connection.Cancel();
        call.m_due = Clock::now() + kCancelInterval;
        node.key() = call.m_due;
        m_calls.insert(std::move(node));
    }
}

StatementWatch::Call::Call(StatementWatch& watch, IConnection& connection, bool isWaitedFor, Clock::duration silence)
    : m_watch(watch), m_connection(connection), m_isWaitedFor(isWaitedFor) {
    if (isWaitedFor) ++watch.m_running;
    if (!watch.m_timeout) return;
    m_due = m_start + durationOf(*watch.m_timeout) - silence;
    {
        const std::lock_guard lock(watch.m_mutex);
        watch.m_calls.emplace(m_due, this);
    }
    watch.m_changed.notify_all();
}

StatementWatch::Call::~Call() { end(); }

Clock::duration StatementWatch::Call::end() {
    if (std::exchange(m_isOver, true)) return {};
    if (m_watch.m_timeout) {
        const std::lock_guard lock(m_watch.m_mutex);
        const auto [first, last] = m_watch.m_calls.equal_range(m_due);
        for (auto each = first; each != last; ++each) {
            if (each->second != this) continue;
            m_watch.m_calls.erase(each);
            break;
        }
    }
    if (m_isWaitedFor) --m_watch.m_running;
    return Clock::now() - m_start;
}

namespace {

/// Runs one call of a statement under the watch.
/// @param silence  what the statement waits for rows so far; grows by this call
template <class Object, class Run>
com::HResult watched(Object& object, StatementWatch& watch, IConnection& connection, bool isWaitedFor,
                     Clock::duration& silence, Run run) {
    StatementWatch::Call call(watch, connection, isWaitedFor, silence);
    const com::HResult result = run();
    silence += call.end();
    // Whatever a driver answers to the cancel: rows that end early are no whole answer.
    return call.isTimedOut() ? object.failSilent(*watch.timeout()) : result;
}

template <class Main>
class Watched : public Decorated<Main> {
public:
    Watched(com::Ref<Main> inner, std::shared_ptr<StatementWatch> watch)
        : Decorated<Main>(std::move(inner)), m_watch(std::move(watch)) {}

    com::HResult failSilent(double seconds) {
        return this->fail(base::Error(
            base::kStatementError,
            u"Serverul nu a răspuns timp de %1 s; instrucțiunea a fost oprită."_s.arg(QString::number(seconds))));
    }

protected:
    [[nodiscard]] const std::shared_ptr<StatementWatch>& watch() const { return m_watch; }

private:
    std::shared_ptr<StatementWatch> m_watch;
};

/// Rows, or a statement that has them.
template <class Main>
class WatchedRows : public Watched<Main> {
public:
    WatchedRows(com::Ref<Main> inner, com::Ref<IConnection> connection, std::shared_ptr<StatementWatch> watch,
                Clock::duration silence)
        : Watched<Main>(std::move(inner), std::move(watch)), m_connection(std::move(connection)), m_silence(silence) {}

    com::HResult Columns(const ColumnDescription** columns, std::uint32_t* count) override {
        return timed([&] { return this->inner()->Columns(columns, count); });
    }
    com::HResult Fetch(std::uint32_t maxRows, const RowBlock** block) override {
        const com::HResult result = timed([&] { return this->inner()->Fetch(maxRows, block); });
        if (com::succeeded(result)) m_silence = {};
        return result;
    }
    com::HResult Cancel() override {
        this->watch()->noteCancel();
        return this->inner()->Cancel();
    }

protected:
    template <class Run>
    com::HResult timed(Run run) {
        this->startCall();
        constexpr bool isWaitedFor = std::is_same_v<Main, IRows>;
        return watched(*this, *this->watch(), *m_connection, isWaitedFor, m_silence, run);
    }
    void startSilence() { m_silence = {}; }

private:
    com::Ref<IConnection> m_connection;
    Clock::duration m_silence;
};

class WatchedStatement final : public WatchedRows<IStatement> {
public:
    using WatchedRows::WatchedRows;

    com::HResult Run() override {
        startSilence();
        return timed([this] { return inner()->Run(); });
    }

private:
    [[nodiscard]] bool answersTo(const com::Guid& id) const override { return id == IRows::kId; }
};

class WatchedConnection final : public Watched<IConnection> {
public:
    WatchedConnection(com::Ref<IConnection> connection, std::shared_ptr<StatementWatch> watch)
        : Watched(std::move(connection), std::move(watch)), m_isFreeThreaded(inner().as<IFreeThreadedConnection>()) {}

    std::int32_t State() override { return inner()->State(); }
    com::HResult Execute(com::Bstr text, IRows** rows) override {
        return opened<WatchedRows<IRows>>(rows, [&](IRows** target) { return inner()->Execute(text, target); });
    }
    com::HResult OpenRowset(com::Bstr text, std::int32_t cursorLocation, std::int32_t cursorType, std::int32_t lockType,
                            IRows** rows) override {
        return opened<WatchedRows<IRows>>(rows, [&](IRows** target) {
            return inner()->OpenRowset(text, cursorLocation, cursorType, lockType, target);
        });
    }
    com::HResult Prepare(com::Bstr text, IStatement** statement) override {
        return opened<WatchedStatement>(statement, [&](IStatement** target) { return inner()->Prepare(text, target); });
    }
    com::HResult Cancel() override {
        watch()->noteCancel();
        return inner()->Cancel();
    }

private:
    [[nodiscard]] bool answersTo(const com::Guid& id) const override {
        return m_isFreeThreaded && id == IFreeThreadedConnection::kId;
    }
    /// Makes the call that opens rows or prepares a statement, and watches what it opened.
    template <class Result, class Interface, class Open>
    com::HResult opened(Interface** target, Open open) {
        if (target == nullptr) return com::kNullPointer;
        *target = nullptr;
        startCall();
        Clock::duration silence{};
        com::Ref<Interface> made;
        const com::HResult result =
            watched(*this, *watch(), *inner(), true, silence, [&] { return open(made.receive()); });
        if (com::failed(result)) return result;
        *target = com::makeObject<Result>(std::move(made), inner(), watch(), silence).release();
        return result;
    }

    bool m_isFreeThreaded;
};

}  // namespace

com::Ref<IConnection> watchConnection(com::Ref<IConnection> connection, std::shared_ptr<StatementWatch> watch) {
    if (!connection) return connection;
    return com::Ref<IConnection>::adopt(
        com::makeObject<WatchedConnection>(std::move(connection), std::move(watch)).release());
}

}  // namespace velcoran::host
