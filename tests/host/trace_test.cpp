#include "host/trace.h"

#include "host/data_source.h"

#include "db/connection.h"
#include "support/test_data.h"

#include <QFile>
#include <QTemporaryDir>

#include <gtest/gtest.h>

using namespace Qt::StringLiterals;

namespace velcoran::host {
namespace {

TEST(Trace, tellsStatementsRowsTimesAndErrors) {
    const QTemporaryDir folder;
    const QString path = folder.filePath(u"urma.txt"_s);
    {
        const OpenedConnection source = openSource({tests::dataPath(u"session/example.db"_s), {}, path});
        const db::Connection connection(source.connection);
        const db::Rows rows = connection.openRowset(u"SELECT p FROM\n CPP"_s);
        while (rows.fetch() != nullptr) {
        }
        const db::Statement statement = connection.prepare(u"SELECT Agent FROM Agenti"_s);
        const db::Rows agents = statement.run();
        while (agents.fetch(5) != nullptr) {
        }
        EXPECT_THROW((void)connection.execute(u"SELECT x FROM Nimic"_s), base::Error);
        EXPECT_THROW((void)connection.execute(u"DELETE FROM Agenti"_s), base::Error);
    }
    QFile file(path);
    ASSERT_TRUE(file.open(QIODevice::ReadOnly));
    EXPECT_EQ(file.permissions() & (QFile::ReadGroup | QFile::ReadOther), QFile::Permissions());
    const QStringList lines = QString::fromUtf8(file.readAll()).split(u'\n');
    const auto has = [&lines](const QString& text) { return lines.filter(text).size(); };
    EXPECT_EQ(has(u"recordset: SELECT p FROM CPP"_s), 1);
    EXPECT_EQ(has(u" 16 rows, "_s), 1);
    EXPECT_EQ(has(u"command: SELECT Agent FROM Agenti"_s), 1);
    EXPECT_EQ(has(u" 12 rows, "_s), 1);
    EXPECT_EQ(has(u"error -2147217865: no such table: Nimic"_s), 1) << qPrintable(lines.join(u'\n'));
    EXPECT_EQ(has(u"error -2147217900: Interogarea a fost oprită"_s), 1);
}

TEST(Trace, aFileThatCannotBeOpenedIsAnError) {
    const QTemporaryDir folder;
    EXPECT_THROW((void)openSource({tests::dataPath(u"session/example.db"_s), {}, folder.path()}), base::Error);
}

}  // namespace
}  // namespace velcoran::host
