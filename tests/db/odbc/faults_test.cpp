#include "contract/odbc_driver.h"
#include "contract/postgres_server.h"
#include "faulty_proxy.h"

#include "db/connection.h"
#include "db/odbc/connection.h"

#include <QDir>

#include <gtest/gtest.h>

#include <atomic>
#include <chrono>
#include <map>

namespace velcoran::tests {
namespace {

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;
using Clock = std::chrono::steady_clock;

constexpr odbc::Waits kWaits{5000ms, 2000ms};

/// Longer than any call may take: login and its patience, or a stall, its cancel and its patience, on a busy machine.
constexpr auto kLongestCall = 20s;

qsizetype countThreads() { return QDir(u"/proc/self/task"_s).entryList(QDir::Dirs | QDir::NoDotAndDotDot).size(); }

/// Threads that were left behind with a driver end when the driver comes back.
bool haveThreadsEnded(qsizetype before) {
    for (const auto deadline = Clock::now() + 60s; Clock::now() < deadline; std::this_thread::sleep_for(20ms))
        if (countThreads() <= before) return true;
    return false;
}

/// Whoever waits too long gets impatient: cancels, or closes the connection.
class Impatience {
public:
    Impatience(com::Ref<IConnection> connection, bool closes)
        : m_connection(std::move(connection)), m_closes(closes), m_thread([this] { watch(); }) {}
    ~Impatience() {
        m_isOver = true;
        m_thread.join();
    }
    void noteProgress() { ++m_progress; }

private:
    void watch() {
        auto seen = m_progress.load();
        for (auto since = Clock::now(); !m_isOver; std::this_thread::sleep_for(10ms)) {
            const auto now = m_progress.load();
            if (now != seen) since = Clock::now();
            seen = now;
            if (Clock::now() - since < 500ms) continue;
            if (m_closes) {
                odbc::closeConnection(m_connection);
            } else {
                m_connection->Cancel();
            }
            since = Clock::now();
        }
    }

    com::Ref<IConnection> m_connection;
    bool m_closes;
    std::atomic<int> m_progress{0};
    std::atomic<bool> m_isOver{false};
    std::thread m_thread;
};

/// Calls on one connection; each must end in time, with the right rows or with an error.
class Session {
public:
    Session(const com::Ref<IConnection>& connection, bool closes)
        : m_connection(connection), m_impatience(connection, closes) {}

    void run() {
        constexpr int kCount = 20'000;
        for (int i = 0; i < 3; ++i) {
            attempt([&] { EXPECT_EQ(sum(m_connection.execute(series(kCount))), sumTo(kCount)); });
            attempt([&] {
                const db::Statement statement = m_connection.prepare(series(kCount));
                ASSERT_EQ(statement.columns().size(), 2);
                const db::Rows rows = statement.run();
                EXPECT_EQ(sum(m_connection.execute(series(10))), sumTo(10));
                EXPECT_EQ(sum(rows), sumTo(kCount));
            });
            attempt([&] {
                (void)m_connection.execute(u"SELECT x FROM nu_exista"_s);
                ADD_FAILURE() << "an unknown table has no rows";
            });
        }
    }
    [[nodiscard]] int succeeded() const { return m_succeeded; }
    [[nodiscard]] int lost() const { return m_lost; }

private:
    static QString series(int count) {
        return u"SELECT n, repeat('ș', 40)::varchar(40) AS name FROM generate_series(1, %1) AS n"_s.arg(count);
    }
    static qint64 sumTo(qint64 count) { return count * (count + 1) / 2; }
    qint64 sum(const db::Rows& rows) {
        qint64 total = 0;
        while (const RowBlock* block = rows.fetch()) {
            const auto* values = static_cast<const std::int64_t*>(block->columns[0].values);
            for (std::uint32_t row = 0; row < block->rowCount; ++row) total += values[row];
            EXPECT_EQ(block->columns[1].offsets[block->rowCount] - block->columns[1].offsets[0], block->rowCount * 40);
            m_impatience.noteProgress();
        }
        return total;
    }
    template <class Call>
    void attempt(Call call) {
        const auto start = Clock::now();
        m_impatience.noteProgress();
        try {
            call();
            ++m_succeeded;
        } catch (const base::Error& error) {
            EXPECT_FALSE(error.description().contains(PostgresServer::password()));
            if (error.number() == base::kNoSuchObject) ++m_succeeded;
            if (error.number() == base::kProviderFailure || error.number() == base::kInvalidConnection) ++m_lost;
        } catch (const base::Cancelled&) {
            ++m_lost;  // impatience stopped what would not have come
        }
        EXPECT_LT(Clock::now() - start, kLongestCall);
    }

