#include "host/drive/recorder.h"
#include "host/session/data_source.h"

#include "db/connection.h"
#include "support/test_data.h"

#include <gtest/gtest.h>

using namespace Qt::StringLiterals;

namespace velcoran::host {
namespace {

QStringList taken(StatementLog& log) {
    QStringList texts;
    for (const RecordedStatement& each : log.take()) texts.append(each.via + u": "_s + each.text);
    return texts;
}

struct Recorder : testing::Test {
    OpenedConnection source = openSource({tests::dataPath(u"session/example.db"_s), {}});
    std::shared_ptr<StatementLog> log = std::make_shared<StatementLog>();
    db::Connection connection{recordConnection(source.connection, log)};
};

TEST_F(Recorder, recordsEveryWayInAndHandsItOn) {
    (void)connection.execute(u"SELECT An FROM An"_s);
    (void)connection.openRowset(u"SELECT p FROM CPP"_s);
    const db::Statement statement = connection.prepare(u"SELECT Agent FROM Agenti"_s);
    EXPECT_EQ(statement.columns().size(), 1);
    EXPECT_NE(statement.run().fetch(), nullptr);
    EXPECT_EQ(taken(*log), (QStringList{u"execute: SELECT An FROM An"_s, u"recordset: SELECT p FROM CPP"_s,
                                        u"command: SELECT Agent FROM Agenti"_s}));
    EXPECT_NE(statement.run().fetch(), nullptr);
    EXPECT_EQ(taken(*log), QStringList{u"command: SELECT Agent FROM Agenti"_s}) << "another run is recorded again";
}

TEST_F(Recorder, keepsTheProvidersFailuresAndMarks) {
    EXPECT_EQ(connection.isFreeThreaded(), db::Connection(source.connection).isFreeThreaded());
    const auto failureOf = [](const db::Connection& asked) -> QString {
        try {
            (void)asked.execute(u"SELECT x FROM Nimic"_s);
        } catch (const base::Error& error) {
            return QString::fromUtf8(error.what());
        }
        return {};
    };
    const QString words = failureOf(db::Connection(source.connection));
    EXPECT_FALSE(words.isEmpty());
    EXPECT_EQ(failureOf(connection), words);
    EXPECT_EQ(taken(*log), QStringList{u"execute: SELECT x FROM Nimic"_s});
    source.close();
    EXPECT_EQ(connection.interface()->State(), kStateClosed);
    EXPECT_TRUE(failureOf(connection).startsWith(u"3709"_s)) << qPrintable(failureOf(connection));
}

TEST_F(Recorder, noConnectionStaysNone) { EXPECT_FALSE(recordConnection({}, log)); }

}  // namespace
}  // namespace velcoran::host
