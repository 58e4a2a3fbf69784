#include "system/durable_file.h"
#include "system/file_name.h"
#include "system/numeric_locale.h"

#include "base/error.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>

#include <gtest/gtest.h>

#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/un.h>
#include <unistd.h>
#include <cstdio>
#include <thread>

using namespace Qt::StringLiterals;

namespace velcoran::system {
namespace {

struct DurableFileTest : testing::Test {
    [[nodiscard]] QString path(const QString& name) const { return folder.filePath(name); }
    [[nodiscard]] QByteArray bytes(const QString& name) const { return nameBytes(path(name)); }
    [[nodiscard]] QByteArray content(const QString& name) const {
        QFile file(path(name));
        return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray("(none)");
    }
    void put(const QString& name, const QByteArray& content) const {
        QFile file(path(name));
        ASSERT_TRUE(file.open(QIODevice::WriteOnly));
        file.write(content);
    }
    [[nodiscard]] QStringList entries() const {
        return QDir(folder.path()).entryList(QDir::AllEntries | QDir::Hidden | QDir::System | QDir::NoDotAndDotDot);
    }
    /// Writes a text and commits. @return what went wrong, empty when nothing did
    [[nodiscard]] QString written(const QString& name, DurableFile::Use use = DurableFile::Use::stream) const {
        try {
            DurableFile file(path(name), use);
            if (use == DurableFile::Use::stream) {
                file.write("nou");
            } else {
                FILE* opened = std::fopen(file.path().constData(), "wb");
                if (opened == nullptr) return u"not opened"_s;
                std::fputs("nou", opened);
                std::fclose(opened);
            }
            file.commit();
            return {};
        } catch (const base::Error& error) {
            EXPECT_EQ(error.number(), base::kPathAccess);
            EXPECT_TRUE(error.description().contains(path(name)));
            return error.description().section(u": "_s, 1);
        }
    }

