#include "db/odbc/connection.h"

#include "support/test_data.h"

#include "db/connection.h"

#include <gtest/gtest.h>

namespace velcoran::odbc {
namespace {

using namespace Qt::StringLiterals;

/// A connection through the scripted driver, and what it was heard to say.
class DriverWords : public testing::Test {
protected:
    db::Connection open(const QString& options = {}) {
        const QString driver = QString::fromUtf8(VELCORAN_SCRIPTED_DRIVER);
        m_interface = openConnection(u"Driver=%1;PWD=ascuns-77;%2"_s.arg(driver, options), {},
                                     [this](const DiagnosticRecord& record) { m_heard.append(record); });
        return db::Connection(m_interface);
    }
    [[nodiscard]] std::int32_t state() const { return m_interface->State(); }
    [[nodiscard]] QStringList heard() const {
        QStringList lines;
        for (const DiagnosticRecord& record : m_heard)
            lines.append(u"%1 %2 %3"_s.arg(record.state, QString::number(record.nativeNumber), record.text));
        return lines;
    }
    /// What a statement ends with; number 0 when all its rows came.
    static base::Error outcome(const db::Connection& connection, const QString& statement) {
        try {
            const db::Rows rows = connection.execute(statement);
            std::uint32_t count = 0;
            while (const RowBlock* block = rows.fetch()) count += block->rowCount;
            return {0, QString::number(count)};
        } catch (const base::Error& error) {
            return error;
        }
    }

private:
    com::Ref<IConnection> m_interface;
    QList<DiagnosticRecord> m_heard;
};

TEST_F(DriverWords, tellWhetherTheConnectionIsLost) {
    const struct {
        const char* name;
        const char* options;
        const char* statement;
        std::int32_t number;
        bool isLost;
    } cases[] = {
        {"another database is unknown", "", "fail 08004 911 Database 'NUEXISTA' does not exist", base::kStatementError,
         false},
        {"... and the driver knows no better", "Dead=unknown", "fail 08004 911 Database 'NUEXISTA' does not exist",
         base::kStatementError, false},
        {"the link failed", "", "die fail 08S01 20006 Write to the server failed", base::kProviderFailure, true},
        {"... and the driver knows no better", "Dead=unknown", "fail 08S01 20006 Write failed", base::kProviderFailure,
         true},
        {"... but the driver goes on", "", "fail 08S01 0 Communication link failure", base::kProviderFailure, false},
        {"only the attribute tells", "", "die fail HY000 0 Unexpected end of data", base::kProviderFailure, true},
        {"only the attribute tells, at the end of the rows", "", "die rows 3", base::kProviderFailure, true},
        {"a statement's own failure", "", "fail 42000 102 Incorrect syntax", base::kStatementError, false},
    };
    for (const auto& one : cases) {
        SCOPED_TRACE(one.name);
        const db::Connection connection = open(QString::fromUtf8(one.options));
        const base::Error failure = outcome(connection, QString::fromUtf8(one.statement));
        EXPECT_EQ(failure.number(), one.number) << failure.what();
        EXPECT_EQ(state(), one.isLost ? kStateClosed : kStateOpen);
        const base::Error next = outcome(connection, u"rows 5"_s);
        EXPECT_EQ(next.number(), one.isLost ? base::kProviderFailure : 0) << next.what();
        EXPECT_EQ(next.description() == u"5"_s, !one.isLost);
    }
}

TEST_F(DriverWords, tellOfOthersInTheWay) {
    const struct {
        const char* statement;
        const char* kind;  ///< null for a failure of another kind
    } cases[] = {
        {"fail 40001 1205 Transaction was deadlocked", "interblocare"},
        {"fail 42000 1205 Transaction was deadlocked", "interblocare"},
        {"fail HYT00 1222 Lock request time out period exceeded.", "timpul de așteptare a expirat"},
        {"fail 42000 1222 Lock request time out period exceeded.", "timpul de așteptare a expirat"},
        {"fail HYT00 0 Timeout expired", nullptr},
        {"fail 21000 1222 Different number of columns", nullptr},
    };
    const db::Connection connection = open();
    for (const auto& one : cases) {
        const QString statement = QString::fromUtf8(one.statement);
        const QString words = statement.section(u' ', 3);
        const base::Error failure = outcome(connection, statement);
        EXPECT_EQ(failure.number(), base::kStatementError) << failure.what();
        const QString expected = u"Baza de date este blocată de altă operațiune (%1). Reîncercați.\n%2"_s.arg(
            QString::fromUtf8(one.kind), words);
        EXPECT_EQ(failure.description(), one.kind == nullptr ? words : expected) << one.statement;
    }
    EXPECT_EQ(outcome(connection, u"rows 5"_s).description(), u"5"_s);
}

TEST_F(DriverWords, ofABadRowFailTheWholeBlock) {
    const db::Connection connection = open();
    for (const int row : {1, 3, 5}) {
        const base::Error failure =
            outcome(connection, u"rows 5 bad %1 22003 8115 Arithmetic overflow error"_s.arg(row));
        EXPECT_EQ(failure.number(), base::kStatementError) << row << failure.what();
        EXPECT_EQ(failure.description(), u"Arithmetic overflow error"_s) << row;
    }
    EXPECT_EQ(outcome(connection, u"rows 5"_s).description(), u"5"_s);
}

/// Letters around the ends of a buffer and of the pieces in which a longer text is read.
TEST_F(DriverWords, neverCutALongText) {
    const QString script = u"texts 0 255 256 257 258 1 4095 4096 4097 12288 20000"_s;
    QStringList expected;
    for (const QString& length : script.split(u' ').sliced(1)) {
        QString letters;
        for (int i = 0; i < length.toInt(); ++i) letters.append(QChar(u'a' + i % 26));
        expected.append(letters);
    }
    for (const QString& options : {u""_s, u"Reread=any"_s, u"Reread=block"_s}) {
        const db::Connection connection = open(options);
        const db::Rows rows = connection.execute(script);
        QStringList texts;
        while (const RowBlock* block = rows.fetch()) {
            const ColumnBlock& column = block->columns[0];
            const auto* letters = static_cast<const QChar*>(column.values);
            for (std::uint32_t row = 0; row < block->rowCount; ++row)
                texts.append(QString(letters + column.offsets[row], column.offsets[row + 1] - column.offsets[row]));
        }
        EXPECT_EQ(texts, expected) << qPrintable(options);
    }
}

TEST_F(DriverWords, reachTheSinkWholeWithoutSecrets) {
    const db::Connection connection = open(u"ReadOnly=refused"_s);
    EXPECT_EQ(outcome(connection, u"warn 01000 5701 Changed to ascuns-77"_s).number(), 0);
    EXPECT_NE(outcome(connection, u"fail 42000 102 Incorrect syntax"_s).number(), 0);
    EXPECT_EQ(heard(), (QStringList{u"HYC00 0 Access mode is not supported"_s, u"01000 5701 Changed to ***"_s,
                                    u"42000 102 Incorrect syntax"_s}));
}

}  // namespace
}  // namespace velcoran::odbc
