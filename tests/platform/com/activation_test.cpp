#include "platform/com/activation.h"
#include "platform/com/class_factory.h"
#include "platform/com/host_objects.h"

#include "base/error.h"
#include "support/test_data.h"

#include <QTemporaryDir>

#include <gtest/gtest.h>

using namespace Qt::StringLiterals;

namespace velcoran::com {
namespace {

TEST(Activation, saysWhyNothingCanBeCreated) {
    const QTemporaryDir folder;
    qputenv("XDG_DATA_HOME", folder.path().toUtf8());
    qputenv("XDG_DATA_DIRS", folder.path().toUtf8());
    struct Case {
        QString progId, library, words;
    };
    const Case cases[] = {
        {u"Velcoran.clsVelcoran"_s, QString(), u"is not registered"_s},
        {u"Nobody.Knows"_s, u"/nowhere/lib.so"_s, u"is not registered"_s},
        {u"Velcoran.clsVelcoran"_s, u"/nowhere/lib.so"_s, u"/nowhere/lib.so"_s},
        {u"Velcoran.clsVelcoran"_s, u"libm.so.6"_s, u"lacks the entry point DllGetClassObject"_s},
    };
    for (const Case& each : cases) {
        try {
            (void)createObject(each.progId, each.library);
            ADD_FAILURE() << qPrintable(each.words);
        } catch (const base::Error& error) {
            EXPECT_EQ(error.number(), kCannotCreateObject);
            EXPECT_TRUE(error.description().contains(each.words)) << error.what();
        }
    }
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
