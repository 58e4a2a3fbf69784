#include "com/activation.h"
#include "support/fake_connection.h"
#include "working_day.h"

#include <velcoran/velcoran.h>

#include <QApplication>
#include <QElapsedTimer>
#include <QTest>
#include <QTimer>
#include <QWidget>
#include <QWindow>

#include <gtest/gtest.h>

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace velcoran::tests {

namespace {

constexpr std::int32_t kStop = -2147467260;

/// The library as a host has it, over a server that stops answering.
struct DeadServer : testing::Test {
    DeadServer() {
        connection->answer(u"SELECT An FROM An"_s, {.columns = {{u"An"_s}}, .rows = {{u"2026"_s}}});
        connection->answer(u"FROM Depozite"_s, {.columns = {{u"Depozit"_s}}, .rows = {{u"1 - Central"_s}}});
        FakeAnswer dead = reportColumns();
        dead.fetchDelay = 30s;
        dead.isDeaf = true;
        connection->answer(u"AS TipRaport"_s, dead);
    }

    std::int32_t incarca() {
        return com::numberOfResult(
            object->Incarca(com::Text(u"Import").get(), connection->asConnection().get(), kDay, nullptr));
    }
    QString description() const {
        std::int32_t number = 0;
        com::Text words, source;
        (void)object.as<com::IErrorSource>()->LastError(&number, words.receive(), source.receive());
        return com::toQString(words.get());
    }
    static QWidget* window() {
        for (QWidget* widget : QApplication::topLevelWidgets())
            if (widget->objectName() == u"RptStoc") return widget;
        return nullptr;
    }
    bool startReport() {
        QTest::mouseClick(window()->findChild<QWidget*>(u"Raport"_s), Qt::LeftButton);
        return QTest::qWaitFor([this] { return connection->isBusy(); }, 10'000);
    }
    com::HResult canUnload() const { return library->call("DllCanUnloadNow"); }

    com::Ref<FakeConnection> connection = FakeConnection::create();
    com::ActivatedObject activated = com::createObject(u"Velcoran.clsVelcoran"_s, QStringLiteral(VELCORAN_LIBRARY));
    std::shared_ptr<const com::Library> library = activated.library;
    com::Ref<_clsVelcoran> object = activated.object.as<_clsVelcoran>();
};

}  // namespace

TEST_F(DeadServer, keepsTheLibraryInTheProcessUntilTheDriverReturns) {
    ASSERT_EQ(incarca(), 0);
    ASSERT_TRUE(startReport());
    QElapsedTimer clock;
    clock.start();
    EXPECT_EQ(incarca(), 5);
    EXPECT_LT(clock.elapsed(), 5000);
    EXPECT_TRUE(description().startsWith(u"Conexiunea este ocupată"_s)) << qPrintable(description());
    window()->close();
    object = nullptr;
    activated.object = nullptr;
    EXPECT_EQ(canUnload(), com::kFalse);
    connection->answerAtLast();
    EXPECT_TRUE(QTest::qWaitFor([this] { return canUnload() == com::kOk; }, 10'000));
}

TEST_F(DeadServer, aStopReachesTheHostAsItsNumberAndARefusalAsItsOwn) {
    connection->answer(u"FROM Depozite"_s, {.columns = {{u"Depozit"_s}}, .openDelay = 30s});
    std::int32_t refused = 0;
    QString words;
    QTimer::singleShot(450ms, [&] {
        refused = incarca();
        words = description();
        QTest::keyClick(window()->windowHandle(), Qt::Key_Escape);
    });
    EXPECT_EQ(incarca(), kStop);
    EXPECT_EQ(refused, 5);
    EXPECT_TRUE(words.startsWith(u"Fereastra raportului"_s)) << qPrintable(words);
    window()->close();
}

/// In a process of its own, which ends while the driver still sleeps.
TEST_F(DeadServer, letsTheProcessEnd) {
    GTEST_FLAG_SET(death_test_style, "threadsafe");
    QElapsedTimer clock;
    clock.start();
    EXPECT_EXIT(
        {
            if (incarca() != 0 || !startReport()) std::_Exit(3);
            window()->close();
            if (canUnload() != com::kFalse) std::_Exit(4);
            std::exit(0);
        },
        testing::ExitedWithCode(0), "");
    EXPECT_LT(clock.elapsed(), 10'000);
}

}  // namespace velcoran::tests
