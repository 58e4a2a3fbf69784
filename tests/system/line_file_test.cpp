#include "system/line_file.h"

#include "base/error.h"

#include <QFile>
#include <QTemporaryDir>

#include <gtest/gtest.h>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>
#include <csignal>

using namespace Qt::StringLiterals;

namespace velcoran::system {
namespace {

struct LineFileTest : testing::Test {
    [[nodiscard]] static QString failureOf(const QString& file) {
        try {
            LineFile(file).append("linie");
        } catch (const base::Error& error) {
            return error.description();
        }
        return {};
    }
    QTemporaryDir folder;
    QString file = folder.filePath(u"urma.txt"_s);
};

TEST_F(LineFileTest, addsWholeLinesAtOnceAndForItsOwnerAlone) {
    const mode_t mask = ::umask(0);
    LineFile one(file);
    ::umask(mask);
    struct stat found {};
    ASSERT_EQ(::stat(QFile::encodeName(file).constData(), &found), 0);
    EXPECT_EQ(found.st_mode & 07777U, 0600U);
    LineFile other(file);
    one.append("una");
    other.append("două");
    one.append("trei");
    QFile read(file);
    ASSERT_TRUE(read.open(QIODevice::ReadOnly));
    EXPECT_EQ(read.readAll(), "una\ndouă\ntrei\n") << "while both are still open";
}

TEST_F(LineFileTest, saysWhyAFileCannotBeWritten) {
    EXPECT_TRUE(failureOf(folder.path()).contains(u"este un dosar"));
    EXPECT_TRUE(failureOf(folder.filePath(u"x/y"_s)).contains(u"dosarul nu există"));
    const QByteArray pipe = QFile::encodeName(folder.filePath(u"conducta"_s));
    ASSERT_EQ(::mkfifo(pipe.constData(), 0600), 0);
    EXPECT_TRUE(failureOf(folder.filePath(u"conducta"_s)).contains(u"nimeni nu mai citește")) << "and does not wait";

    const auto before = std::signal(SIGPIPE, SIG_IGN);
    const int reader = ::open(pipe.constData(), O_RDONLY | O_NONBLOCK);
    LineFile line(folder.filePath(u"conducta"_s));
    EXPECT_NO_THROW(line.append("una"));
    ::close(reader);
    EXPECT_THROW(line.append("două"), base::Error);
    std::signal(SIGPIPE, before);
}

}  // namespace
}  // namespace velcoran::system
