#include "form_fixture.h"

#include <QLineEdit>
#include <QTimer>

namespace velcoran::tests {

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

class SlowStatementTest : public FormTest {
protected:
    SlowStatementTest() {
        setUpFor(u"Import"_s);
        connection->answer(
            u"FROM Agenti"_s,
            {.columns = {{u"Cod"_s}, {u"Denumire"_s}}, .rows = {{u"1"_s, u"ALFA"_s}}, .openDelay = 700ms});
        giveFocus("txtCodAgent");
    }
    /// Does something while the lookup's statement runs.
    void lookUpWhile(const std::function<void()>& action) {
        QTimer::singleShot(450, &window, [&] {
            EXPECT_TRUE(connection->isBusy());
            action();
        });
        press(Qt::Key_Return);
        EXPECT_EQ(QGuiApplication::overrideCursor(), nullptr);
    }
};

TEST_F(SlowStatementTest, dropsInputAndPaintsWhileItRuns) {
    int paintings = 0;
    lookUpWhile([&] {
        QTest::keyClick(box("txtCodAgent"), Qt::Key_X);
        QTest::mouseClick(find<QWidget>("Raport"), Qt::LeftButton);
        window.repaint();
        ++paintings;
    });
    EXPECT_EQ(paintings, 1);
    EXPECT_EQ(box("txtCodAgent")->text(), QString());
    EXPECT_TRUE(isShown("fraGrid"));
    EXPECT_EQ(connection->cancelCount(), 0);
}

TEST_F(SlowStatementTest, escCancelsTheStatementAlone) {
    lookUpWhile([&] { QTest::keyClick(box("txtCodAgent"), Qt::Key_Escape); });
    EXPECT_GE(connection->cancelCount(), 1);
    EXPECT_TRUE(window.isLoaded());
    EXPECT_TRUE(surroundings.messages.isEmpty()) << "a stop is no failure";
    EXPECT_EQ(focus(), u"txtCodAgent"_s);
    EXPECT_FALSE(isShown("fraGrid"));
}

TEST_F(SlowStatementTest, closingCancelsAndTheCloseFollows) {
    lookUpWhile([&] {
        window.close();
        EXPECT_TRUE(window.isLoaded());
    });
    EXPECT_FALSE(window.isLoaded());
    EXPECT_FALSE(window.isVisible());
    EXPECT_TRUE(surroundings.messages.isEmpty());
    EXPECT_EQ(member("priza"), u"false"_s);
}

TEST_F(SlowStatementTest, aRefusedCallLeavesTheConnectionToo) {
    const auto other = FakeConnection::create();
    int refused = 0;
    lookUpWhile([&] {
        try {
            window.setPriza(db::Connection(other->asConnection()));
        } catch (const base::Error& error) {
            refused = error.number();
        }
        window.CloseForm();
    });
    EXPECT_EQ(refused, 5);
    EXPECT_GE(connection->cancelCount(), 1) << "the close cancelled the statement that runs";
    EXPECT_EQ(other->cancelCount(), 0);
}

TEST_F(SlowStatementTest, aStopIsForOneStatement) {
    lookUpWhile([&] { QTest::keyClick(box("txtCodAgent"), Qt::Key_Escape); });
    EXPECT_FALSE(isShown("fraGrid"));
    lookUpWhile([] {});
    EXPECT_TRUE(isShown("fraGrid"));
}

TEST_F(SlowStatementTest, theHostsOwnInputAndAQuitWait) {
    QLineEdit hosts;
    hosts.show();
    QString during = u"?"_s;
    bool hasAnswer = false;
    QTimer::singleShot(0, &window, [&] {
        lookUpWhile([&] {
            QTest::keyClick(&hosts, Qt::Key_A);
            during = hosts.text();
            QCoreApplication::quit();
        });
        hasAnswer = isShown("fraGrid");
    });
    QTimer::singleShot(10'000, &window, [] { QCoreApplication::exit(1); });
    EXPECT_EQ(QCoreApplication::exec(), 0) << "the quit has come at last";
    EXPECT_EQ(during, QString()) << "inside our call it would come back into the host";
    EXPECT_TRUE(hasAnswer);
    EXPECT_EQ(connection->cancelCount(), 0) << "the statement was not broken off";
    EXPECT_EQ(hosts.text(), u"a"_s);
}

TEST_F(SlowStatementTest, aBoundConnectionIsCalledOnTheWindowsThread) {
    connection->setFreeThreaded(false);
    bool wasDispatched = false;
    QTimer::singleShot(400, &window, [&] { wasDispatched = connection->isBusy(); });
    press(Qt::Key_Return);
    EXPECT_FALSE(wasDispatched);
    EXPECT_TRUE(isShown("fraGrid"));
}

}  // namespace velcoran::tests
