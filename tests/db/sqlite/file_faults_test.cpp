#include "db/sqlite/database.h"

#include "support/test_data.h"
#include "test_file.h"

#include "base/error.h"

#include <QFile>
#include <QFileInfo>

#include <gtest/gtest.h>

#include <functional>

#include <sys/stat.h>
#include <unistd.h>

namespace velcoran::sqlite {
namespace {

using namespace Qt::StringLiterals;

constexpr const char* kRows =
    "CREATE TABLE t (i INTEGER, v TEXT, w TEXT);"
    "WITH RECURSIVE n(i) AS (SELECT 1 UNION ALL SELECT i+1 FROM n LIMIT 3000)"
    "INSERT INTO t SELECT i, 'rand ' || i, replace(hex(zeroblob(i % 7 * 400)), '0', 'x') FROM n;";
constexpr const char* kWal = "PRAGMA journal_mode = WAL;";

/// Reads on; every row that comes must be whole. @return number of the error at the end, 0 for all rows
std::int32_t readOn(const db::Rows& rows, qint64 expected) {
    try {
        while (const RowBlock* block = rows.fetch(50)) {
            const auto* numbers = static_cast<const std::int64_t*>(block->columns[0].values);
            const ColumnBlock& texts = block->columns[2];
            const auto* units = static_cast<const char16_t*>(texts.values);
            for (std::uint32_t row = 0; row < block->rowCount; ++row) {
                EXPECT_EQ(numbers[row], ++expected);
                const QStringView text(units + texts.offsets[row], units + texts.offsets[row + 1]);
                EXPECT_TRUE(text == QString(expected % 7 * 800, u'x')) << expected << ": " << text.size();
            }
        }
    } catch (const base::Error& error) {
        EXPECT_TRUE(error.description().contains(u"test.db: "_s)) << error.what();
        return error.number();
    }
    EXPECT_EQ(expected, 3000);
    return 0;
}

/// A file that another program cuts while it is read.
TEST(FileFaults, aCutFileIsAnErrorAndNoWrongText) {
    for (const bool isWal : {false, true}) {
        const TestFile whole((isWal ? std::string(kWal) + kRows : std::string(kRows)).c_str());
        const qint64 size = QFileInfo(whole.path()).size();
        for (const qint64 left :
             {qint64{0}, qint64{50}, qint64{4096}, size / 2, size / 2 / 4096 * 4096, size - 4096, size - 1}) {
            SCOPED_TRACE(left);
            const TestFile file((isWal ? std::string(kWal) + kRows : std::string(kRows)).c_str());
            const db::Rows rows = file.connection().execute(u"SELECT i, v, w FROM t"_s);
            ASSERT_NE(rows.fetch(5), nullptr);
            ASSERT_TRUE(QFile(file.path()).resize(left));
            EXPECT_EQ(readOn(rows, 5), base::kProviderFailure);
            EXPECT_NE(file.errorNumber(u"SELECT Sum(Len(w)) FROM t"_s), 0);
        }
    }
}

/// The index of a write-ahead log is memory that all share who have the database open.
TEST(FileFaults, aCutSharedIndexHurtsNobody) {
    const TestFile file((std::string(kWal) + kRows).c_str());
    const TestFile::Writer writer(file);
    writer.run("UPDATE t SET v = 'altfel' WHERE i = 1");
    EXPECT_EQ(file.value(u"SELECT v FROM t WHERE i = 1"_s), u"altfel"_s);
    const db::Rows rows = file.connection().execute(u"SELECT i, v, w FROM t"_s);
    ASSERT_NE(rows.fetch(5), nullptr);
    ASSERT_TRUE(QFile(file.path() + u"-shm"_s).resize(0));
    EXPECT_EQ(readOn(rows, 5), 0);
}

TEST(FileFaults, readsAWriteAheadLogWhileItIsWritten) {
    // A log that was written back whole is begun anew by the next change, unless a reader uses it.
    for (const char* beforehand : {"", "PRAGMA wal_checkpoint(PASSIVE)"}) {
        SCOPED_TRACE(beforehand);
        const TestFile file((std::string(kWal) + kRows).c_str());
        const TestFile::Writer writer(file);
        writer.run("PRAGMA wal_autocheckpoint = 0; UPDATE t SET v = 'm' || i");
        writer.run(beforehand);
        const db::Rows before = file.connection().execute(u"SELECT i, v, w FROM t"_s);
        ASSERT_NE(before.fetch(5), nullptr);
        for (int i = 0; i < 5; ++i) {
            writer.run("UPDATE t SET w = w || 'y', v = 'n' || (SELECT Count(*) FROM t)");
            writer.run("INSERT INTO t (i) VALUES (0)");
            static_cast<void>(writer.tryRun("PRAGMA wal_checkpoint(RESTART)"));
        }
        EXPECT_EQ(readOn(before, 5), 0) << "a reader sees the rows as they were when it began";
        EXPECT_EQ(file.value(u"SELECT v FROM t WHERE i = 7"_s), u"n3004"_s);
        writer.run("PRAGMA wal_checkpoint(TRUNCATE); UPDATE t SET v = 'x'; PRAGMA wal_checkpoint(TRUNCATE);");
        EXPECT_EQ(file.value(u"SELECT v FROM t WHERE i = 7"_s), u"x"_s);
        EXPECT_EQ(file.value(u"SELECT Count(*) FROM t"_s), u"3005"_s);
    }
}

/// Gives up the rights of a superuser, whom no folder is closed to.
class OrdinaryUser {
public:
    OrdinaryUser() {
        constexpr uid_t kNobody = 65534;
        EXPECT_EQ(getuid() == 0 ? seteuid(kNobody) : 0, 0);
    }
    ~OrdinaryUser() { EXPECT_EQ(seteuid(getuid()), 0); }
    OrdinaryUser(const OrdinaryUser&) = delete;
    OrdinaryUser& operator=(const OrdinaryUser&) = delete;
};

base::Error openError(const QString& path) {
    try {
        static_cast<void>(openDatabase(path));
    } catch (const base::Error& error) {
        return error;
    }
    return {0, {}};
}

TEST(FileFaults, aWriteAheadLogInAFolderForReadingSaysSo) {
    const TestFile file((std::string(kWal) + kRows).c_str());
    const QTemporaryDir folder;
    const QString path = folder.filePath(u"închis.db"_s);
    {
        const TestFile::Writer writer(file);
        writer.run("PRAGMA wal_checkpoint(TRUNCATE)");
        ASSERT_TRUE(QFile::copy(file.path(), path));
    }
    const QByteArray place = folder.path().toLocal8Bit();
    ASSERT_EQ(chmod(place.constData(), 0555), 0);
    const base::Error error = [&path] {
        const OrdinaryUser user;
        return openError(path);
    }();
    EXPECT_EQ(chmod(place.constData(), 0755), 0);
    EXPECT_EQ(error.number(), base::kProviderFailure);
    EXPECT_TRUE(error.description().startsWith(path + u": "_s)) << error.what();
    EXPECT_TRUE(error.description().contains(u"WAL"_s)) << error.what();
    EXPECT_TRUE(error.description().contains(u"drept de scriere"_s)) << error.what();
}

TEST(FileFaults, aDatabaseLeftHalfWrittenSaysSo) {
    const TestFile file(kRows);
    const QTemporaryDir folder;
    const QString path = folder.filePath(u"test.db"_s);
    {
        const TestFile::Writer writer(file);
        writer.run("PRAGMA cache_size = 1; BEGIN; UPDATE t SET v = 'altfel' || i, w = '';");
        ASSERT_TRUE(QFile::copy(file.path(), path));
        ASSERT_TRUE(QFile::copy(file.path() + u"-journal"_s, path + u"-journal"_s));
        writer.run("ROLLBACK");
    }
    const base::Error error = openError(path);
    EXPECT_EQ(error.number(), base::kProviderFailure);
    EXPECT_TRUE(error.description().startsWith(path + u": "_s)) << error.what();
    EXPECT_TRUE(error.description().contains(u"test.db-journal"_s)) << error.what();
    // The same while the connection is open already.
    ASSERT_TRUE(QFile::copy(path + u"-journal"_s, file.path() + u"-journal"_s));
    EXPECT_EQ(file.errorNumber(u"SELECT Count(*) FROM t"_s), base::kProviderFailure);
}

}  // namespace
}  // namespace velcoran::sqlite
