#include "db/keeper.h"
#include "db/connection.h"

#include "support/fake_connection.h"

#include <gtest/gtest.h>

#include <atomic>
#include <future>
#include <thread>

namespace velcoran::tests {

using namespace std::chrono_literals;

namespace {

/// A call that does not come back before it is told to.
struct Stuck {
    std::promise<void> answer;
    std::shared_ptr<int> owned = std::make_shared<int>(0);
    std::weak_ptr<int> seen = owned;

    system::Worker start() {
        return system::Worker([gate = std::make_shared<std::future<void>>(answer.get_future()),
                               mine = std::move(owned)] { gate->wait(); });
    }
};

template <class Condition>
bool comesTrue(Condition condition) {
    for (int i = 0; i < 1000 && !condition(); ++i) std::this_thread::sleep_for(5ms);
    return condition();
}

}  // namespace

TEST(Worker, keepsWhatTheCallThrowsWhateverItIs) {
    const std::pair<const char*, std::function<void()>> kCases[] = {
        {"an error", [] { throw base::Error(5, QStringLiteral("five")); }},
        {"a stop", [] { throw base::Cancelled(); }},
        {"no memory", [] { throw std::bad_alloc(); }},
        {"a foreign type", [] { throw 42; }},
    };
    for (const auto& [name, call] : kCases) {
        const system::Worker worker(call);
        ASSERT_TRUE(worker.waitFor(10s)) << name;
        EXPECT_ANY_THROW(worker.rethrow()) << name;
    }
}

TEST(Worker, letsGoOfWhatTheCallOwnsBeforeItsEndIsSeen) {
    const auto owned = std::make_shared<int>(0);
    std::atomic<long> ownersAtEnd = 0;
    std::function<void()> call = [owned] {};
    system::Worker worker(std::move(call), [&] { ownersAtEnd = owned.use_count(); });
    ASSERT_TRUE(worker.waitFor(10s));
    ASSERT_TRUE(comesTrue([&] { return ownersAtEnd == 1; }));
}

TEST(Keeper, holdsTheConnectionUntilTheDriverReturns) {
    const auto connection = FakeConnection::create();
    const auto other = FakeConnection::create();
    Stuck stuck;
    db::Keeper keeper;
    keeper.keep(stuck.start(), connection.get());
    EXPECT_TRUE(keeper.holds(connection.get()));
    EXPECT_FALSE(keeper.holds(other.get()));
    EXPECT_FALSE(keeper.isEmpty());
    stuck.answer.set_value();
    EXPECT_TRUE(comesTrue([&] { return stuck.seen.expired(); })) << "nobody has to ask for what the run owned";
    EXPECT_TRUE(comesTrue([&] { return !keeper.holds(connection.get()); }));
    EXPECT_TRUE(keeper.isEmpty());
}

TEST(Keeper, aRunThatHasDoneWithItsDriverHoldsNoConnection) {
    const auto connection = FakeConnection::create();
    Stuck stuck;
    db::Keeper keeper;
    keeper.keep(stuck.start(), nullptr);
    EXPECT_FALSE(keeper.holds(connection.get()));
    EXPECT_FALSE(keeper.isEmpty());
    stuck.answer.set_value();
    EXPECT_TRUE(comesTrue([&] { return keeper.isEmpty(); }));
}

TEST(Keeper, goesWithoutWaitingForWhatItKeeps) {
    Stuck stuck;
    { db::Keeper().keep(stuck.start(), nullptr); }
    EXPECT_FALSE(stuck.seen.expired());
    stuck.answer.set_value();
    EXPECT_TRUE(comesTrue([&] { return stuck.seen.expired(); }));
}

TEST(Keeper, everyCallOnAHeldConnectionIsRefused) {
    const auto fake = FakeConnection::create();
    const db::Connection connection(fake->asConnection());
    Stuck stuck;
    db::keeper().keep(stuck.start(), fake.get());
    const std::pair<const char*, std::function<void()>> kCalls[] = {
        {"Execute", [&] { (void)connection.execute(QStringLiteral("SELECT 1")); }},
        {"OpenRowset", [&] { (void)connection.openRowset(QStringLiteral("SELECT 1")); }},
        {"Prepare", [&] { (void)connection.prepare(QStringLiteral("SELECT 1")); }},
        {"State", [&] { connection.requireOpen(); }},
    };
    for (const auto& [name, call] : kCalls) {
        try {
            call();
            ADD_FAILURE() << name;
        } catch (const base::Error& error) {
            EXPECT_EQ(error.number(), 5) << name;
            EXPECT_TRUE(error.description().startsWith(QStringLiteral("Conexiunea este ocupată"))) << name;
        }
    }
    EXPECT_TRUE(fake->calls().isEmpty());
    stuck.answer.set_value();
    ASSERT_TRUE(comesTrue([] { return db::keeper().isEmpty(); }));
    EXPECT_NO_THROW(connection.requireOpen());
}

}  // namespace velcoran::tests
