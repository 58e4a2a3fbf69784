#include "com/activation.h"
#include "support/fake_connection.h"
#include "working_day.h"

#include <velcoran/velcoran.h>
#include <velcoran/window.h>

#include <QAbstractButton>
#include <QApplication>
#include <QDialog>
#include <QElapsedTimer>
#include <QTest>
#include <QTimer>
#include <QWidget>

#include <gtest/gtest.h>

#include <thread>

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace velcoran::tests {

namespace {

/// Writes down what it hears, and may answer with something.
class Listener final : public com::Object<IWindowEvents> {
public:
    com::HResult Closed() override { return hear(u"closed"_s); }
    com::HResult ConnectionReleased(IConnection* connection) override {
        released.append(connection);
        return hear(u"released"_s);
    }
    com::HResult OpenDocument(com::Bstr document, com::Bstr kind, com::Bstr partner) override {
        return hear(com::toQString(document) + u'|' + com::toQString(kind) + u'|' + com::toQString(partner));
    }

    QStringList heard;
    QList<IConnection*> released;
    std::function<void()> answer;

private:
    com::HResult hear(const QString& what) {
        heard.append(what);
        if (answer) answer();
        return com::kUnexpected;  // changes nothing
    }
};

com::Ref<FakeConnection> makeConnection() {
    auto connection = FakeConnection::create();
    connection->answer(u"SELECT An FROM An"_s, {.columns = {{u"An"_s}}, .rows = {{u"2026"_s}}});
    connection->answer(u"FROM Depozite"_s, {.columns = {{u"Depozit"_s}}, .rows = {{u"1 - Central"_s}}});
    FakeAnswer invoices = reportColumns();
    for (const QString& number : {u"100"_s, u"101"_s})
        invoices.rows.push_back({u"Furnizor"_s, u"F1"_s, u"ALFA"_s, u"05/03/2026"_s, number, u"10.00"_s, u"1.90"_s,
                                 u"11.90"_s, u"EUR"_s, u"4.97"_s, u"0.00"_s});
    connection->answer(u"AS TipRaport"_s, invoices);
    return connection;
}

}  // namespace

class WindowInterface : public testing::Test {
protected:
    WindowInterface() { EXPECT_EQ(control->Advise(listener.get()), com::kOk); }
    ~WindowInterface() override {
        listener->answer = nullptr;
        EXPECT_EQ(control->Close(), com::kOk);
        QCoreApplication::processEvents();
        EXPECT_EQ(control->Advise(nullptr), com::kOk);
    }

    std::int32_t incarca(const com::Ref<FakeConnection>& used, const char16_t* kind = u"Import") const {
        return com::numberOfResult(object->Incarca(com::Text(kind).get(), used->asConnection().get(), kDay, nullptr));
    }
    static QWidget* window() {
        for (QWidget* widget : QApplication::topLevelWidgets())
            if (widget->objectName() == u"RptStoc") return widget;
        return nullptr;
    }
    QStringList heard() const {
        QCoreApplication::processEvents();
        return std::exchange(listener->heard, {});
    }
    static void act(const QString& action, const QVariantMap& arguments = {}) {
        QVariant answer;
        QMetaObject::invokeMethod(window()->findChild<QWidget*>(u"CRW"_s), "act", Q_RETURN_ARG(QVariant, answer),
                                  Q_ARG(QString, action), Q_ARG(QVariantMap, arguments));
    }
    void report() const {
        window()->findChild<QAbstractButton*>(u"Raport"_s)->click();
        const QWidget* viewer = window()->findChild<QWidget*>(u"CRW"_s);
        ASSERT_TRUE(QTest::qWaitFor([viewer] { return viewer->property("hasReport").toBool(); }, 10'000));
    }

    com::ActivatedClass library = com::findClass(u"Velcoran.clsVelcoran"_s, QStringLiteral(VELCORAN_LIBRARY));
    com::Ref<IReportWindow> control = library.factory.as<IReportWindow>();
    com::Ref<_clsVelcoran> object = [this] {
        com::Ref<_clsVelcoran> made;
        EXPECT_EQ(library.factory->CreateInstance(nullptr, _clsVelcoran::kId, made.receiveVoid()), com::kOk);
        return made;
    }();
    com::Ref<Listener> listener = com::makeObject<Listener>();
    com::Ref<FakeConnection> connection = makeConnection();
};

TEST_F(WindowInterface, tellsOfTheCloseAndOfEachConnectionOnce) {
    const auto other = makeConnection();
    ASSERT_EQ(incarca(connection), 0);
    ASSERT_EQ(incarca(connection, u"Export"), 0);
    EXPECT_EQ(heard(), QStringList()) << "the same connection goes on being used";
    report();
    ASSERT_EQ(incarca(other), 0);
    EXPECT_EQ(heard(), QStringList()) << "the report that shows still holds it";
    window()->close();
    EXPECT_TRUE(listener->heard.isEmpty()) << "not inside the close";
    EXPECT_EQ(heard(), (QStringList{u"closed"_s, u"released"_s, u"released"_s}));
    EXPECT_TRUE(listener->released.contains(connection.get()) && listener->released.contains(other.get()));
    ASSERT_EQ(incarca(connection), 0);
    EXPECT_EQ(control->Close(), com::kOk);
    EXPECT_EQ(control->Close(), com::kOk) << "it is";
    EXPECT_EQ(heard(), (QStringList{u"closed"_s, u"released"_s}));
}

TEST_F(WindowInterface, aConnectionThatADriverHoldsIsReleasedWhenItReturns) {
    FakeAnswer dead;
    dead.columns = {{u"TipRaport"_s}};
    dead.openDelay = 30s;
    dead.isDeaf = true;
    connection->answer(u"AS TipRaport"_s, dead);
    ASSERT_EQ(incarca(connection), 0);
    QTimer::singleShot(450ms, [&] { EXPECT_EQ(control->Close(), com::kFalse) << "it follows"; });
    window()->findChild<QAbstractButton*>(u"Raport"_s)->click();
    EXPECT_EQ(heard(), QStringList{u"closed"_s});
    connection->answerAtLast();
    EXPECT_TRUE(QTest::qWaitFor([this] { return listener->heard == QStringList{u"released"_s}; }, 10'000));
}

TEST_F(WindowInterface, aHostMayAnswerWithAnyCall) {
    ASSERT_EQ(incarca(connection), 0);
    int reopened = -1;
    com::HResult unload = com::kOk;
    listener->answer = [&] {
        unload = library.library->call("DllCanUnloadNow");
        if (reopened < 0) reopened = incarca(connection, u"Export");
    };
    window()->close();
    EXPECT_EQ(heard().first(), u"closed"_s);
    EXPECT_EQ(reopened, 0);
    EXPECT_EQ(unload, com::kFalse) << "code of the library is on the stack";
    EXPECT_TRUE(window()->isVisible());
    listener->answer = [] { throw 42; };
    window()->close();
    EXPECT_EQ(heard().first(), u"closed"_s);
    object = nullptr;
    listener->answer = nullptr;
}

TEST_F(WindowInterface, enterOnARowOpensItsDocument) {
    ASSERT_EQ(incarca(connection), 0);
    report();
    QWidget* viewer = window()->findChild<QWidget*>(u"CRW"_s);
    std::int32_t meanwhile = 0;
    listener->answer = [&] { meanwhile = incarca(connection); };
    QTest::keyClick(viewer->focusProxy(), Qt::Key_Return);
    EXPECT_EQ(heard(), QStringList()) << "no row is chosen";
    QTimer closer;  // of the message with the field's value
    QObject::connect(&closer, &QTimer::timeout, [] {
        if (auto* box = qobject_cast<QDialog*>(QApplication::activeModalWidget())) box->accept();
    });
    closer.start(20);
    act(u"object"_s, {{u"page"_s, 1}, {u"field"_s, u"NumarFactura"_s}, {u"record"_s, 2}});
    QTest::keyClick(viewer->focusProxy(), Qt::Key_Return);
    EXPECT_EQ(heard(), QStringList{u"101|Import|F1"_s});
    EXPECT_EQ(meanwhile, 5) << "the window's own handler is at work";
    act(u"openDocument"_s);
    EXPECT_EQ(heard(), QStringList{u"101|Import|F1"_s});
    ASSERT_EQ(control->Advise(nullptr), com::kOk);
    QTest::keyClick(viewer->focusProxy(), Qt::Key_Return);
    ASSERT_EQ(control->Advise(listener.get()), com::kOk);
    EXPECT_EQ(heard(), QStringList()) << "nobody opens it";
}

TEST_F(WindowInterface, dispatchDoesWhatWaitsAndWaitsNoLonger) {
    EXPECT_EQ(control->Dispatch(0), com::kFalse) << "no window is open";
    ASSERT_EQ(incarca(connection), 0);
    QElapsedTimer clock;
    while (control->Dispatch(0) == com::kOk && clock.isValid() == false) clock.start();
    bool hasCome = false;
    QTimer::singleShot(100ms, [&] { hasCome = true; });
    clock.start();
    while (!hasCome && clock.elapsed() < 10'000) EXPECT_EQ(control->Dispatch(5'000), com::kOk);
    EXPECT_TRUE(hasCome);
    EXPECT_LT(clock.elapsed(), 4'000) << "what comes ends the wait";
    EXPECT_EQ(com::numberOfResult(control->Dispatch(60'001)), 5);
    window()->close();
    EXPECT_EQ(control->Dispatch(0), com::kFalse);
    EXPECT_EQ(listener->heard.first(), u"closed"_s);
}

/// A host may turn its event loop inside its own call, and there let go of what it called.
TEST_F(WindowInterface, theClassMayBeReleasedInsideACallOfIt) {
    com::HResult unload = com::kOk;
    connection->setFreeThreaded(false);
    connection->answer(u"SELECT An FROM An"_s, {.columns = {{u"An"_s}}, .rows = {{u"2026"_s}}, .meanwhile = [&] {
                                                    object = nullptr;
                                                    unload = library.library->call("DllCanUnloadNow");
                                                }});
    _clsVelcoran* called = object.get();
    EXPECT_EQ(called->Incarca(com::Text(u"Import").get(), connection->asConnection().get(), kDay, nullptr), com::kOk);
    EXPECT_EQ(unload, com::kFalse);
    EXPECT_FALSE(object);
    EXPECT_TRUE(window()->isVisible());
}

TEST_F(WindowInterface, theFenceStandsAroundAHostsConnection) {
    com::Ref<IConnection> fenced;
    EXPECT_EQ(control->Fence(nullptr, fenced.receive()), com::kInvalidArgument);
    EXPECT_EQ(control->Fence(connection->asConnection().get(), nullptr), com::kNullPointer);
    ASSERT_EQ(control->Fence(connection->asConnection().get(), fenced.receive()), com::kOk);
    com::Ref<IRows> rows;
    EXPECT_EQ(fenced->Execute(com::Text(u"SELECT An FROM An").get(), rows.receive()), com::kOk);
    EXPECT_EQ(fenced->Execute(com::Text(u"DELETE FROM An").get(), rows.receive()), -2147217900);
    EXPECT_EQ(connection->calls().size(), 1);
}

TEST_F(WindowInterface, isForTheWindowsThreadAlone) {
    std::thread([this] {
        const com::HResult answers[] = {control->Advise(nullptr), control->Close(), control->Dispatch(0)};
        for (const com::HResult answer : answers) EXPECT_EQ(com::numberOfResult(answer), 5);
    }).join();
}

}  // namespace velcoran::tests
