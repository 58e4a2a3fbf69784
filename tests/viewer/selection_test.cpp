#include "viewer_fixture.h"

#include <QClipboard>
#include <QGuiApplication>
#include <QLabel>
#include <QMenu>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace velcoran::tests {

class Objects : public ViewerTest {
protected:
    Objects() {
        FakeAnswer answer = reportRows(2, 5);
        // Longer than its column: shown with an ellipsis, given out whole.
        answer.rows[2][4] = longNumber;
        load(scriptedReport(answer));
        QObject::connect(&viewer, &viewer::ReportViewer::objectClicked, &viewer,
                         [this](int, int, const QStringList& fields, bool*) { clicks << fields; });
    }
    /// The upper half of what is in view: below stands the time of printing.
    QImage picture() {
        const QImage seen = pages().viewport()->grab().toImage();
        return seen.copy(0, 0, seen.width(), seen.height() / 2);
    }

    const QString longNumber = u"FACTURA-EXTERNA-CU-UN-NUMAR-FOARTE-FOARTE-LUNG-1234567890"_s;
    QList<QStringList> clicks;
};

TEST_F(Objects, aDoubleClickGivesTheValuesOfTheField) {
    using report::PageItem;
    const QPoint field = middleOf([](const PageItem& item) { return item.isField && item.text == u"F0001-2"_s; });
    const QPoint text = middleOf([](const PageItem& item) { return item.field == u"Text1"_s; });
    QTest::mouseDClick(pages().viewport(), Qt::LeftButton, {}, field);
    QTest::mouseDClick(pages().viewport(), Qt::LeftButton, {}, text);
    QTest::mouseDClick(pages().viewport(), Qt::LeftButton, {}, QPoint(3, 3));
    QTest::mouseClick(pages().viewport(), Qt::LeftButton, {}, field);
    EXPECT_EQ(clicks, QList<QStringList>({{u"F0001-2"_s}, {}}));
}

TEST_F(Objects, theRowIsCopiedWithoutTheNextGroupsHeading) {
    QGuiApplication::clipboard()->clear();
    QTest::mouseClick(pages().viewport(), Qt::LeftButton, {},
                      middleOf([](const auto& item) { return item.text == u"F0001-5"_s; }));
    QContextMenuEvent ask(QContextMenuEvent::Keyboard, QPoint(9, 9), pages().mapToGlobal(QPoint(9, 9)));
    QApplication::sendEvent(pages().viewport(), &ask);
    for (QAction* action : part<QMenu>("crwMenu").actions())
        if (action->iconText() == u"Copiază rândul"_s) action->trigger();
    part<QMenu>("crwMenu").close();
    const QString row = QGuiApplication::clipboard()->text();
    EXPECT_TRUE(row.contains(u"F0001-5"_s));
    EXPECT_FALSE(row.contains(u"F0002"_s)) << row.toStdString();
}

TEST_F(Objects, anActionMakesTheGesture) {
    EXPECT_TRUE(act("object", {{u"page"_s, 1}, {u"field"_s, u"NumarFactura"_s}, {u"record"_s, 3}}).toBool());
    EXPECT_TRUE(act("object", {{u"page"_s, 1}, {u"field"_s, u"ValoareNeta"_s}, {u"record"_s, 3}}).toBool());
    EXPECT_TRUE(act("object", {{u"page"_s, 1}, {u"field"_s, u"CursValutar"_s}, {u"record"_s, 3}}).toBool());
    EXPECT_EQ(clicks, QList<QStringList>({{longNumber}, {u"1.000,125"_s}, {u"4,95"_s}})) << "all digits, two at least";
    for (const QVariantMap& nowhere : {QVariantMap{{u"page"_s, 1}, {u"field"_s, u"NumarFactura"_s}, {u"record"_s, 99}},
                                       QVariantMap{{u"page"_s, 9}, {u"field"_s, u"NumarFactura"_s}, {u"record"_s, 1}},
                                       QVariantMap{{u"page"_s, 1}, {u"field"_s, u"Altceva"_s}, {u"record"_s, 1}}})
        EXPECT_FALSE(act("object", nowhere).toBool());
    EXPECT_EQ(clicks.size(), 3);
}

TEST_F(Objects, theChosenOneIsCopiedWhole) {
    QClipboard* clipboard = QGuiApplication::clipboard();
    clipboard->setText(u"nimic"_s);
    QTest::keyClick(&pages(), Qt::Key_C, Qt::ControlModifier);
    EXPECT_EQ(clipboard->text(), u"nimic"_s);
    const QPoint place = middleOf([this](const report::PageItem& item) { return item.fullText == longNumber; });
    QTest::mouseClick(pages().viewport(), Qt::LeftButton, {}, place);
    QTest::keyClick(&pages(), Qt::Key_C, Qt::ControlModifier);
    EXPECT_EQ(clipboard->text(), longNumber);
}

TEST_F(Objects, aNewReportShowsNothingOfTheOneBefore) {
    const auto isLong = [this](const report::PageItem& item) { return item.fullText == longNumber; };
    const QPoint place = middleOf(isLong);
    const auto before = scriptedReport(reportRows(2, 4));
    load(before);
    const QImage clean = picture();
    FakeAnswer marked = reportRows(2, 5);
    marked.rows[2][4] = longNumber;
    load(scriptedReport(marked));
    EXPECT_TRUE(act("search", {{u"text"_s, u"F0001-2"_s}}).isValid());
    QTest::mouseClick(pages().viewport(), Qt::LeftButton, {}, place);
    ASSERT_NE(picture(), clean);
    load(before);
    EXPECT_EQ(picture(), clean);
    QGuiApplication::clipboard()->setText(u"nimic"_s);
    QTest::keyClick(&pages(), Qt::Key_C, Qt::ControlModifier);
    EXPECT_EQ(QGuiApplication::clipboard()->text(), u"nimic"_s);
    QTest::mouseDClick(pages().viewport(), Qt::LeftButton, {}, place);
    EXPECT_EQ(clicks, QList<QStringList>{{u"F0001-3"_s}});
    QTest::keyClick(&pages(), Qt::Key_C, Qt::ControlModifier);
    EXPECT_EQ(QGuiApplication::clipboard()->text(), u"F0001-3"_s);
}

TEST_F(Objects, theFieldInTheTotalsIsNoRecord) {
    const report::Page page = viewer.document()->page({1});
    EXPECT_EQ(viewer::itemOfField(page, u"NumarFactura"_s, 0), std::nullopt);
    const auto first = viewer::itemOfField(page, u"numarfactura"_s, 1);
    ASSERT_TRUE(first.has_value());
    EXPECT_EQ(page.items[*first].fullText, u"F0001-1"_s);
}

}  // namespace velcoran::tests
