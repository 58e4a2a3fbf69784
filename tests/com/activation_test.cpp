#include "com/activation.h"
#include "com/class_factory.h"
#include "com/host_objects.h"

#include "base/error.h"
#include "support/test_data.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>

#include <gtest/gtest.h>

#include <dlfcn.h>

using namespace Qt::StringLiterals;

namespace velcoran::com {
namespace {

/// This program with another processor's number in its head.
QString foreignProgram(const QString& path) {
    QFile self(u"/proc/self/exe"_s);
    EXPECT_TRUE(self.open(QIODevice::ReadOnly));
    QByteArray head = self.read(4096);
    constexpr qsizetype kProcessorAt = 18;
    head[kProcessorAt] = static_cast<char>(head[kProcessorAt] + 1);
    QFile file(path);
    EXPECT_TRUE(file.open(QIODevice::WriteOnly));
    file.write(head);
    return path;
}

TEST(Activation, saysWhyNothingCanBeCreated) {
    const QTemporaryDir folder;
    qputenv("XDG_DATA_HOME", folder.path().toUtf8());
    qputenv("XDG_DATA_DIRS", folder.path().toUtf8());
    struct Case {
        QString progId, library, words;
    };
    Dl_info loaded{};
    ASSERT_NE(dladdr(dlsym(RTLD_DEFAULT, "malloc"), &loaded), 0);
    const Case cases[] = {
        {u"Velcoran.clsVelcoran"_s, QString(), u"is not registered"_s},
        {u"Velcoran.clsVelcoran"_s, QString(), folder.filePath(u"velcoran/registry.ini: it does not name"_s)},
        {u"Nobody.Knows"_s, u"/nowhere/lib.so"_s, u"is not registered"_s},
        {u"Velcoran.clsVelcoran"_s, u"/nowhere/lib.so"_s, u"/nowhere/lib.so: there is no such file"_s},
        {u"Velcoran.clsVelcoran"_s, u"nowhere.so"_s, QDir::currentPath() + u"/nowhere.so"_s},
        {u"Velcoran.clsVelcoran"_s, QString::fromUtf8(loaded.dli_fname), u"lacks the entry point DllGetClassObject"_s},
        {u"Velcoran.clsVelcoran"_s, foreignProgram(folder.filePath(u"other.so"_s)), u"for another architecture"_s},
        {u"Velcoran.clsVelcoran"_s, folder.path(), u"cannot read file data"_s},
    };
    for (const Case& each : cases) {
        try {
            (void)createObject(each.progId, each.library);
            ADD_FAILURE() << qPrintable(each.words);
        } catch (const base::Error& error) {
            EXPECT_EQ(error.number(), base::kClassNotRegistered);
            EXPECT_TRUE(error.description().contains(each.words)) << error.what();
        }
    }
    EXPECT_THROW((void)createObject(Guid{1, 2, 3, {}}), base::Error);
    qunsetenv("XDG_DATA_HOME");
    qunsetenv("XDG_DATA_DIRS");
}

TEST(HostObjects, theLastRegisteredFactoryCounts) {
    const auto before = livingObjects().load();
    {
        HostObjects objects;
        const Guid classId{1, 2, 3, {}};
        EXPECT_FALSE(objects.create<IUnknown>(classId));
        const auto first = makeFactory<ClassFactory>(ClassFactory::Maker());
        const auto second = makeFactory<ClassFactory>(ClassFactory::Maker());
        objects.add(classId, first);
        objects.add(classId, second);
        EXPECT_EQ(objects.find(classId).get(), second.get());
        EXPECT_TRUE(objects.create<IClassFactory>(classId));
        EXPECT_FALSE(objects.create<IDispatch>(classId));
        EXPECT_TRUE(objects.remove(classId));
        EXPECT_FALSE(objects.remove(classId));
    }
    EXPECT_EQ(livingObjects().load(), before);
}

}  // namespace
}  // namespace velcoran::com
