#include "viewer_fixture.h"

#include <QClipboard>
#include <QComboBox>
#include <QLineEdit>
#include <QMenu>
#include <QScrollBar>
#include <QToolTip>

using namespace Qt::StringLiterals;

namespace velcoran::tests {

/// The pages of a report so large that every direction has something to scroll.
class Gestures : public ViewerTest {
protected:
    Gestures() {
        FakeAnswer answer = reportRows(30, 40);
        answer.rows[2][4] = cut;
        load(scriptedReport(answer));
        pages().setZoom({viewer::Zoom::Kind::Percent, 300});
        act("goto", {{u"page"_s, 9}});
        bar(Qt::Horizontal).setValue(400);
        bar(Qt::Vertical).setValue(bar(Qt::Vertical).value() + 900);
    }
    QScrollBar& bar(Qt::Orientation direction) {
        return direction == Qt::Vertical ? *pages().verticalScrollBar() : *pages().horizontalScrollBar();
    }
    QPoint scrolled() { return {bar(Qt::Horizontal).value(), bar(Qt::Vertical).value()}; }
    /// The place of page 9 under a point of the view, in shares of its sides.
    QPointF placeUnder(QPointF point) {
        const QRectF page = pages().view().pageRect(8);
        return {(point.x() - page.x()) / page.width(), (point.y() - page.y()) / page.height()};
    }
    /// Middle of a field of the first page, which comes into view.
    QPoint field(const QString& text) {
        const report::Page page = viewer.document()->page({1});
        const auto item = std::ranges::find_if(page.items, [&](const auto& one) { return one.fullText == text; });
        if (item != page.items.end()) pages().ensureVisible(0, viewer::rectOf(*item));
        return middleOf([&](const auto& one) { return one.fullText == text; });
    }
    QString copied() {
        QGuiApplication::clipboard()->setText(u"nimic"_s);
        QTest::keyClick(&pages(), Qt::Key_C, Qt::ControlModifier);
        return QGuiApplication::clipboard()->text();
    }
    void mouse(QEvent::Type type, Qt::MouseButton button, QPoint place) {
        QMouseEvent event(type, place, pages().viewport()->mapToGlobal(place), button, button, Qt::NoModifier);
        QApplication::sendEvent(pages().viewport(), &event);
    }