    db::Connection m_connection;
    Impatience m_impatience;
    int m_succeeded = 0;
    int m_lost = 0;
};

TEST(Faults, everyCallEndsWithRowsOrAnError) {
    const int serverPort = PostgresServer::instance().port();
    const qsizetype threads = countThreads();
    std::map<Fault, int> succeeded;
    std::map<Fault, int> lost;
    for (unsigned seed = 1; seed <= 24; ++seed) {
        SCOPED_TRACE(seed);
        std::minstd_rand random(seed);
        random.discard(10);
        const auto fault = static_cast<Fault>(seed % 4);
        // Evenly over the orders of magnitude: the login is short, the rows are long.
        const std::uint64_t afterBytes = (1ULL << (4 + random() % 18)) + random() % 16;
        const FaultyProxy proxy(serverPort, {fault, afterBytes, seed});
        try {
            const auto text = PostgresServer::instance().connectionText(proxy.port());
            Session session(odbc::openConnection(text, kWaits), seed / 4 % 2 == 0);
            session.run();
            succeeded[fault] += session.succeeded();
            lost[fault] += session.lost();
        } catch (const base::Error& error) {
            EXPECT_EQ(error.number(), base::kProviderFailure) << error.what();
            EXPECT_FALSE(error.description().contains(PostgresServer::password()));
            ++lost[fault];
        }
    }
    EXPECT_EQ(lost[Fault::None], 0);
    EXPECT_GT(succeeded[Fault::Delay], 0);
    for (const Fault fault : {Fault::Cut, Fault::Stall}) EXPECT_GT(lost[fault], 0) << "the faults did not strike";
    EXPECT_TRUE(haveThreadsEnded(threads)) << "threads stayed behind";
}

TEST(Faults, aLostConnectionIsNoticedAndReported) {
    auto proxy = std::make_unique<FaultyProxy>(PostgresServer::instance().port(), FaultPlan{});
    const auto connection = odbc::openConnection(PostgresServer::instance().connectionText(proxy->port()), kWaits);
    const db::Connection used(connection);
    EXPECT_EQ(connection->State(), kStateOpen);
    proxy.reset();
    for (int i = 0; i < 2; ++i) {
        try {
            (void)used.execute(u"SELECT 1"_s);
            ADD_FAILURE() << "no error";
        } catch (const base::Error& error) {
            EXPECT_EQ(error.number(), base::kProviderFailure) << error.what();
        }
        EXPECT_EQ(connection->State(), kStateClosed);
    }
}

/// A network that swallows everything: the statement's bytes, the cancel's too.
TEST(Faults, aCancelEndsACallWhoseDriverHangs) {
    const qsizetype threads = countThreads();
    {
        constexpr std::uint64_t kPastLogin = 4096;
        const FaultyProxy proxy(PostgresServer::instance().port(), {Fault::Stall, kPastLogin, 1});
        const auto connection = odbc::openConnection(PostgresServer::instance().connectionText(proxy.port()), kWaits);
        const db::Connection used(connection);
        std::thread impatient([&] {
            std::this_thread::sleep_for(500ms);
            used.cancel();
        });
        const auto start = Clock::now();
        try {
            (void)used.execute(u"SELECT repeat('x', 100)::varchar(100) FROM generate_series(1, 100000)"_s);
            ADD_FAILURE() << "no stop";
        } catch (const base::Cancelled&) {
            // A stop stays a stop across the boundary.
        }
        EXPECT_LT(Clock::now() - start, kLongestCall);
        EXPECT_EQ(connection->State(), kStateClosed) << "the hanging driver cannot be used again";
        impatient.join();
    }
    EXPECT_TRUE(haveThreadsEnded(threads)) << "threads stayed behind";
}

TEST(Faults, openingEndsWhenTheServerIsSilent) {
    const qsizetype threads = countThreads();
    const QString drivers[] = {driverText(u"PostgreSQL Unicode"_s, u"odbc-postgresql"_s),
                               driverText(u"FreeTDS"_s, u"tdsodbc"_s)};
    for (const QString& driver : drivers) {
        SCOPED_TRACE(driver.toStdString());
        const FaultyProxy silent(0, {});
        const QString text =
            driver + u"Server=127.0.0.1;Port=%1;Database=d;UID=u;PWD=ascuns-77;TDS_Version=7.4"_s.arg(silent.port());
        const auto start = Clock::now();
        try {
            (void)odbc::openConnection(text, kWaits);
            ADD_FAILURE() << "no error";
        } catch (const base::Error& error) {
            EXPECT_EQ(error.number(), base::kProviderFailure) << error.what();
            EXPECT_FALSE(error.description().contains(u"ascuns"_s)) << error.what();
        }
        EXPECT_LT(Clock::now() - start, kLongestCall);
    }
    EXPECT_TRUE(haveThreadsEnded(threads)) << "threads stayed behind";
}

TEST(Faults, openingSaysWhatIsWrong) {
    const PostgresServer& server = PostgresServer::instance();
    QString wrongPassword = server.connectionText();
    wrongPassword.replace(PostgresServer::password(), u"gresita-1234"_s);
    QString noDatabase = server.connectionText();
    noDatabase.replace(u"Database=postgres"_s, u"Database=nu_exista"_s);
    const struct {
        QString text;
        QString words;
    } cases[] = {
        {u"Driver=/nu/exista.so;PWD=gresita-1234"_s, u"/nu/exista.so"_s},
        {u"DSN=nu_exista;PWD=gresita-1234"_s, u"Data source name not found"_s},
        {wrongPassword, u"password authentication failed"_s},
        {noDatabase, u"\"nu_exista\" does not exist"_s},
    };
    for (const auto& one : cases) {
        QStringList heard;
        try {
            (void)odbc::openConnection(one.text, kWaits, [&](const odbc::DiagnosticRecord& record) {
                EXPECT_EQ(record.state.size(), 5) << record.text.toStdString();
                heard.append(record.text);
            });
            ADD_FAILURE() << one.words.toStdString();
        } catch (const base::Error& error) {
            EXPECT_LT(error.number(), 0);
            EXPECT_TRUE(error.description().contains(one.words)) << error.what();
            EXPECT_FALSE(error.description().contains(u"gresita"_s)) << error.what();
            EXPECT_FALSE(error.description().startsWith(u'[')) << error.what();
        }
        EXPECT_TRUE(heard.join(u'\n').contains(one.words)) << heard.join(u'\n').toStdString();
        EXPECT_FALSE(heard.join(u'\n').contains(u"gresita"_s)) << heard.join(u'\n').toStdString();
    }
}

}  // namespace
}  // namespace velcoran::tests
