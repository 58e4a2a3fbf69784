#include "com/registry.h"
#include "com/guid_text.h"

#include "base/error.h"
#include "support/test_data.h"

#include <velcoran/velcoran.h>

#include <QDir>
#include <QFile>
#include <QTemporaryDir>

#include <gtest/gtest.h>

#include <vector>

#include <sys/wait.h>
#include <unistd.h>

using namespace Qt::StringLiterals;

namespace velcoran::com {
namespace {

RegistryEntry entryOf(const QString& progId, const QString& library) {
    return {progId, kClassVelcoran, library, kTypeLibraryVelcoran, u"1.0"_s};
}

void writeText(const QString& path, const QByteArray& text) {
    QDir().mkpath(QFileInfo(path).path());
    QFile file(path);
    ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    file.write(text);
}

QByteArray readText(const QString& path) {
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

TEST(GuidText, isThePublishedForm) {
    EXPECT_EQ(guidText(kClassVelcoran), u"{7B2C9D40-61E5-4F3A-8C52-0D9A6E1733F4}"_s);
    EXPECT_EQ(guidFromText(u"{7b2c9d40-61e5-4f3a-8c52-0d9a6e1733f4}"_s), kClassVelcoran);
    EXPECT_EQ(guidFromText(u"{7b2c9d40-61e5}"_s), std::nullopt);
}

TEST(Registry, removesExactlyWhatItWrote) {
    const QTemporaryDir folder;
    const QString path = folder.filePath(u"a/registry.ini"_s);
    const QByteArray foreign =
        "\r\n  # kept by hand "
        "\n[Other.Class]\r\nnonsense\n\nClassId={00000000-0000-0000-0000-000000000001}\nLibrary=/o.so\n";
    writeText(path, foreign);
    writeEntry(path, entryOf(u"Velcoran.clsVelcoran"_s, u"/old/lib.so"_s));
    writeEntry(path, entryOf(u"Velcoran.clsVelcoran"_s, u"/nou/bibliotecă = 2.so"_s));
    const auto entry = readEntry(path, u"velcoran.CLSVELCORAN"_s);
    ASSERT_TRUE(entry.has_value());
    EXPECT_EQ(entry->library, u"/nou/bibliotecă = 2.so"_s);
    EXPECT_EQ(entry->classId, kClassVelcoran);
    EXPECT_EQ(entry->typeLibrary, kTypeLibraryVelcoran);
    EXPECT_TRUE(readText(path).contains("ThreadingModel=Apartment\n"));
    removeEntry(path, u"Velcoran.clsVelcoran"_s, u"/nou/bibliotecă = 2.so"_s);
    EXPECT_EQ(readText(path), foreign);
}

TEST(Registry, anothersLibraryUnderTheSameNameStays) {
    const QTemporaryDir folder;
    const QString path = folder.filePath(u"registry.ini"_s);
    const QByteArray others =
        "[velcoran.clsvelcoran]\nClassId={7B2C9D40-61E5-4F3A-8C52-0D9A6E1733F4}\nLibrary = \"/alt/lib.so\"\n";
    writeText(path, others);
    removeEntry(path, u"Velcoran.clsVelcoran"_s, u"/lib.so"_s);
    EXPECT_EQ(readText(path), others);
    removeEntry(path, u"Velcoran.clsVelcoran"_s, u"/alt/lib.so"_s);
    EXPECT_FALSE(QFile::exists(path));
}

TEST(Registry, isReadAsPeopleWriteIt) {
    const QTemporaryDir folder;
    const QString path = folder.filePath(u"a/registry.ini"_s);
    const struct {
        const char* text;
        QString library;
    } kCases[] = {
        {"[A.B]\nClassId={7B2C9D40-61E5-4F3A-8C52-0D9A6E1733F4}\nLibrary=/l.so\n", u"/l.so"_s},
        {"\xEF\xBB\xBF[ A.B ]\r\n classid = 7b2c9d40-61e5-4f3a-8c52-0d9a6e1733f4 \r\n LIBRARY = \"/l m.so\" \r\n",
         u"/l m.so"_s},
        {"; [A.B]\n[A.B]\nLibrary='/l.so'\nClassId=\"{7B2C9D40-61E5-4F3A-8C52-0D9A6E1733F4}\"", u"/l.so"_s},
        {"[A.B]\nClassId={7B2C9D40-61E5-4F3A-8C52-0D9A6E1733F4}\nLibrary=l.so\n", folder.filePath(u"a/l.so"_s)},
    };
    for (const auto& each : kCases) {
        writeText(path, each.text);
        const auto entry = readEntry(path, u"a.b"_s);
        ASSERT_TRUE(entry.has_value()) << each.text;
        EXPECT_EQ(entry->library, each.library) << each.text;
        EXPECT_EQ(entry->classId, kClassVelcoran);
    }
}

TEST(Registry, theFileGoesWithItsLastEntry) {
    const QTemporaryDir folder;
    const QString path = folder.filePath(u"registry.ini"_s);
    removeEntry(path, u"A.B"_s, u"/l.so"_s);
    writeEntry(path, entryOf(u"A.B"_s, u"/l.so"_s));
    ASSERT_TRUE(QFile::exists(path));
    removeEntry(path, u"A.B"_s, u"/l.so"_s);
    EXPECT_FALSE(QFile::exists(path));
}

TEST(Registry, damagedEntriesAreNone) {
    const QTemporaryDir folder;
    const QString path = folder.filePath(u"registry.ini"_s);
    for (const char* text : {"", "[A.B]\n", "[A.B]\nClassId=x\nLibrary=/l.so\n",
                             "[A.B]\nClassId={7B2C9D40-61E5-4F3A-8C52-0D9A6E1733F4}\n", "\xff\xfe\n[A.B"}) {
        writeText(path, text);
        EXPECT_FALSE(readEntry(path, u"A.B"_s).has_value()) << text;
    }
}

TEST(Registry, aHalfWrittenFileIsRepaired) {
    const QTemporaryDir folder;
    const QString path = folder.filePath(u"registry.ini"_s);
    const QByteArray good = "[C.D]\nClassId={00000000-0000-0000-0000-000000000001}\nLibrary=/o.so\n";
    for (const QByteArray& rest : {QByteArray("[A.B]\nClassId={7B2C9D"), QByteArray("[A.B"), QByteArray(64, '\0')}) {
        writeText(path, good + rest);
        writeEntry(path, entryOf(u"A.B"_s, u"/l.so"_s));
        EXPECT_EQ(readEntry(path, u"A.B"_s)->library, u"/l.so"_s);
        removeEntry(path, u"A.B"_s, u"/l.so"_s);
        EXPECT_EQ(readText(path), good);
    }
}

TEST(Registry, processesThatRegisterAtOnceLoseNothing) {
    const QTemporaryDir folder;
    const QString path = folder.filePath(u"registry.ini"_s);
    constexpr int kProcesses = 4, kEntries = 10;
    std::vector<pid_t> children;
    for (int process = 0; process < kProcesses; ++process) {
        const pid_t child = fork();
        if (child == 0) {
            for (int entry = 0; entry < kEntries; ++entry)
                writeEntry(path, entryOf(u"P%1.E%2"_s.arg(process).arg(entry), u"/l.so"_s));
            _exit(0);
        }
        children.push_back(child);
    }
    for (const pid_t child : children) {
        int status = 1;
        ASSERT_EQ(waitpid(child, &status, 0), child);
        EXPECT_EQ(status, 0);
    }
    for (int process = 0; process < kProcesses; ++process)
        for (int entry = 0; entry < kEntries; ++entry)
            EXPECT_TRUE(readEntry(path, u"P%1.E%2"_s.arg(process).arg(entry)).has_value()) << process << ' ' << entry;
    EXPECT_EQ(QDir(folder.path()).entryList(QDir::Files), QStringList{u"registry.ini"_s});
}

TEST(Registry, theUsersFileComesBeforeTheSystems) {
    const QTemporaryDir folder;
    qputenv("XDG_DATA_HOME", QFile::encodeName(folder.filePath(u"home"_s)));
    qputenv("XDG_DATA_DIRS",
            QFile::encodeName(folder.filePath(u"one"_s) + u":relative:"_s + folder.filePath(u"two"_s)));
    EXPECT_EQ(registryPaths().size(), 3);
    writeEntry(folder.filePath(u"two/velcoran/registry.ini"_s), entryOf(u"A.B"_s, u"/two.so"_s));
    EXPECT_EQ(findEntry(u"A.B"_s)->library, u"/two.so"_s);
    writeEntry(userRegistryPath(), entryOf(u"A.B"_s, u"/home.so"_s));
    EXPECT_EQ(findEntry(u"A.B"_s)->library, u"/home.so"_s);
    EXPECT_EQ(findEntry(kClassVelcoran)->library, u"/home.so"_s);
    EXPECT_FALSE(findEntry(kTypeLibraryVelcoran).has_value());
    qunsetenv("XDG_DATA_HOME");
    qunsetenv("XDG_DATA_DIRS");
}

TEST(Registry, aPlaceThatCannotBeWrittenIsAnErrorWithItsReason) {
    const QTemporaryDir folder;
    writeText(folder.filePath(u"file"_s), "x");
    QDir(folder.path()).mkpath(u"folder/registry.ini"_s);
    const std::pair<QString, QString> kCases[] = {
        {folder.filePath(u"file/registry.ini"_s), u"dosarul nu există"_s},
        {folder.filePath(u"folder/registry.ini"_s), u"este un dosar"_s},
        {u"/proc/velcoran/registry.ini"_s, u"/proc/velcoran"_s},
    };
    for (const auto& [path, words] : kCases) {
        try {
            writeEntry(path, entryOf(u"A.B"_s, u"/l.so"_s));
            ADD_FAILURE() << qPrintable(path);
        } catch (const base::Error& error) {
            EXPECT_EQ(error.number(), base::kPathAccess);
            EXPECT_TRUE(error.description().contains(words)) << error.what();
        }
    }
}

}  // namespace
}  // namespace velcoran::com