    QTemporaryDir folder;
};

constexpr DurableFile::Use kUses[] = {DurableFile::Use::stream, DurableFile::Use::byPath, DurableFile::Use::named};

TEST_F(DurableFileTest, takesItsPlaceWholeAndKeepsTheModeOfTheOldFile) {
    for (const DurableFile::Use use : kUses) {
        put(u"vechi"_s, "vechi");
        ASSERT_EQ(::chmod(bytes(u"vechi"_s).constData(), 0640), 0);
        EXPECT_EQ(written(u"vechi"_s, use), QString());
        EXPECT_EQ(content(u"vechi"_s), "nou");
        struct stat found {};
        ASSERT_EQ(::stat(bytes(u"vechi"_s).constData(), &found), 0);
        EXPECT_EQ(found.st_mode & 07777, 0640U);
        EXPECT_EQ(entries(), QStringList{u"vechi"_s});
    }
}

TEST_F(DurableFileTest, leavesNothingWithoutACommit) {
    put(u"vechi"_s, "vechi");
    for (const DurableFile::Use use : kUses) {
        DurableFile file(path(u"vechi"_s), use);
        file.write(QByteArray(300'000, 'x'));
        EXPECT_EQ(entries().size(), use == DurableFile::Use::named ? 2 : 1) << "beside its place without a name";
    }
    EXPECT_EQ(entries(), QStringList{u"vechi"_s});
    EXPECT_EQ(content(u"vechi"_s), "vechi");
}

TEST_F(DurableFileTest, removesWhatIsUnfinishedAndNothingElse) {
    put(u"vechi"_s, "vechi");
    put(u".0123456789abcdef01234567"_s, "al altcuiva");
    QFile opened(path(u"vechi"_s));
    ASSERT_TRUE(opened.open(QIODevice::ReadOnly));
    DurableFile first(path(u"vechi"_s), DurableFile::Use::named);
    DurableFile second(path(u"nou"_s), DurableFile::Use::named);
    ASSERT_EQ(entries().size(), 4);
    removeUnfinishedFiles();
    EXPECT_EQ(entries(), (QStringList{u".0123456789abcdef01234567"_s, u"vechi"_s}));
}

TEST_F(DurableFileTest, followsTheTargetsOwnLinkAndKeepsIt) {
    put(u"departe"_s, "vechi");
    ASSERT_EQ(::symlink("departe", bytes(u"legatura"_s).constData()), 0);
    ASSERT_EQ(::symlink("gol", bytes(u"goala"_s).constData()), 0);
    EXPECT_EQ(written(u"legatura"_s), QString());
    EXPECT_EQ(written(u"goala"_s), QString());
    EXPECT_EQ(content(u"departe"_s), "nou");
    EXPECT_EQ(content(u"gol"_s), "nou");
    EXPECT_TRUE(QFileInfo(path(u"legatura"_s)).isSymLink());
    EXPECT_TRUE(QFileInfo(path(u"goala"_s)).isSymLink());
}

TEST_F(DurableFileTest, refusesWhatIsNoFileWithItsReason) {
    ASSERT_TRUE(QDir(folder.path()).mkdir(u"dosar"_s));
    ASSERT_EQ(::symlink("bucla", bytes(u"bucla"_s).constData()), 0);
    sockaddr_un address{};
    address.sun_family = AF_UNIX;
    std::snprintf(address.sun_path, sizeof(address.sun_path), "%s", bytes(u"socket"_s).constData());
    const int listening = ::socket(AF_UNIX, SOCK_STREAM, 0);
    ASSERT_EQ(::bind(listening, reinterpret_cast<const sockaddr*>(&address), sizeof(address)), 0);
    const std::pair<QString, QString> cases[] = {{u"dosar"_s, u"este un dosar"_s},
                                                 {u"bucla"_s, u"legătura nu duce nicăieri"_s},
                                                 {u"socket"_s, u"este un socket"_s},
                                                 {u"lipsa/fisier"_s, u"dosarul nu există"_s},
                                                 {QString(300, u'n'), u"numele este prea lung"_s}};
    for (const auto& [name, words] : cases)
        for (const DurableFile::Use use : kUses) EXPECT_EQ(written(name, use), words) << qPrintable(name.left(10));
    ::close(listening);
    EXPECT_EQ(entries(), (QStringList{u"bucla"_s, u"dosar"_s, u"socket"_s}));
}

TEST_F(DurableFileTest, aPipeIsWrittenToAndStays) {
    ASSERT_EQ(::mkfifo(bytes(u"teava"_s).constData(), 0600), 0);
    for (const DurableFile::Use use : kUses) {
        QByteArray got;
        std::thread reader([&] { got = content(u"teava"_s); });
        EXPECT_EQ(written(u"teava"_s, use), QString());
        reader.join();
        EXPECT_EQ(got, "nou");
        EXPECT_EQ(entries(), QStringList{u"teava"_s});
    }
}

TEST_F(DurableFileTest, namesKeepTheirBytes) {
    for (const QByteArray& name : {QByteArray("a\xFF\xE9.csv"), QByteArray("\xC8\x99ir"), QByteArray("\xF0\x9F"),
                                   QByteArray("\xED\xB2\x80x"), QByteArray("plain")}) {
        EXPECT_EQ(nameBytes(nameText(name)), name) << name.toHex().constData();
        EXPECT_EQ(written(nameText(name)), QString());
        struct stat found {};
        EXPECT_EQ(::stat((QFile::encodeName(folder.path()) + '/' + name).constData(), &found), 0);
    }
}

TEST(NumericLocaleTest, isTheThreadsAloneAndEnds) {
    char number[16];
    const locale_t before = uselocale(nullptr);
    {
        const NumericLocale plain;
        std::snprintf(number, sizeof(number), "%.1f", 1.5);
        EXPECT_STREQ(number, "1.5");
        std::thread([] { EXPECT_EQ(uselocale(nullptr), LC_GLOBAL_LOCALE); }).join();
    }
    EXPECT_EQ(uselocale(nullptr), before);
}

}  // namespace
}  // namespace velcoran::system
