#include "host/sample_data/sample_data.h"

#include "base/error.h"
#include "db/row_set.h"
#include "db/sqlite/database.h"
#include "support/direct_call_runner.h"
#include "support/test_data.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>

#include <gtest/gtest.h>

namespace velcoran::host {
namespace {

using namespace Qt::StringLiterals;

class SampleDataTest : public testing::Test {
protected:
    [[nodiscard]] QString path(const QString& name) const { return folder.filePath(name); }
    [[nodiscard]] static QByteArray contents(const QString& path) {
        QFile file(path);
        return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
    }

    QTemporaryDir folder;
};

QString firstValue(const QString& path, const QString& statement) {
    db::RowSet rows;
    tests::DirectCallRunner runner;
    rows.open(db::Connection(sqlite::openDatabase(path)), statement, runner);
    return rows.field(0).value_or(QString());
}

TEST_F(SampleDataTest, equalOptionsGiveEqualFiles) {
    const SampleOptions options{.documents = 120, .seed = 5};
    for (const auto write : {writeSampleDatabase, writeSampleScript}) {
        write(path(u"one"_s), options);
        write(path(u"two"_s), options);
        write(path(u"other"_s), {.documents = 120, .seed = 6});
        const QByteArray first = contents(path(u"one"_s));
        EXPECT_FALSE(first.isEmpty());
        EXPECT_TRUE(first == contents(path(u"two"_s)));
        EXPECT_FALSE(first == contents(path(u"other"_s)));
    }
    EXPECT_EQ(QDir(folder.path()).entryList(QDir::Files).size(), 3) << "nothing is left beside the files";
}

struct CountCase {
    const char* what;
    const char* statement;
};

TEST_F(SampleDataTest, holdsTheOddRecords) {
    writeSampleDatabase(path(u"db"_s), {.documents = 3000, .year = 2024});
    constexpr CountCase kCases[] = {
        {"a leap day", "SELECT count(*) FROM CapDocIntE WHERE [Data Documentului] Like '2024-02-29%'"},
        {"a supplier without a record",
         "SELECT count(*) FROM CapDocIntE WHERE EC=63 AND Furnizor NOT IN (SELECT Furnizor FROM Furnizori)"},
        {"a document without lines",
         "SELECT count(*) FROM CapDocIntE WHERE Document NOT IN (SELECT Document FROM [Linii DocIntE])"},
        {"a time of day", "SELECT count(*) FROM CapDocIntE WHERE len([Data Documentului])=19"},
        {"a null name", "SELECT count(*) FROM CapDocIntE WHERE [Denumire Furnizor] IS NULL"},
        {"a null rate", "SELECT count(*) FROM CapDocIntE WHERE [Curs Valutar] IS NULL"},
        {"a zero rate", "SELECT count(*) FROM CapDocIntE WHERE [Curs Valutar] = 0"},
        {"a code under two names",
         "SELECT count(*) FROM (SELECT 1 FROM CapDocIntE GROUP BY Furnizor HAVING count(DISTINCT [Denumire "
         "Furnizor])>1)"},
        {"an apostrophe", "SELECT count(*) FROM Furnizori WHERE [Denumire Furnizor] Like '%''%'"},
        {"letters with marks", "SELECT count(*) FROM Magazine WHERE [Denumire Magazin] Like '%[șț]%'"},
        {"a line of an unknown product",
         "SELECT count(*) FROM [Linii DocIntE] WHERE [Cod Produs] NOT IN (SELECT [Cod Produs] FROM CoduriProdus)"},
        {"other kinds of document", "SELECT count(*) FROM CapDocIntE WHERE EC NOT IN (63,89,13,79)"},
        {"a negative amount", "SELECT count(*) FROM CapDocIntE WHERE [Valoare Neta] < 0"},
        {"statistics", "SELECT count(*) FROM sqlite_stat1"},
    };
    for (const CountCase& one : kCases) {
        const int count = firstValue(path(u"db"_s), QString::fromUtf8(one.statement)).toInt();
        EXPECT_GT(count, 0) << one.what;
        EXPECT_LT(count, 1000) << one.what << ": odd records are few";
    }
    const QString all = u"SELECT count(DISTINCT %1) FROM %2"_s;
    EXPECT_EQ(firstValue(path(u"db"_s), all.arg(u"Document"_s, u"CapDocIntE"_s)), u"3000"_s);
    EXPECT_EQ(firstValue(path(u"db"_s), all.arg(u"Fel"_s, u"TipuriProduse"_s)), u"9"_s);
    EXPECT_EQ(firstValue(path(u"db"_s), all.arg(u"[Tip Valuta]"_s, u"CapDocIntE"_s)), u"6"_s);
    EXPECT_EQ(firstValue(path(u"db"_s), u"SELECT An FROM An"_s), u"2024"_s);
    EXPECT_EQ(firstValue(path(u"db"_s), u"SELECT min(substr([Data Documentului],1,10)) FROM CapDocIntE"_s),
              u"2023-12-01"_s);
}

TEST_F(SampleDataTest, scriptIsWhatTheServerTakes) {
    writeSampleScript(path(u"sql"_s), {.documents = 1100});
    const QByteArray script = contents(path(u"sql"_s));
    EXPECT_TRUE(script.startsWith("\xEF\xBB\xBF"));
    EXPECT_TRUE(script.contains("[Valoare Neta] DECIMAL(19,4) NULL"));
    EXPECT_TRUE(script.contains("N'D''ORIZONT IMPORT SRL'"));
    EXPECT_TRUE(script.contains("CREATE INDEX i_linii_document ON [Linii DocIntE] ([Document]);"));
    int inserts = 0;
    int batches = 0;
    for (const QByteArray& batch : script.split('\n')) {
        if (batch.startsWith("INSERT INTO [CapDocIntE]")) ++inserts;
        if (batch == "GO") ++batches;
    }
    EXPECT_EQ(inserts, 2) << "at most 1000 rows each";
    EXPECT_GT(batches, 30);
    EXPECT_TRUE(script.endsWith(";\nGO\n"));
}

TEST_F(SampleDataTest, failureLeavesTheOldFile) {
    QFile old(path(u"db"_s));
    ASSERT_TRUE(old.open(QIODevice::WriteOnly));
    old.write("old");
    old.close();
    for (const auto write : {writeSampleDatabase, writeSampleScript}) {
        EXPECT_THROW(write(path(u"db"_s), {.documents = -1}), base::Error);
        EXPECT_THROW(write(path(u"none/db"_s), {.documents = 1}), base::Error);
        EXPECT_THROW(write(folder.path(), {.documents = 1}), base::Error);
    }
    EXPECT_EQ(contents(path(u"db"_s)), "old");
    EXPECT_EQ(QDir(folder.path()).entryList(QDir::Files), QStringList{u"db"_s});
}

}  // namespace
}  // namespace velcoran::host
