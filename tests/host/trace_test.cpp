#include "host/session/trace.h"
#include "host/session/data_source.h"

#include "base/error.h"
#include "db/connection.h"
#include "support/test_data.h"

#include <QFile>
#include <QRegularExpression>
#include <QTemporaryDir>

#include <gtest/gtest.h>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>
#include <csignal>

using namespace Qt::StringLiterals;

namespace velcoran::host {
namespace {

struct TraceTest : testing::Test {
    /// The lines so far, each without its moment and with zero for every time.
    [[nodiscard]] QStringList lines() const {
        static const QRegularExpression kMoment(
            u"^\\d{4}-\\d\\d-\\d\\dT\\d\\d:\\d\\d:\\d\\d\\.\\d{3}(?:Z|[+-]\\d\\d:\\d\\d) "_s);
        static const QRegularExpression kTime(u"after \\d+\\.\\d{3} s"_s);
        QFile read(file);
        if (!read.open(QIODevice::ReadOnly)) return {};
        QStringList found = QString::fromUtf8(read.readAll()).split(u'\n');
        EXPECT_EQ(found.takeLast(), QString()) << "the last line is whole";
        for (QString& line : found) {
            EXPECT_TRUE(line.contains(kMoment)) << qPrintable(line);
            line.remove(kMoment).replace(kTime, u"after 0 s"_s);
        }
        return found;
    }
    QTemporaryDir folder;
    QString file = folder.filePath(u"urma.txt"_s);
    QString database = tests::dataPath(u"session/example.db"_s);
};

std::int64_t readAll(const db::Rows& rows) {
    std::int64_t count = 0;
    while (const RowBlock* block = rows.fetch()) count += block->rowCount;
    return count;
}

TEST_F(TraceTest, tellsStatementsRowsTimesAndFailures) {
    std::int64_t agents = 0;
    {
        const OpenedConnection source = openSource({database, {}}, openTrace(file));
        const db::Connection connection(source.connection);
        agents = readAll(connection.execute(u"SELECT\r\n\tAgent FROM Agenti"_s));
        (void)connection.openRowset(u"SELECT p FROM CPP"_s);
        const db::Statement prepared = connection.prepare(u"SELECT An FROM An"_s);
        EXPECT_EQ(readAll(prepared.run()), 1);
        EXPECT_EQ(readAll(prepared.run()), 1);
        EXPECT_THROW((void)connection.execute(u"SELECT '\\n' FROM Agenti DELETE FROM Agenti"_s), base::Error);
        EXPECT_THROW((void)connection.execute(u"SELECT x FROM Nimic"_s), base::Error);
        connection.cancel();
        source.close();
    }
    const QStringList expected{u"1 open database %1"_s.arg(database),
                               u"1 opened"_s,
                               u"1.1 execute SELECT\\r\\n\\tAgent FROM Agenti"_s,
                               u"1.1 answered after 0 s"_s,
                               u"1.1 first rows after 0 s"_s,
                               u"1.1 end of %1 rows after 0 s"_s.arg(agents),
                               u"1.2 recordset SELECT p FROM CPP"_s,
                               u"1.2 answered after 0 s"_s,
                               u"1.2 left at 0 rows after 0 s"_s,
                               u"1.3 command SELECT An FROM An"_s,
                               u"1.3 answered after 0 s"_s,
                               u"1.3 run"_s,
                               u"1.3 answered after 0 s"_s,
                               u"1.3 first rows after 0 s"_s,
                               u"1.3 end of 1 rows after 0 s"_s,
                               u"1.3 run"_s,
                               u"1.3 answered after 0 s"_s,
                               u"1.3 first rows after 0 s"_s,
                               u"1.3 end of 1 rows after 0 s"_s,
                               u"1.4 execute SELECT '\\\\n' FROM Agenti DELETE FROM Agenti"_s,
                               u"1.4 failed after 0 s -2147217900: Interogarea a fost oprită înainte de a ajunge la "
                               u"baza de date: conține cuvântul DELETE."_s,
                               u"1.5 execute SELECT x FROM Nimic"_s,
                               u"1.5 failed after 0 s -2147217865: no such table: Nimic"_s,
                               u"1 cancel"_s,
                               u"1 close"_s,
                               u"1 let go after 0 s"_s};
    EXPECT_EQ(lines(), expected);
}

TEST_F(TraceTest, addsToAFileThatIsThere) {
    for (int round = 0; round < 2; ++round) (void)openSource({database, {}}, openTrace(file));
    const auto trace = openTrace(file);
    (void)openSource({database, {}}, trace);
    EXPECT_THROW((void)openSource({folder.filePath(u"nimic.db"_s), {}}, trace), base::Error);
    const QStringList told = lines();
    EXPECT_EQ(told.filter(u"1 opened"_s).size(), 3);
    EXPECT_TRUE(told.last().startsWith(u"2 failed ")) << qPrintable(told.last());
    EXPECT_FALSE(openTrace(QString()));
    EXPECT_THROW((void)openTrace(folder.path()), base::Error);
}

TEST_F(TraceTest, namesNoConnectionText) {
    const auto trace = openTrace(file);
    EXPECT_THROW((void)openSource({{}, u"Driver=SQLite3;Database=/nimic/nimic.db;UID=eu;PWD=geheim99"_s}, trace),
                 base::Error);
    EXPECT_THROW((void)openSource({{}, u"Driver={Nu este};PWD=geheim99"_s}, trace), base::Error);
    const QString told = lines().join(u'\n');
    EXPECT_FALSE(told.contains(u"geheim99")) << qPrintable(told);
    EXPECT_TRUE(told.contains(u"2 record 01000 0: ")) << qPrintable(told);
}

TEST_F(TraceTest, isTakenAwayOnceWhenItCannotBeWritten) {
    const QByteArray pipe = QFile::encodeName(file);
    ASSERT_EQ(::mkfifo(pipe.constData(), 0600), 0);
    const auto before = std::signal(SIGPIPE, SIG_IGN);
    const int reader = ::open(pipe.constData(), O_RDONLY | O_NONBLOCK);
    const OpenedConnection source = openSource({database, {}}, openTrace(file));
    ::close(reader);
    testing::internal::CaptureStderr();
    EXPECT_EQ(readAll(db::Connection(source.connection).execute(u"SELECT An FROM An"_s)), 1) << "the work goes on";
    const std::string words = testing::internal::GetCapturedStderr();
    EXPECT_EQ(words.find("velcoran-host: the trace ends here: "), 0U);
    EXPECT_EQ(std::count(words.begin(), words.end(), '\n'), 1) << words;
    std::signal(SIGPIPE, before);
}

}  // namespace
}  // namespace velcoran::host
