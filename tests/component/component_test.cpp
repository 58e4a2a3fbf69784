#include "com/activation.h"
#include "com/class_factory.h"
#include "com/dispatch.h"
#include "com/registry.h"
#include "com/variant.h"
#include "working_day.h"

#include "support/test_data.h"
#include "support/variant_holder.h"

#include <velcoran/mesaje.h>
#include <velcoran/velcoran.h>

#include <QAbstractButton>
#include <QApplication>
#include <QFile>
#include <QMessageBox>
#include <QTemporaryDir>
#include <QTimer>
#include <QWidget>

#include <gtest/gtest.h>

#include <array>
#include <thread>
#include <utility>

#include <dlfcn.h>

using namespace Qt::StringLiterals;

namespace velcoran {
namespace {

const QString kProgId = u"Velcoran.clsVelcoran"_s;
const QString kLibrary = QStringLiteral(VELCORAN_LIBRARY);

QWidget* reportWindow() {
    for (QWidget* widget : QApplication::topLevelWidgets())
        if (widget->objectName() == u"RptStoc") return widget;
    return nullptr;
}

struct Component : testing::Test {
    void SetUp() override {
        activated = com::createObject(kProgId, kLibrary);
        object = activated.object.as<_clsVelcoran>();
        ASSERT_TRUE(object);
    }
    void TearDown() override {
        if (QWidget* window = reportWindow()) window->close();
    }

    std::int32_t lastError(QString* words = nullptr) const {
        std::int32_t number = 0;
        com::Text description, source;
        (void)object.as<com::IErrorSource>()->LastError(&number, description.receive(), source.receive());
        if (words != nullptr) *words = com::toQString(description.get());
        return number;
    }

