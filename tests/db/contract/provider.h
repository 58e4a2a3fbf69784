#pragma once

#include "db/connection.h"

#include <QString>
#include <QStringList>

#include <memory>
#include <optional>
#include <ostream>
#include <vector>

namespace velcoran::tests {

/// A statement that must fail, and with which number.
struct FailingStatement {
    QString text;
    std::int32_t number;
};

/// A provider under test: how it is opened and closed, and the same questions in its database's own words.
class Provider {
public:
    virtual ~Provider() = default;

    [[nodiscard]] virtual com::Ref<IConnection> open() = 0;
    virtual void close(const com::Ref<IConnection>& connection) = 0;

    /// Three rows in the order of id, the second with nulls alone: id, code, name, amount, rate, day, note.
    [[nodiscard]] virtual QString values() const = 0;
    /// The columns' types: what a prepared statement expects and what the blocks hold.
    [[nodiscard]] virtual std::vector<ColumnType> types() const = 0;
    /// One row with a number of 38 digits, kBigNumber; nothing where the database has none.
    [[nodiscard]] virtual std::optional<QString> bigNumber() const = 0;
    /// One row: a float that is the round code 100000, a float of 0.1, a number of 41 digits, 10^40.
    [[nodiscard]] virtual QString floats() const = 0;
    /// Rows 1 to count: n (an integer), name ("rand 1", ...).
    [[nodiscard]] virtual QString series(int count) const = 0;
    /// Runs for minutes.
    [[nodiscard]] virtual QString slow() const = 0;
    [[nodiscard]] virtual std::vector<FailingStatement> failing() const = 0;
    /// Fails at a row that is not the first; nothing where the database has no such error.
    [[nodiscard]] virtual std::optional<QString> failingLate() const = 0;

    static QString bigNumberText() { return QStringLiteral("-123456789012345678901234567890.12345678"); }
    /// The length of row 1's note.
    static constexpr int kNoteLength = 9000;
};

struct ProviderCase {
    const char* name;
    std::unique_ptr<Provider> (*make)();

    friend void PrintTo(const ProviderCase& one, std::ostream* stream) { *stream << one.name; }
};

/// Every provider that is to be tested here; a driver or server that is missing shows when it is opened.
[[nodiscard]] std::vector<ProviderCase> providerCases();

}  // namespace velcoran::tests
