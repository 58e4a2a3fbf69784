#include "viewer_fixture.h"

#include <QLabel>

#include <optional>

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace velcoran::tests {

using Events = QList<QByteArray>;

class Loading : public ViewerTest {
protected:
    [[nodiscard]] QString heading() { return part<QLabel>("crwStateHeading").text(); }
    [[nodiscard]] QString text() { return part<QLabel>("crwStateText").text(); }
};

TEST_F(Loading, aReportIsShownBeforeTheEndIsTold) {
    bool wasShown = false;
    QObject::connect(&viewer, &viewer::ReportViewer::downloadStarted, &viewer,
                     [this] { EXPECT_TRUE(viewer.isBusy() && !viewer.hasReport()); });
    QObject::connect(&viewer, &viewer::ReportViewer::downloadFinished, &viewer,
                     [&] { wasShown = viewer.hasReport() && !viewer.isBusy() && viewer.pageCount() > 0; });
    load(scriptedReport(reportRows(3, 5)));
    EXPECT_TRUE(wasShown);
    EXPECT_EQ(events, Events({"started", "finished"}));
    EXPECT_EQ(viewer.currentPage(), 1);
    EXPECT_TRUE(part("crwState").isHidden());
}

TEST_F(Loading, anEmptyReportShowsItsPage) {
    load(scriptedReport(reportRows(0, 0)));
    EXPECT_TRUE(viewer.hasReport());
    EXPECT_EQ(viewer.pageCount(), 1);
    EXPECT_TRUE(viewer.pageLines(1).join(u'\n').contains(u"Niciun document"_s));
}

TEST_F(Loading, failuresStandInThePane) {
    const base::Error lost(base::kProviderFailure, u"legătura s-a pierdut"_s);
    FakeAnswer atRun = reportRows(1, 5);
    atRun.runError = lost;
    FakeAnswer atFetch = reportRows(10, 500);
    atFetch.fetchError = lost;
    atFetch.fetchErrorAt = 2;
    for (const auto& [answer, told] :
         {std::pair(atRun, Events({"finished"})), std::pair(atFetch, Events({"started", "finished"}))}) {
        events.clear();
        load(scriptedReport(answer));
        EXPECT_EQ(events, told);
        EXPECT_FALSE(viewer.hasReport());
        EXPECT_EQ(heading(), u"Raportul nu a putut fi încărcat."_s);
        EXPECT_EQ(text(), u"-2147467259: legătura s-a pierdut"_s);
        EXPECT_FALSE(part("crwState").isHidden());
        EXPECT_EQ(viewer.failure().toMap().value(u"number"_s), base::kProviderFailure);
    }
    load(scriptedReport(reportRows(1, 5)));
    EXPECT_FALSE(viewer.failure().isValid());
    FakeAnswer slow = reportRows(1, 5);
    slow.fetchDelay = 1h;
    viewer.setReportSource(scriptedReport(slow));
    viewer.viewReport();
    EXPECT_TRUE(text().startsWith(u"0 rânduri"_s)) << "not those of the report before";
    viewer.setReportSource(scriptedReport(slow));
    EXPECT_FALSE(viewer.isBusy());
}

TEST_F(Loading, whatComesAfterAStopIsDropped) {
    for (int round = 0; round < 15; ++round) {
        viewer.setReportSource(scriptedReport(reportRows(1, 5)));
        viewer.viewReport();
        QTest::qSleep(round);  // without events: the answer lies in wait
        viewer.cancelLoading(false);
        QCoreApplication::processEvents();
        ASSERT_FALSE(viewer.hasReport()) << round;
    }
}

TEST_F(Loading, stopEndsTheRun) {
    FakeAnswer slow = reportRows(1, 5);
    slow.fetchDelay = 1h;
    const auto connection = FakeConnection::create();
    viewer.setReportSource(scriptedReport(connection, slow));
    EXPECT_FALSE(part("crwStop").isEnabled());
    viewer.viewReport();
    ASSERT_TRUE(QTest::qWaitFor([&] { return connection->isBusy(); }, 20'000));
    EXPECT_TRUE(part("crwStop").isEnabled());
    EXPECT_TRUE(part("crwStop").isVisible());
    act("stop");
    ASSERT_TRUE(waitUntilLoaded());
    EXPECT_EQ(events, Events({"finished"})) << "its statement never answered";
    EXPECT_EQ(heading(), u"Încărcarea a fost oprită."_s);
    EXPECT_FALSE(part("crwStop").isVisible());
}

TEST_F(Loading, aNewViewEndsTheOneBefore) {
    FakeAnswer slow = reportRows(1, 5);
    slow.fetchDelay = 1h;
    viewer.setReportSource(scriptedReport(slow));
    viewer.viewReport();
    viewer.viewReport();
    load(scriptedReport(reportRows(2, 2)));
    EXPECT_EQ(events, Events({"finished", "finished", "started", "finished"}));
    EXPECT_TRUE(viewer.hasReport());
}

TEST_F(Loading, aCancelledLoadTellsItsEndOnlyWhenAsked) {
    for (const bool isNotifying : {true, false}) {
        FakeAnswer slow = reportRows(1, 5);
        slow.runDelay = 1h;
        events.clear();
        viewer.setReportSource(scriptedReport(slow));
        viewer.viewReport();
        viewer.cancelLoading(isNotifying);
        EXPECT_FALSE(viewer.isBusy());
        QCoreApplication::processEvents();
        EXPECT_EQ(events, isNotifying ? Events({"finished"}) : Events());
        EXPECT_EQ(heading(), u"Încărcarea a fost oprită."_s);
    }
}

// Run under the sanitizers this finds threads, pictures and queued answers that outlive the viewer.
TEST(Destruction, isSafeAtEveryMoment) {
    enum class Moment { Running, Reading, Answered, Finished, Painting, Searching };
    using enum Moment;
    for (const Moment moment : {Running, Reading, Answered, Finished, Painting, Searching}) {
        auto viewer = std::make_optional<viewer::ReportViewer>();
        viewer->resize(900, 600);
        viewer->show();
        const auto connection = FakeConnection::create();
        FakeAnswer answer = reportRows(40, 50);
        if (moment == Running) answer.runDelay = 1h;
        if (moment == Reading) answer.fetchDelay = 1h;
        bool isGone = false;
        if (moment == Finished)
            QObject::connect(&*viewer, &viewer::ReportViewer::downloadFinished, &*viewer, [&] { isGone = true; });
        const auto report = scriptedReport(connection, answer);
        viewer->setReportSource(report);
        viewer->viewReport();
        if (moment == Running || moment == Reading) {
            ASSERT_TRUE(QTest::qWaitFor([&] { return connection->isBusy(); }, 20'000));
        } else if (moment == Answered) {
            report->cancelAndWait();
        } else {
            ASSERT_TRUE(QTest::qWaitFor([&] { return !viewer->isBusy(); }, 20'000));
        }
        if (moment == Painting) viewer->grab();
        if (moment == Searching) {
            (void)viewer->act(u"search"_s, {{u"text"_s, u"firma"_s}});
            (void)viewer->act(u"last"_s, {});
        }
        EXPECT_EQ(isGone, moment == Finished);
        viewer.reset();
        QCoreApplication::processEvents();
    }
}

// A window may close itself when it hears of the end, and take the viewer with it.
TEST(Destruction, isSafeInItsOwnNotification) {
    for (const bool isAtStart : {true, false}) {
        auto* viewer = new viewer::ReportViewer;
        bool isGone = false;
        const auto destroy = [&] {
            isGone = true;
            delete viewer;
        };
        if (isAtStart)
            QObject::connect(viewer, &viewer::ReportViewer::downloadStarted, destroy);
        else
            QObject::connect(viewer, &viewer::ReportViewer::downloadFinished, destroy);
        viewer->setReportSource(scriptedReport(reportRows(1, 1)));
        viewer->viewReport();
        EXPECT_TRUE(QTest::qWaitFor([&] { return isGone; }, 20'000));
    }
}

}  // namespace velcoran::tests