    com::ActivatedObject activated;
    com::Ref<_clsVelcoran> object;
};

TEST_F(Component, answersToItsInterfacesAlone) {
    EXPECT_TRUE(object.as<com::IDispatch>());
    EXPECT_TRUE(object.as<com::IUnknown>());
    EXPECT_FALSE(object.as<com::IClassFactory>());
    EXPECT_FALSE(object.as<IConnection>());
}

TEST_F(Component, opensTheWindowBeforeItFailsWithoutAConnection) {
    EXPECT_EQ(com::numberOfResult(object->Incarca(com::Text(u"Export").get(), nullptr, tests::kDay, nullptr)), 91);
    std::int32_t number = 0;
    com::Text description, source;
    (void)object.as<com::IErrorSource>()->LastError(&number, description.receive(), source.receive());
    EXPECT_EQ(com::toQString(source.get()), kProgId);
    ASSERT_NE(reportWindow(), nullptr);
    EXPECT_TRUE(reportWindow()->isVisible());
    EXPECT_EQ(activated.library->call("DllCanUnloadNow"), com::kFalse);
    QWidget* first = reportWindow();
    first->close();
    EXPECT_EQ(com::numberOfResult(object->Incarca(com::Text(u"Export").get(), nullptr, tests::kDay, nullptr)), 91);
    EXPECT_EQ(reportWindow(), first) << "the window object is reused";
}

TEST_F(Component, letsGoOfItsWindowWhenNothingIsInUse) {
    (void)object->Incarca(com::Text(u"Import").get(), nullptr, tests::kDay, nullptr);
    ASSERT_NE(reportWindow(), nullptr);
    const std::shared_ptr<const com::Library> library = activated.library;
    const auto canUnload = [&library] { return library->call("DllCanUnloadNow"); };
    object = nullptr;
    activated.object = nullptr;
    EXPECT_EQ(canUnload(), com::kFalse) << "the window is open";
    reportWindow()->close();
    com::HResult elsewhere = com::kOk;
    std::thread([&] { elsewhere = canUnload(); }).join();
    EXPECT_EQ(elsewhere, com::kFalse) << "the window belongs to another thread";
    EXPECT_EQ(canUnload(), com::kOk);
    EXPECT_EQ(reportWindow(), nullptr);
}

TEST_F(Component, failsOnAThreadWithoutWindows) {
    std::int32_t number = 0;
    QString words;
    std::thread([&] {
        EXPECT_EQ(com::numberOfResult(object->Incarca(com::Text(u"Import").get(), nullptr, tests::kDay, nullptr)), 5);
        number = lastError(&words);
    }).join();
    EXPECT_EQ(number, 5);
    EXPECT_TRUE(words.contains(u"firul de execuție"_s)) << qPrintable(words);
    EXPECT_NE(lastError(), 5) << "error information belongs to the thread that failed";
}

TEST_F(Component, aCallByNameDoesWhatTheTableCallDoes) {
    char16_t method[] = u"INCARCA";
    char16_t* names[] = {method};
    std::int32_t member = 0;
    ASSERT_EQ(object->GetIDsOfNames(com::kReservedId, names, 1, 0, &member), com::kOk);

    const tests::VariantHolder kind(u"Import"_s), nothing(static_cast<com::IUnknown*>(nullptr)), prefix{QString()};
    const tests::VariantHolder date = tests::VariantHolder::date(tests::kDay);
    std::array<com::Variant, 4> arguments{prefix.get(), date.get(), nothing.get(), kind.get()};
    com::CallArguments call{arguments.data(), nullptr, 4, 0};
    com::ExceptionInformation exception{};
    std::uint32_t wrong = 99;
    const auto invoke = [&] {
        return object->Invoke(member, com::kReservedId, 0, com::kCallMethod, &call, nullptr, &exception, &wrong);
    };
    EXPECT_EQ(invoke(), com::kException);
    EXPECT_EQ(com::numberOfResult(exception.result), 91);
    EXPECT_FALSE(com::toQString(exception.description).isEmpty());
    com::freeText(exception.description);
    com::freeText(exception.source);
    EXPECT_NE(reportWindow(), nullptr);

    arguments[1] = kind.get();  // a text that is no date
    EXPECT_EQ(invoke(), com::kTypeMismatch);
    EXPECT_EQ(wrong, 1U);
    call.argumentCount = 3;
    EXPECT_EQ(invoke(), com::kBadParameterCount);
    EXPECT_EQ(object->Invoke(member + 7, com::kReservedId, 0, com::kCallMethod, &call, nullptr, nullptr, nullptr),
              com::kMemberNotFound);
}

TEST_F(Component, refusesADateBeyondTheCalendar) {
    EXPECT_EQ(com::numberOfResult(object->Incarca(com::Text(u"Import").get(), nullptr, 1e300, nullptr)), 5);
}

/// A message class of the host that counts its objects.
struct CountingMesaje final : com::Object<IMesaje> {
    explicit CountingMesaje(int* made) { ++*made; }
    com::HResult Afiseaza(com::Bstr, std::int16_t, std::int16_t, com::Bstr, std::int32_t, std::int32_t,
                          std::int32_t*) override {
        return com::kOk;
    }
};

TEST_F(Component, takesItsMessageObjectFromTheHost) {
    const auto factory = activated.library->classFactory(kClassVelcoran);
    const auto objects = factory.as<com::IHostObjects>();
    ASSERT_TRUE(objects);
    EXPECT_EQ(objects->Register(kClassMesaje, nullptr), com::kInvalidArgument);
    int made = 0;
    const auto messages = com::makeFactory<CountingMesaje>(&made);
    ASSERT_EQ(objects->Register(kClassMesaje, messages.get()), com::kOk);
    (void)object->Incarca(com::Text(u"Import").get(), nullptr, tests::kDay, nullptr);
    EXPECT_EQ(made, 1);
    EXPECT_EQ(objects->Revoke(kClassMesaje), com::kOk);
    EXPECT_EQ(objects->Revoke(kClassMesaje), com::kFalse);
}

/// Registrations of this test alone.
struct OwnRegistry {
    OwnRegistry() {
        qputenv("XDG_DATA_HOME", folder.path().toUtf8());
        qputenv("XDG_DATA_DIRS", folder.path().toUtf8());
    }
    ~OwnRegistry() {
        qunsetenv("XDG_DATA_HOME");
        qunsetenv("XDG_DATA_DIRS");
    }
    OwnRegistry(const OwnRegistry&) = delete;
    OwnRegistry& operator=(const OwnRegistry&) = delete;

