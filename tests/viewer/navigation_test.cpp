#include "viewer_fixture.h"

#include <QComboBox>
#include <QLabel>
#include <QLineEdit>
#include <QListView>
#include <QScrollBar>

using namespace Qt::StringLiterals;

namespace velcoran::tests {

class Navigation : public ViewerTest {
protected:
    QLineEdit& pageBox() { return part<QLineEdit>("crwPageBox"); }
    void press(Qt::Key key, Qt::KeyboardModifiers modifiers = Qt::NoModifier) {
        QTest::keyClick(&pages(), key, modifiers);
    }
};

TEST_F(Navigation, buttonsKeysAndBoxMoveAlike) {
    load(scriptedReport(reportRows(30, 40)));
    const int last = viewer.pageCount();
    ASSERT_GT(last, 20);
    const struct {
        const char* action;
        Qt::Key key;
        Qt::KeyboardModifiers modifiers;
        int page;
    } steps[] = {{"last", Qt::Key_End, Qt::NoModifier, last},
                 {"next", Qt::Key_PageDown, Qt::ControlModifier, last},
                 {"previous", Qt::Key_PageUp, Qt::ControlModifier, last - 1},
                 {"first", Qt::Key_Home, Qt::NoModifier, 1},
                 {"previous", Qt::Key_PageUp, Qt::ControlModifier, 1},
                 {"next", Qt::Key_PageDown, Qt::ControlModifier, 2}};
    for (const bool isByKey : {false, true}) {
        act("goto", {{u"page"_s, 7}});
        for (const auto& step : steps) {
            if (isByKey)
                press(step.key, step.modifiers);
            else
                act(step.action);
            EXPECT_EQ(viewer.currentPage(), step.page) << step.action << isByKey;
            EXPECT_EQ(pageBox().text(), u"%1 din %2"_s.arg(step.page).arg(last));
        }
    }
    pageBox().setFocus();
    pageBox().setText(u"12"_s);
    QTest::keyClick(&pageBox(), Qt::Key_Return);
    EXPECT_EQ(viewer.currentPage(), 12);
    EXPECT_EQ(pageBox().text(), u"12 din %1"_s.arg(last));
    act("goto", {{u"page"_s, 100'000}});
    EXPECT_EQ(viewer.currentPage(), last);
    act("goto", {{u"page"_s, -3}});
    EXPECT_EQ(viewer.currentPage(), 1);
}

// Keys that edit a text stay the box's, the others are the viewer's wherever in it the focus is.
TEST_F(Navigation, theBoxesKeepTheKeysThatEdit) {
    load(scriptedReport(reportRows(30, 40)));
    auto& search = part<QLineEdit>("crwSearchBox");
    auto& sizes = part<QComboBox>("crwZoom");
    const struct {
        QWidget& box;
        Qt::Key key;
        Qt::KeyboardModifiers modifiers;
        bool isViewers;
    } cases[] = {
        {search, Qt::Key_PageDown, {}, true}, {pageBox(), Qt::Key_PageDown, {}, true},
        {sizes, Qt::Key_PageDown, {}, true},  {search, Qt::Key_PageDown, Qt::ControlModifier, true},
        {search, Qt::Key_Home, {}, false},    {pageBox(), Qt::Key_End, {}, false},
        {sizes, Qt::Key_End, {}, false},      {search, Qt::Key_Space, {}, false},
        {search, Qt::Key_Right, {}, false},
    };
    for (const auto& one : cases) {
        SCOPED_TRACE(one.box.objectName().toStdString() + " " + std::to_string(one.key));
        act("goto", {{u"page"_s, 7}});
        one.box.setFocus();
        auto* bar = pages().verticalScrollBar();
        const int before = bar->value();
        const QString size = sizes.currentText();
        QTest::keyClick(&one.box, one.key, one.modifiers);
        EXPECT_EQ(bar->value() != before, one.isViewers);
        EXPECT_EQ(sizes.currentText(), size);
        EXPECT_TRUE(one.box.hasFocus());
    }
}

TEST_F(Navigation, scrollingChangesThePage) {
    load(scriptedReport(reportRows(30, 40)));
    QList<int> told;
    QObject::connect(&viewer, &viewer::ReportViewer::currentPageChanged, &viewer, [&](int page) { told << page; });
    while (viewer.currentPage() < 4) {
        const qint64 before = pages().view().position();
        press(Qt::Key_PageDown);
        ASSERT_GT(pages().view().position(), before);
    }
    EXPECT_EQ(told, QList<int>({2, 3, 4}));
    const qint64 before = pages().view().position();
    press(Qt::Key_Up);
    EXPECT_LT(pages().view().position(), before);
}

TEST_F(Navigation, zoomKeepsThePlaceInView) {
    load(scriptedReport(reportRows(30, 40)));
    act("goto", {{u"page"_s, 9}});
    const struct {
        Qt::Key key;
        int percent;
    } steps[] = {
        {Qt::Key_0, 100}, {Qt::Key_Plus, 125}, {Qt::Key_Plus, 150}, {Qt::Key_Minus, 125}, {Qt::Key_Minus, 100}};
    for (const auto& step : steps) {
        press(step.key, Qt::ControlModifier);
        EXPECT_EQ(qRound(pages().view().percent()), step.percent);
        EXPECT_EQ(part<QComboBox>("crwZoom").currentText(), u"%1 %"_s.arg(step.percent));
        EXPECT_EQ(viewer.currentPage(), 9);
        EXPECT_TRUE(pages().view().pageRect(8).contains(pages().viewport()->rect().center()));
    }
    auto& list = part<QComboBox>("crwZoom");
    list.lineEdit()->setText(u"137"_s);
    QTest::keyClick(list.lineEdit(), Qt::Key_Return);
    EXPECT_EQ(qRound(pages().view().percent()), 137);
    emit list.activated(list.findText(u"Pagina întreagă"_s));
    EXPECT_LE(pages().view().pageRect(8).height(), pages().viewport()->height());
    emit list.activated(list.findText(u"Lățimea paginii"_s));
    EXPECT_EQ(pages().horizontalScrollBar()->maximum(), 0);
    viewer.resize(900, 700);
    EXPECT_EQ(pages().horizontalScrollBar()->maximum(), 0);
    EXPECT_EQ(viewer.currentPage(), 9);
    // Pages grow with the window; the one that the user is on does not leave the view.
    viewer.resize(700, 900);
    act("last");
    viewer.resize(1600, 900);
    const QPoint centre = pages().viewport()->rect().center();
    EXPECT_TRUE(pages().view().pageRect(viewer.pageCount() - 1).contains(centre));
}

TEST_F(Navigation, theTreeFollowsAndLeads) {
    load(scriptedReport(reportRows(300, 30)));
    auto& tree = part<QListView>("crwTree");
    ASSERT_EQ(tree.model()->rowCount(), 300);
    EXPECT_EQ(tree.model()->index(0, 0).data().toString(), u"F0001 FIRMA F0001 SRL"_s);
    act("last");
    EXPECT_EQ(tree.currentIndex().row(), 299);
    const QModelIndex group = tree.model()->index(120, 0);
    tree.scrollTo(group);
    QTest::mouseClick(tree.viewport(), Qt::LeftButton, {}, tree.visualRect(group).center());
    EXPECT_EQ(viewer.currentPage(), viewer.document()->pageOfGroup(120).value);
    EXPECT_TRUE(viewer.pageLines(viewer.currentPage()).join(u'\n').contains(u"FIRMA F0121 SRL"_s));
    act("tree");
    EXPECT_FALSE(tree.isVisible());
    act("tree");
    EXPECT_TRUE(tree.isVisible());
}

TEST_F(Navigation, theLastOfManyPagesIsThereAtOnce) {
    report::PageSetup low = viewer.pageSetup();
    low.height = {4200};
    viewer.setPageSetup(low);
    FakeAnswer answer = reportRows(10, 100);
    answer.repeat = 180;
    answer.blockRows = 4096;
    load(scriptedReport(answer));
    ASSERT_GT(viewer.pageCount(), 20'000);
    act("last");
    EXPECT_EQ(viewer.currentPage(), viewer.pageCount());
    const QRect place = pages().view().pageRect(viewer.pageCount() - 1);
    EXPECT_TRUE(place.intersects(pages().viewport()->rect()));
    EXPECT_LE(place.bottom(), pages().viewport()->height());
    const int page = viewer.pageCount() / 2;
    act("goto", {{u"page"_s, page}});
    EXPECT_EQ(pages().view().pageRect(page - 1).top(), viewer::PageLayout::kGap);
}

TEST_F(Navigation, theFocusOfTheViewerIsOnThePages) {
    QApplication::setActiveWindow(&viewer);
    viewer.setFocus();
    EXPECT_EQ(viewer.focusWidget(), &pages());
    load(scriptedReport(reportRows(1, 1)));
    // Esc belongs to the window while no search is open.
    QKeyEvent escape(QEvent::KeyPress, Qt::Key_Escape, Qt::NoModifier);
    QCoreApplication::sendEvent(&pages(), &escape);
    EXPECT_FALSE(escape.isAccepted());
}

TEST_F(Navigation, anotherSheetKeepsTheData) {
    const auto connection = FakeConnection::create();
    load(scriptedReport(connection, reportRows(10, 40)));
    const int pagesBefore = viewer.pageCount();
    const qsizetype calls = connection->calls().size();
    report::PageSetup upright = viewer.pageSetup();
    std::swap(upright.width, upright.height);
    upright.isLandscape = false;
    viewer.setPageSetup(upright);
    viewer.refreshEx(false);
    EXPECT_EQ(viewer.document()->pageHeight(), upright.height);
    EXPECT_LT(viewer.pageCount(), pagesBefore);
    EXPECT_EQ(connection->calls().size(), calls);
    EXPECT_EQ(events, QList<QByteArray>({"started", "finished"}));
    viewer.refreshEx(true);
    ASSERT_TRUE(waitUntilLoaded());
    ASSERT_TRUE(viewer.hasReport()) << qPrintable(part<QLabel>("crwStateText").text());
    EXPECT_GT(connection->calls().size(), calls);
    EXPECT_EQ(viewer.document()->pageHeight(), upright.height);
}

}  // namespace velcoran::tests
