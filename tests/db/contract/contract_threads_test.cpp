#include "contract_test.h"

#include <chrono>
#include <future>

namespace velcoran::tests {
namespace {

using namespace std::chrono_literals;

class ContractThreads : public Contract {
protected:
    /// Cancels again and again until a call on another thread has ended: a cancel that comes before the call does not
    /// count for it.
    template <class Cancel>
    static std::int32_t cancelUntilEnded(std::future<std::int32_t>& call, Cancel cancel) {
        const auto deadline = std::chrono::steady_clock::now() + 60s;
        do cancel();
        while (call.wait_for(50ms) != std::future_status::ready && std::chrono::steady_clock::now() < deadline);
        EXPECT_LT(std::chrono::steady_clock::now(), deadline) << "the cancel did not end the call";
        return call.get();
    }
};

TEST_P(ContractThreads, cancelsARunningStatementAndGoesOn) {
    ASSERT_TRUE(m_connection.isFreeThreaded());
    auto call = std::async(std::launch::async,
                           [this] { return numberOf([&] { readAll(m_connection.execute(m_provider->slow())); }); });
    EXPECT_EQ(cancelUntilEnded(call, [this] { m_connection.cancel(); }), base::kStopped);
    EXPECT_EQ(m_interface->State(), kStateOpen);
    expectUsable();
}

TEST_P(ContractThreads, cancelsAPreparedStatementAndRunsItAgain) {
    const db::Statement statement = m_connection.prepare(m_provider->slow());
    for (int i = 0; i < 2; ++i) {
        auto call = std::async(std::launch::async, [&] { return numberOf([&] { readAll(statement.run()); }); });
        EXPECT_EQ(cancelUntilEnded(call, [&] { statement.cancel(); }), base::kStopped);
        // The last cancel may have come after the call: it counts for the next run, which fails, and then not again.
    }
    expectUsable();
}

TEST_P(ContractThreads, aCancelBetweenFetchesFailsTheNextOne) {
    constexpr int kCount = 20'000;
    for (const bool throughConnection : {false, true}) {
        const db::Rows rows = m_connection.execute(m_provider->series(kCount));
        ASSERT_NE(rows.fetch(5), nullptr);
        if (throughConnection) {
            m_connection.cancel();
        } else {
            rows.cancel();
        }
        EXPECT_EQ(numberOf([&] { readAll(rows); }), base::kStopped);
        EXPECT_EQ(numberOf([&] { (void)rows.fetch(); }), base::kOperationOnClosedObject);
        expectUsable();
    }
    m_connection.cancel();
    expectUsable();
}

TEST_P(ContractThreads, callsWaitTheirTurn) {
    constexpr int kCount = 5'000;
    std::vector<std::future<qint64>> calls;
    for (int i = 0; i < 4; ++i) {
        calls.push_back(std::async(
            std::launch::async, [this] { return sumSeries(m_connection.execute(m_provider->series(kCount)), 100); }));
    }
    for (auto& call : calls) EXPECT_EQ(call.get(), sumTo(kCount));
}

TEST_P(ContractThreads, closingEndsACallThatRuns) {
    auto call = std::async(std::launch::async,
                           [this] { return numberOf([&] { readAll(m_connection.execute(m_provider->slow())); }); });
    // Closing is not repeated: whether the call has begun or not, it ends with a failure.
    std::future_status status = call.wait_for(200ms);
    EXPECT_EQ(status, std::future_status::timeout);
    m_provider->close(m_interface);
    m_connection.cancel();
    EXPECT_NE(call.get(), 0);
    EXPECT_EQ(m_interface->State(), kStateClosed);
}

INSTANTIATE_TEST_SUITE_P(Providers, ContractThreads, testing::ValuesIn(providerCases()),
                         [](const auto& one) { return std::string(one.param.name); });

}  // namespace
}  // namespace velcoran::tests
