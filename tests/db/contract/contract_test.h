#pragma once

#include "provider.h"

#include "db/row_set.h"

#include <gtest/gtest.h>

namespace velcoran::tests {

/// One provider with one open connection.
class Contract : public testing::TestWithParam<ProviderCase> {
protected:
    void SetUp() override {
        m_provider = GetParam().make();
        m_interface = m_provider->open();
        m_connection = db::Connection(m_interface);
    }

    /// Number of the error that something ends with, as a host sees it: kStopped for a stop, 0 for none.
    template <class Body>
    static std::int32_t numberOf(Body body) {
        try {
            body();
        } catch (const base::Error& error) {
            EXPECT_FALSE(error.description().isEmpty());
            return error.number();
        } catch (const base::Cancelled&) {
            return base::kStopped;
        }
        return 0;
    }
    /// Reads rows to the end. @return how many
    static qint64 readAll(const db::Rows& rows, std::uint32_t maxRows = db::Rows::kMaxBlockRows) {
        qint64 count = 0;
        while (const RowBlock* block = rows.fetch(maxRows)) {
            EXPECT_LE(block->rowCount, maxRows);
            count += block->rowCount;
        }
        return count;
    }
    /// Sum of the series' first column, read to the end.
    static qint64 sumSeries(const db::Rows& rows, std::uint32_t maxRows = db::Rows::kMaxBlockRows) {
        qint64 sum = 0;
        while (const RowBlock* block = rows.fetch(maxRows)) {
            EXPECT_EQ(block->columns[0].type, ColumnType::Int64);
            const auto* values = static_cast<const std::int64_t*>(block->columns[0].values);
            for (std::uint32_t row = 0; row < block->rowCount; ++row) sum += values[row];
        }
        return sum;
    }
    static qint64 sumTo(qint64 count) { return count * (count + 1) / 2; }

    /// The connection works: a statement runs and gives all its rows.
    void expectUsable() const {
        constexpr int kCount = 10;
        EXPECT_EQ(sumSeries(m_connection.execute(m_provider->series(kCount))), sumTo(kCount));
    }

    std::unique_ptr<Provider> m_provider;
    com::Ref<IConnection> m_interface;
    db::Connection m_connection;
};

}  // namespace velcoran::tests