    const QString cut = u"FACTURA-<b>EXTERNA</b>-CU-UN-NUMAR-FOARTE-FOARTE-LUNG-1234567890"_s;
};

TEST_F(Gestures, keysScrollTheirWay) {
    const struct {
        Qt::Key key;
        Qt::KeyboardModifiers modifiers;
        int across, down;  ///< signs
    } cases[] = {
        {Qt::Key_Up, {}, 0, -1},
        {Qt::Key_Down, {}, 0, 1},
        {Qt::Key_Left, {}, -1, 0},
        {Qt::Key_Right, {}, 1, 0},
        {Qt::Key_Space, {}, 0, 1},
        {Qt::Key_Space, Qt::ShiftModifier, 0, -1},
        {Qt::Key_PageUp, Qt::KeypadModifier, 0, -1},
        {Qt::Key_Down, Qt::ShiftModifier, 0, 0},
        {Qt::Key_Down, Qt::ControlModifier, 0, 0},
        {Qt::Key_PageDown, Qt::ControlModifier | Qt::KeypadModifier, 0, 1},
    };
    for (const auto& one : cases) {
        const QPoint before = scrolled();
        QTest::keyClick(&pages(), one.key, one.modifiers);
        const QPoint way = scrolled() - before;
        EXPECT_EQ(std::clamp(way.x(), -1, 1), one.across) << one.key;
        EXPECT_EQ(std::clamp(way.y(), -1, 1), one.down) << one.key << ' ' << one.modifiers;
    }
}

TEST_F(Gestures, aViewOfWholePagesIsLeafedThrough) {
    pages().setZoom({viewer::Zoom::Kind::WholePage, 0});
    act("goto", {{u"page"_s, 9}});
    const int top = pages().view().pageRect(8).top();
    for (const auto& [key, page] : {std::pair(Qt::Key_PageDown, 10), std::pair(Qt::Key_PageUp, 9)}) {
        QTest::keyClick(&pages(), key);
        EXPECT_EQ(viewer.currentPage(), page);
        EXPECT_EQ(pages().view().pageRect(page - 1).top(), top);
    }
    pages().setZoom({viewer::Zoom::Kind::Percent, 25});
    bar(Qt::Vertical).setValue(bar(Qt::Vertical).maximum());
    EXPECT_EQ(viewer.currentPage(), viewer.pageCount()) << "the last of several in view";
}

TEST_F(Gestures, zoomKeepsWhatLiesUnderThePointer) {
    const QPoint pointer(300, 200);
    for (const int notch : {120, -120}) {
        const QPointF place = placeUnder(pointer);
        const double percent = pages().view().percent();
        QWheelEvent wheel(pointer, pages().viewport()->mapToGlobal(QPointF(pointer)), {}, {0, notch}, {},
                          Qt::ControlModifier, Qt::NoScrollPhase, false);
        QApplication::sendEvent(pages().viewport(), &wheel);
        EXPECT_EQ(pages().view().percent() > percent, notch > 0);
        EXPECT_NE(pages().view().percent(), percent);
        EXPECT_NEAR(placeUnder(pointer).x(), place.x(), 0.005) << notch;
        EXPECT_NEAR(placeUnder(pointer).y(), place.y(), 0.005) << notch;
    }
    auto& list = part<QComboBox>("crwZoom");
    list.lineEdit()->setText(u"9999"_s);
    QTest::keyClick(list.lineEdit(), Qt::Key_Return);
    EXPECT_EQ(qRound(pages().view().percent()), 400);
}

TEST_F(Gestures, theMouseDragsAndAShortWayIsAClick) {
    const QPoint place = field(u"F0001-2"_s);
    const QPoint before = scrolled();
    mouse(QEvent::MouseButtonPress, Qt::LeftButton, place);
    mouse(QEvent::MouseMove, Qt::LeftButton, place + QPoint(1, 1));
    mouse(QEvent::MouseButtonRelease, Qt::LeftButton, place + QPoint(1, 1));
    EXPECT_EQ(scrolled(), before);
    EXPECT_EQ(copied(), u"F0001-2"_s);
    bar(Qt::Horizontal).setValue(200);
    bar(Qt::Vertical).setValue(500);
    mouse(QEvent::MouseButtonPress, Qt::LeftButton, {400, 400});
    mouse(QEvent::MouseMove, Qt::LeftButton, {350, 330});
    mouse(QEvent::MouseButtonRelease, Qt::LeftButton, {350, 330});
    EXPECT_EQ(scrolled(), QPoint(250, 570));
    EXPECT_EQ(copied(), u"F0001-2"_s) << "a drag chooses nothing";
}

TEST_F(Gestures, theRightButtonChoosesForItsMenu) {
    const struct {
        QString text;
        bool hasRow;
    } cases[] = {{u"F0001-2"_s, true}, {u"RAPORT FACTURI EXTERNE - FURNIZORI"_s, false}};
    for (const auto& one : cases) {
        const QPoint place = field(one.text);
        mouse(QEvent::MouseButtonPress, Qt::RightButton, place);
        QContextMenuEvent ask(QContextMenuEvent::Mouse, place, pages().viewport()->mapToGlobal(place));
        QApplication::sendEvent(pages().viewport(), &ask);
        auto& menu = part<QMenu>("crwMenu");
        for (const QAction* action : menu.actions())
            EXPECT_EQ(action->isEnabled(), action->iconText() != u"Copiază rândul"_s || one.hasRow);
        menu.close();
        EXPECT_EQ(copied(), one.text);
    }
}

TEST_F(Gestures, aTextThatWasCutShowsWholeUnderThePointer) {
    for (const auto& [text, shown] : {std::pair(u"F0001-2"_s, QString()), std::pair(cut, cut.toHtmlEscaped())}) {
        const QPoint place = field(text);
        QHelpEvent help(QEvent::ToolTip, place, pages().viewport()->mapToGlobal(place));
        QApplication::sendEvent(pages().viewport(), &help);
        EXPECT_EQ(QToolTip::text(), shown);
    }
    QToolTip::hideText();
}

TEST_F(Gestures, whatIsGoneToComesIntoViewWhole) {
    for (const QString& name : {u"ValoareBruta"_s, u"DataDoc"_s, u"ValoareBruta"_s}) {
        for (const int record : {30, 2}) {
            ASSERT_TRUE(act("object", {{u"page"_s, 4}, {u"field"_s, name}, {u"record"_s, record}}).toBool());
            const report::Page page = viewer.document()->page({4});
            const QRectF item = viewer::rectOf(page.items[*viewer::itemOfField(page, name, record)]);
            EXPECT_TRUE(QRectF(pages().viewport()->rect()).contains(pages().view().placeOf(3, item)))
                << qPrintable(name);
        }
    }
    load(scriptedReport(reportRows(1, 1)));
    EXPECT_EQ(scrolled(), QPoint(0, 0)) << "a new report begins at its corner";
}

TEST_F(Gestures, theViewersOwnKeysAreKeptFromTheHost) {
    const auto isKept = [this](Qt::Key key, Qt::KeyboardModifiers modifiers) {
        QKeyEvent event(QEvent::ShortcutOverride, key, modifiers);
        event.ignore();
        QApplication::sendEvent(&viewer, &event);
        return event.isAccepted();
    };
    EXPECT_TRUE(isKept(Qt::Key_F, Qt::ControlModifier));
    EXPECT_FALSE(isKept(Qt::Key_J, Qt::ControlModifier));
    EXPECT_FALSE(isKept(Qt::Key_C, Qt::ControlModifier)) << "nothing is chosen";
    QTest::mouseClick(pages().viewport(), Qt::LeftButton, {}, field(u"F0001-2"_s));
    EXPECT_TRUE(isKept(Qt::Key_C, Qt::ControlModifier));
    viewer.setOption(255, false);
    EXPECT_FALSE(isKept(Qt::Key_F, Qt::ControlModifier));
    EXPECT_FALSE(act("search", {{u"text"_s, u"F0001"_s}}).isValid()) << "switched off";
}

TEST_F(Gestures, aPageNumberBeingTypedIsLeftAlone) {
    QApplication::setActiveWindow(&viewer);
    auto& box = part<QLineEdit>("crwPageBox");
    box.setFocus();
    QCoreApplication::processEvents();
    QTest::keyClicks(&box, u"1"_s);
    act("next");
    EXPECT_EQ(box.text(), u"1"_s);
    pages().setFocus();
    EXPECT_EQ(box.text(), u"10 din %1"_s.arg(viewer.pageCount()));
}

// An object that is hard to hit lies over what is easy to hit.
TEST(ItemAt, takesTextsBeforeLinesBeforeBoxes) {
    using Kind = report::PageItem::Kind;
    report::Page page;
    const auto add = [&page](Kind kind, base::TwipsRect rect, const QString& text, bool isField) {
        report::PageItem item;
        item.kind = kind;
        item.rect = rect;
        item.text = text;
        item.isField = isField;
        page.items.push_back(item);
    };
    add(Kind::Text, {{100}, {100}, {400}, {200}}, u"jos"_s, false);
    add(Kind::Text, {{300}, {100}, {400}, {200}}, u"sus"_s, true);
    add(Kind::Line, {{0}, {400}, {1000}, {0}}, {}, false);
    add(Kind::Box, {{0}, {0}, {1000}, {1000}}, {}, false);
    add(Kind::Text, {{100}, {600}, {400}, {200}}, {}, false);
    const struct {
        QPointF place;
        std::optional<qsizetype> item;
    } cases[] = {{{200, 200}, 0}, {{350, 200}, 1}, {{600, 425}, 2},           {{600, 450}, 3},
                 {{200, 700}, 3}, {{900, 900}, 3}, {{1500, 20}, std::nullopt}};
    for (const auto& one : cases)
        EXPECT_EQ(viewer::itemAt(page, one.place), one.item) << one.place.x() << one.place.y();
}

}  // namespace velcoran::tests
