#include "db/sqlite/database.h"

#include "support/test_data.h"
#include "test_file.h"

#include "base/error.h"

#include <QFile>

#include <atomic>
#include <future>
#include <thread>

#include <gtest/gtest.h>

#include <sys/syscall.h>
#include <unistd.h>

namespace velcoran::sqlite {
namespace {

using namespace Qt::StringLiterals;

/// Reads a table, so that it holds the file's lock while it runs.
constexpr QStringView kEndless =
    u"WITH RECURSIVE n(i) AS (SELECT An FROM An UNION ALL SELECT i+1 FROM n) SELECT count(*) FROM n";
constexpr const char* kOneYear = "CREATE TABLE An (An INTEGER); INSERT INTO An VALUES (2026);";

struct ErrorCase {
    const char* statement;
    std::int32_t number;
};

TEST(Database, refusesEverythingButOneSelect) {
    constexpr ErrorCase kCases[] = {
        {"SELECT An FROM An", 0},
        {"SELECT An FROM An;", 0},
        {"  SELECT 1 ; ; -- nothing\n /* more */", 0},
        {"WITH x AS (SELECT 1) SELECT * FROM x", 0},
        {"SELECT 1; SELECT 2", base::kStatementError},
        {"SELECT 1; DELETE FROM An", base::kStatementError},
        {"SELECT 1; '", base::kStatementError},
        {"INSERT INTO An VALUES (1)", base::kStatementError},
        {"UPDATE An SET An = 1", base::kStatementError},
        {"DELETE FROM An", base::kStatementError},
        {"DROP TABLE An", base::kStatementError},
        {"CREATE TEMP TABLE x (a)", base::kStatementError},
        {"PRAGMA user_version", base::kStatementError},
        {"PRAGMA query_only = OFF", base::kStatementError},
        {"SELECT * FROM pragma_user_version", base::kStatementError},
        {"ATTACH 'x.db' AS x", base::kStatementError},
        {"BEGIN", base::kStatementError},
        {"VACUUM INTO 'x.db'", base::kStatementError},
        {"EXPLAIN SELECT 1", base::kStatementError},
        {"", base::kStatementError},
        {"-- only a comment", base::kStatementError},
        {"SELECT An FROM Lipsa", base::kNoSuchObject},
        {"SELECT Lipsa FROM An", base::kStatementError},
        {"SELECT \"lipsa\" FROM An", base::kStatementError},
        {"SELECT 'deschis", base::kStatementError},
        {"SELECT p FROM ALFA.dbo.CPP ORDER BY p", base::kStatementError},
        {"SELECT abs(-9223372036854775808)", base::kStatementError},
    };
    const TestFile file(kOneYear);
    for (const ErrorCase& one : kCases)
        EXPECT_EQ(file.errorNumber(QString::fromUtf8(one.statement)), one.number) << one.statement;
    EXPECT_EQ(file.value(u"SELECT An FROM An"_s), u"2026"_s);
}

TEST(Database, keepsTheDatabasesWords) {
    const TestFile file;
    try {
        static_cast<void>(file.connection().prepare(u"SELECT x FROM Lipsa"_s));
        ADD_FAILURE();
    } catch (const base::Error& error) {
        EXPECT_EQ(error.description(), u"no such table: Lipsa"_s);
    }
}

TEST(Database, saysThatAnotherHasTheDatabase) {
    const TestFile file(kOneYear);
    const TestFile::Writer writer(file);
    writer.run("BEGIN EXCLUSIVE");
    try {
        static_cast<void>(file.value(u"SELECT An FROM An"_s));
        ADD_FAILURE();
    } catch (const base::Error& error) {
        EXPECT_EQ(error.number(), base::kProviderFailure);
        EXPECT_EQ(error.description(),
                  u"Baza de date este blocată de altă operațiune (timpul de așteptare a expirat). Reîncercați.\n"
                  "database is locked"_s);
    }
    const db::Rows rows = file.connection().execute(u"SELECT An FROM An"_s);
    auto stopped = std::async(std::launch::async, [&] { EXPECT_THROW((void)rows.fetch(), base::Cancelled); });
    rows.cancel();
    stopped.get();
    writer.run("ROLLBACK");
    EXPECT_EQ(file.value(u"SELECT An FROM An"_s), u"2026"_s);
}

TEST(Database, opensNothingThatIsNoDatabase) {
    const QTemporaryDir folder;
    QFile text(folder.filePath(u"text"_s));
    ASSERT_TRUE(text.open(QIODevice::WriteOnly));
    text.write(QByteArray(5000, 'x'));
    text.close();
    for (const QString& path : {folder.filePath(u"missing"_s), folder.path(), text.fileName()}) {
        try {
            static_cast<void>(openDatabase(path));
            ADD_FAILURE() << path.toStdString();
        } catch (const base::Error& error) {
            EXPECT_EQ(error.number(), base::kProviderFailure);
            EXPECT_TRUE(error.description().startsWith(path + u": "_s)) << error.what();
        }
    }
    EXPECT_FALSE(QFile::exists(folder.filePath(u"missing"_s)));
}

TEST(Database, closedConnectionFailsEveryCall) {
    const TestFile file("CREATE TABLE An (An INTEGER); INSERT INTO An VALUES (2026), (2027);");
    const db::Connection& connection = file.connection();
    const db::Rows open = connection.execute(u"SELECT An FROM An"_s);
    ASSERT_NE(open.fetch(1), nullptr);
    const db::Statement prepared = connection.prepare(u"SELECT An FROM An"_s);
    EXPECT_EQ(connection.interface()->State(), kStateOpen);
    EXPECT_TRUE(connection.isFreeThreaded());
    closeDatabase(connection.interface());
    closeDatabase(connection.interface());
    EXPECT_EQ(connection.interface()->State(), kStateClosed);
    const std::function<void()> calls[] = {[&] { static_cast<void>(connection.execute(u"SELECT 1"_s)); },
                                           [&] { static_cast<void>(connection.openRowset(u"SELECT 1"_s)); },
                                           [&] { static_cast<void>(connection.prepare(u"SELECT 1"_s)); },
                                           [&] { static_cast<void>(prepared.run()); },
                                           [&] { static_cast<void>(open.fetch()); }};
    for (const auto& call : calls) {
        try {
            call();
            ADD_FAILURE();
        } catch (const base::Error& error) {
            EXPECT_EQ(error.number(), base::kInvalidConnection);
        }
    }
}

/// A statement without end on a thread of its own. It is known to run when the constructor returns.
class EndlessStatement {
public:
    explicit EndlessStatement(const TestFile& file) : m_rows(file.connection().execute(kEndless.toString())) {
        m_ended = std::async(std::launch::async, [this] {
            try {
                static_cast<void>(m_rows.fetch());
            } catch (const base::Cancelled&) {
                return base::Error(base::kStopped, {});
            } catch (const base::Error& error) {
                return error;
            }
            return base::Error(0, u"it ended by itself"_s);
        });
        file.awaitReader();
    }
    [[nodiscard]] const db::Rows& rows() const { return m_rows; }
    /// Number of the error that it ended with.
    [[nodiscard]] std::int32_t end() {
        const auto status = m_ended.wait_for(std::chrono::seconds(60));
        EXPECT_EQ(status, std::future_status::ready) << "the cancel did not end it";
        return m_ended.get().number();
    }

private:
    db::Rows m_rows;
    std::future<base::Error> m_ended;
};

/// Until a thread of this process waits for something, or is over.
void awaitSleep(long thread) {
    for (;;) {
        QFile state(u"/proc/self/task/%1/stat"_s.arg(thread));
        if (!state.open(QIODevice::ReadOnly)) return;
        const QByteArray line = state.readAll();
        if (line.isEmpty() || line.mid(line.lastIndexOf(')') + 2, 1) == "S") return;
        std::this_thread::yield();
    }
}

TEST(Database, isUsableAfterACancel) {
    const TestFile file(kOneYear);
    const db::Connection& connection = file.connection();
    for (const bool throughConnection : {true, false}) {
        EndlessStatement endless(file);
        if (throughConnection) {
            connection.cancel();
        } else {
            endless.rows().cancel();
        }
        EXPECT_EQ(endless.end(), base::kStopped);
        EXPECT_EQ(file.value(u"SELECT 1"_s), u"1"_s);
    }
    connection.cancel();
    EXPECT_EQ(file.value(u"SELECT 1"_s), u"1"_s) << "a cancel while nothing runs is forgotten";
}

TEST(Database, cancelBetweenFetchesFailsTheNextOne) {
    const TestFile file;
    const db::Statement statement = file.connection().prepare(u"SELECT 1 UNION SELECT 2"_s);
    const db::Rows rows = statement.run();
    ASSERT_NE(rows.fetch(1), nullptr);
    const db::Rows other = file.connection().execute(u"SELECT 3"_s);
    rows.cancel();
    EXPECT_NE(other.fetch(), nullptr) << "another statement's rows are not touched";
    EXPECT_THROW(static_cast<void>(rows.fetch(1)), base::Cancelled);
    EXPECT_EQ(statement.run().fetch()->rowCount, 2U);
}

TEST(Database, busyConnectionLetsCallsWaitTheirTurn) {
    const TestFile file(kOneYear);
    EndlessStatement endless(file);
    std::atomic_bool isCancelled = false;
    std::promise<long> thread;
    auto waiting = std::async(std::launch::async, [&] {
        thread.set_value(syscall(SYS_gettid));
        QString value = file.value(u"SELECT 5"_s);
        EXPECT_TRUE(isCancelled) << "it did not wait for the other statement";
        return value;
    });
    awaitSleep(thread.get_future().get());
    isCancelled = true;
    endless.rows().cancel();
    EXPECT_EQ(endless.end(), base::kStopped);
    EXPECT_EQ(waiting.get(), u"5"_s) << "the other statement's cancel is not its own";
}

}  // namespace
}  // namespace velcoran::sqlite
