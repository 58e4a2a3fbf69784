#include "host/drive/statement_hold.h"
#include "host/drive/recorder.h"
#include "host/session/data_source.h"
#include "host/session/silence_watch.h"

#include "db/connection.h"
#include "support/test_data.h"

#include <gtest/gtest.h>

#include <functional>
#include <thread>

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace velcoran::host {
namespace {

using Clock = std::chrono::steady_clock;

const QString kStatement = u"SELECT An FROM An"_s;
constexpr auto kLong = 60s;  // nothing waits so long: what is held is stopped

/// The connection of a script: recorded, watched, held.
struct Held : testing::Test {
    db::Connection connect(std::chrono::milliseconds limit = {}) {
        return db::Connection(recordConnection(watchConnection(holdConnection(source.connection, hold), limit), log));
    }

    OpenedConnection source = openSource({tests::dataPath(u"session/example.db"_s), {}});
    std::shared_ptr<StatementHold> hold = std::make_shared<StatementHold>();
    std::shared_ptr<StatementLog> log = std::make_shared<StatementLog>();
};

Clock::duration timeOf(const std::function<void()>& call) {
    const auto start = Clock::now();
    call();
    return Clock::now() - start;
}

TEST_F(Held, theNextStatementWaitsBeforeItRunsAndNoOther) {
    const db::Connection connection = connect();
    const std::function<void()> calls[] = {
        [&] { (void)connection.execute(kStatement); },
        [&] { (void)connection.openRowset(kStatement); },
    };
    for (const auto& call : calls) {
        hold->holdNext(50ms);
        EXPECT_GE(timeOf(call), 50ms);
        EXPECT_LT(timeOf(call), 50ms);
    }
    hold->holdNext(50ms);
    db::Statement statement;
    EXPECT_LT(timeOf([&] { statement = connection.prepare(kStatement); }), 50ms);
    EXPECT_LT(timeOf(calls[0]), 50ms) << "the prepared one has taken the wait";
    EXPECT_GE(timeOf([&] { EXPECT_NE(statement.run().fetch(), nullptr); }), 50ms);
    EXPECT_LT(timeOf([&] { EXPECT_NE(statement.run().fetch(), nullptr); }), 50ms);
}

TEST_F(Held, aCancelStopsWhatWaits) {
    const db::Connection connection = connect();
    hold->holdNext(kLong);
    std::thread canceller([&] {
        while (!log->isRunning()) std::this_thread::yield();
        while (log->isRunning()) connection.cancel();
    });
    EXPECT_THROW((void)connection.execute(kStatement), base::Cancelled);
    canceller.join();
    EXPECT_GT(log->cancels(), 0);

    hold->holdNext(kLong);
    const db::Statement early = connection.prepare(kStatement);
    early.cancel();
    EXPECT_THROW((void)early.run(), base::Cancelled);
    hold->holdNext(kLong);
    const db::Statement late = connection.prepare(kStatement);
    std::thread stopper([&] {
        std::this_thread::sleep_for(20ms);
        late.cancel();
    });
    EXPECT_THROW((void)late.run(), base::Cancelled);
    stopper.join();
    EXPECT_NE(connection.execute(kStatement).fetch(), nullptr) << "the connection goes on";
}

TEST_F(Held, aSilentStatementFailsInWordsAndTheNextOneRuns) {
    const db::Connection connection = connect(50ms);
    const std::function<void()> calls[] = {
        [&] { (void)connection.execute(kStatement); },
        [&] { (void)connection.openRowset(kStatement); },
        [&] { (void)connection.prepare(kStatement).run(); },
    };
    for (const auto& call : calls) {
        hold->holdNext(kLong);
        try {
            call();
            ADD_FAILURE() << "the silence went unnoticed";
        } catch (const base::Error& error) {
            EXPECT_EQ(error.number(), base::kStatementError);
            EXPECT_EQ(error.description(), u"no answer for 0.05 seconds"_s);
        }
        call();
    }
    EXPECT_EQ(log->cancels(), 0) << "the watch's own";
}

TEST_F(Held, aStatementThatIsNotAskedForRowsIsNotSilent) {
    const db::Connection connection = connect(50ms);
    const db::Rows rows = connection.execute(kStatement);
    std::this_thread::sleep_for(80ms);
    EXPECT_NE(rows.fetch(), nullptr);
}

TEST(Milliseconds, takeWhatAClockCanCount) {
    EXPECT_EQ(milliseconds(1.5), 1500ms);
    EXPECT_EQ(milliseconds(1e300), 100'000'000s);
}

}  // namespace
}  // namespace velcoran::host