    QTemporaryDir folder;
};

TEST_F(Component, registersItselfAndIsFoundByItsNameAndItsClassAlone) {
    const OwnRegistry registry;
    ASSERT_EQ(activated.library->call("DllRegisterServer"), com::kOk);
    EXPECT_TRUE(com::createObject(kProgId).object);
    EXPECT_TRUE(com::createObject(kClassVelcoran).object);
    ASSERT_EQ(activated.library->call("DllUnregisterServer"), com::kOk);
    EXPECT_FALSE(com::findEntry(kProgId).has_value());

    // An entry that leads nowhere does not hide a good one behind it.
    const com::RegistryEntry stale{kProgId, kClassVelcoran, u"/nowhere/lib.so"_s, kTypeLibraryVelcoran, u"1.0"_s};
    com::RegistryEntry good = stale;
    good.library = kLibrary;
    qputenv("XDG_DATA_DIRS", QFile::encodeName(registry.folder.filePath(u"dirs"_s)));
    com::writeEntry(com::userRegistryPath(), stale);
    EXPECT_THROW((void)com::createObject(kProgId), base::Error);
    com::writeEntry(registry.folder.filePath(u"dirs/velcoran/registry.ini"_s), good);
    EXPECT_TRUE(com::createObject(kProgId).object);
    EXPECT_TRUE(com::createObject(kClassVelcoran).object);
}

/// Registering has no object that could be asked, so the class factory of the same library answers.
TEST_F(Component, saysWhyItCannotBeRegistered) {
    const OwnRegistry registry;
    qputenv("XDG_DATA_HOME", "/proc");
    const auto factory = activated.library->classFactory(kClassVelcoran);
    EXPECT_EQ(com::numberOfResult(activated.library->call("DllRegisterServer")), base::kPathAccess);
    std::int32_t number = 0;
    com::Text description, source;
    (void)factory.as<com::IErrorSource>()->LastError(&number, description.receive(), source.receive());
    EXPECT_EQ(number, base::kPathAccess);
    EXPECT_TRUE(com::toQString(description.get()).contains(u"/proc/velcoran"_s));
    EXPECT_FALSE(com::toQString(source.get()).isEmpty());
}

/// Presses Raporteaza in a window without a connection, which fails with a message.
/// @return the text of the component's own dialog, empty when none came
QString provokeMessage() {
    QString shown;
    QTimer closer;
    QObject::connect(&closer, &QTimer::timeout, [&shown] {
        if (auto* box = qobject_cast<QMessageBox*>(QApplication::activeModalWidget())) {
            shown = box->text();
            box->accept();
        }
    });
    closer.start(20);
    reportWindow()->findChild<QAbstractButton*>(u"Raport"_s)->click();
    return shown;
}

TEST_F(Component, takesItsMessagesFromTheHostsRegistrationUnlessTheyFail) {
    const OwnRegistry registry;
    const QString file = registry.folder.filePath(u"shown"_s);
    qputenv("HOST_MESSAGES_FILE", QFile::encodeName(file));
    struct Case {
        const char* mode;
        QString library;
        bool isShownByHost;
    };
    const QString messages = QStringLiteral(HOST_MESSAGES_LIBRARY);
    const Case cases[] = {
        {"shows", u"/nowhere/lib.so"_s, false},
        {"shows", messages, true},
        {"fails", messages, false},
        {"throws", messages, false},
    };
    for (const Case& each : cases) {
        qputenv("HOST_MESSAGES_MODE", each.mode);
        com::writeEntry(com::userRegistryPath(),
                        {u"Contabil.clsMesaje"_s, kClassMesaje, each.library, kTypeLibraryVelcoran, u"1.0"_s});
        (void)object->Incarca(com::Text(u"Import").get(), nullptr, tests::kDay, nullptr);
        QFile::remove(file);
        EXPECT_EQ(provokeMessage().startsWith(u"91"_s), !each.isShownByHost) << each.mode;
        EXPECT_EQ(QFile::exists(file), each.isShownByHost) << each.mode;
        EXPECT_TRUE(reportWindow()->isVisible());
        reportWindow()->close();
    }
    const auto library = std::exchange(activated.library, nullptr);
    object = nullptr;
    activated.object = nullptr;
    EXPECT_EQ(library->call("DllCanUnloadNow"), com::kOk);
    EXPECT_EQ(dlopen(HOST_MESSAGES_LIBRARY, RTLD_NOW | RTLD_NOLOAD), nullptr) << "the host's library has gone first";
}

}  // namespace
}  // namespace velcoran
