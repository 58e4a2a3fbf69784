#include "system/durable_file.h"
#include "system/file_name.h"
#include "system/numeric_locale.h"

#include "base/error.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>

#include <gtest/gtest.h>

#include <fcntl.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/un.h>
#include <unistd.h>
#include <csignal>
#include <cstdio>
#include <random>
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

TEST_F(DurableFileTest, aLinkToAnOpenPipeIsAPipe) {
    int ends[2];
    ASSERT_EQ(::pipe(ends), 0);
    const QByteArray open = "/proc/self/fd/" + QByteArray::number(ends[1]);  // as /dev/stdout is
    ASSERT_EQ(::symlink(open.constData(), bytes(u"iesire"_s).constData()), 0);
    for (const DurableFile::Use use : kUses) {
        char got[8] = {};
        ASSERT_EQ(written(u"iesire"_s, use), QString());
        EXPECT_EQ(::read(ends[0], got, sizeof(got)), 3);
        EXPECT_STREQ(got, "nou");
    }
    for (const int end : ends) ::close(end);
}

TEST_F(DurableFileTest, aReaderThatGoesIsAFailureAndNotTheEndOfTheProcess) {
    ASSERT_EQ(std::signal(SIGPIPE, SIG_DFL), SIG_DFL) << "as in most hosts";
    ASSERT_EQ(::mkfifo(bytes(u"teava"_s).constData(), 0600), 0);
    std::thread reader([&] { ::close(::open(bytes(u"teava"_s).constData(), O_RDONLY)); });
    DurableFile file(path(u"teava"_s));
    reader.join();
    file.write("nou");
    try {
        file.commit();
        ADD_FAILURE() << "nobody has read it";
    } catch (const base::Error& error) {
        EXPECT_TRUE(error.description().endsWith(u"nimeni nu mai citește"_s));
    }
    sigset_t waiting;
    sigemptyset(&waiting);
    ASSERT_EQ(::sigpending(&waiting), 0);
    EXPECT_EQ(sigismember(&waiting, SIGPIPE), 0) << "nor later";
}

TEST_F(DurableFileTest, aPrivateFileIsPrivateWhileItIsWritten) {
    put(u"salarii"_s, "vechi");
    ASSERT_EQ(::chmod(bytes(u"salarii"_s).constData(), 0640), 0);
    const DurableFile file(path(u"salarii"_s), DurableFile::Use::named);
    struct stat found {};
    ASSERT_EQ(::stat(file.path().constData(), &found), 0);
    EXPECT_EQ(found.st_mode & 07777, 0600U);
}

TEST_F(DurableFileTest, aFileThatSomebodyPutInItsPlaceIsNotTaken) {
    put(u"vechi"_s, "vechi");
    {
        DurableFile file(path(u"vechi"_s), DurableFile::Use::named);
        const QByteArray name = file.path();
        ASSERT_EQ(::unlink(name.constData()), 0);
        ASSERT_EQ(::symlink("vechi", name.constData()), 0);
        EXPECT_THROW(file.commit(), base::Error);
    }
    EXPECT_EQ(content(u"vechi"_s), "vechi");
}

TEST(NameTextTest, givesBackWhatItWasGiven) {
    const QByteArray alphabet("a\xEF\xBB\xBF\xFF\xC8\x99\xED\xB2\x80\xF0\x9F\x98\xBF\xFE", 15);
    std::mt19937 random(7);
    for (int round = 0; round < 20'000; ++round) {
        QByteArray name;
        for (auto left = random() % 8; left > 0; --left) name += alphabet[static_cast<int>(random() % 15)];
        ASSERT_EQ(nameBytes(nameText(name)), name) << name.toHex().constData();
    }
}

TEST_F(DurableFileTest, namesKeepTheirBytes) {
    for (const QByteArray& name : {QByteArray("a\xFF\xE9.csv"), QByteArray("\xC8\x99ir"), QByteArray("\xF0\x9F"),
                                   QByteArray("\xED\xB2\x80x"), QByteArray("\xEF\xBB\xBFmark")}) {
        EXPECT_EQ(nameBytes(nameText(name)), name) << name.toHex().constData();
        EXPECT_EQ(written(nameText(name)), QString());
        struct stat found {};
        const QByteArray full = QFile::encodeName(folder.path()) + '/' + name;
        EXPECT_EQ(::stat(full.constData(), &found), 0);
        ::unlink(full.constData());  // the folder's own end does not know such names
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
