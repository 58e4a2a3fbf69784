#include "report/layout/search.h"

#include "viewer/pages/page_area.h"
#include "viewer_fixture.h"

#include <QLabel>
#include <QLineEdit>

using namespace Qt::StringLiterals;

namespace velcoran::tests {

class ReportSearch : public ViewerTest {
protected:
    ReportSearch() { load(scriptedReport(reportRows(12, 40))); }

    void type(const QString& text) {
        QTest::keyClick(&part("crwPages"), Qt::Key_F, Qt::ControlModifier);
        auto& box = part<QLineEdit>("crwSearchBox");
        box.clear();
        QTest::keyClicks(&box, text);
        QTest::keyClick(&box, Qt::Key_Return);
    }
    [[nodiscard]] bool waitForPosition(const QString& text) {
        const auto& label = part<QLabel>("crwSearchPosition");
        return QTest::qWaitFor([&] { return label.text() == text; }, 20'000);
    }
    [[nodiscard]] qint64 count(const QString& text) {
        const std::atomic_bool stop = false;
        return report::Search(viewer.document(), text).count(stop);
    }
};

TEST_F(ReportSearch, goesFromHitToHitAndAround) {
    const qint64 total = count(u"-40"_s);
    ASSERT_EQ(total, 12);
    type(u"-40"_s);
    ASSERT_TRUE(waitForPosition(u"1 din 12"_s));
    const int page = viewer.currentPage();
    const struct {
        Qt::KeyboardModifiers modifiers;
        QString position;
    } steps[] = {{Qt::NoModifier, u"2 din 12"_s},     {Qt::NoModifier, u"3 din 12"_s},
                 {Qt::ShiftModifier, u"2 din 12"_s},  {Qt::ShiftModifier, u"1 din 12"_s},
                 {Qt::ShiftModifier, u"12 din 12"_s}, {Qt::NoModifier, u"1 din 12"_s}};
    for (const auto& step : steps) {
        QTest::keyClick(&part("crwPages"), Qt::Key_F3, step.modifiers);
        EXPECT_TRUE(waitForPosition(step.position)) << qPrintable(step.position);
    }
    EXPECT_EQ(viewer.currentPage(), page);
}

TEST_F(ReportSearch, startsFromThePageInView) {
    int page = 6;
    act("goto", {{u"page"_s, page}});
    int before = 0;
    for (int i = 1; i < page; ++i) before += static_cast<int>(viewer.pageLines(i).filter(u"-40\t"_s).size());
    while (viewer.pageLines(page).filter(u"-40\t"_s).isEmpty()) ++page;
    type(u"-40"_s);
    EXPECT_TRUE(waitForPosition(u"%1 din 12"_s.arg(before + 1)));
    EXPECT_EQ(viewer.currentPage(), page);
}

TEST_F(ReportSearch, closesWithEsc) {
    type(u"zzzz"_s);
    EXPECT_TRUE(waitForPosition(u"nicio potrivire"_s));
    QTest::keyClick(&part("crwSearchBox"), Qt::Key_Escape);
    EXPECT_TRUE(part<QLineEdit>("crwSearchBox").text().isEmpty());
    EXPECT_TRUE(waitForPosition({}));
    EXPECT_EQ(viewer.focusWidget(), &part("crwPages"));
}

TEST_F(ReportSearch, marksItsHitsAndTheCurrentOneAlone) {
    auto& pages = this->pages();
    pages.setZoom({viewer::Zoom::Kind::Percent, 50});
    const auto picture = [&] { return pages.viewport()->grab().toImage(); };
    const auto count = [&](int page, QRgb colour) {
        const QImage seen = picture();
        const QRect place = pages.view().pageRect(page) & seen.rect();
        int pixels = 0;
        for (int y = place.top(); y <= place.bottom(); ++y)
            for (int x = place.left(); x <= place.right(); ++x) pixels += seen.pixel(x, y) == colour;
        return pixels;
    };
    constexpr QRgb kHit = 0xFFFFEE88;
    const QImage clean = picture();
    for (int round = 0; round < 10; ++round) {
        ASSERT_TRUE(act("search", {{u"text"_s, u"000"_s}}).isValid());
        if (round == 0) {
            EXPECT_GT(count(0, kHit), 0);
            EXPECT_GT(count(1, kHit), 0);
            const QImage marked = picture();
            int current = 0;
            for (int y = 0; y < marked.height(); ++y)
                for (int x = 0; x < marked.width(); ++x) {
                    const QColor colour = marked.pixelColor(x, y);
                    const bool isOrange = colour.red() == 255 && std::abs(colour.green() - 167) < 4;
                    current += isOrange;
                    EXPECT_FALSE(isOrange && y > pages.view().pageRect(0).bottom()) << y;
                }
            EXPECT_GT(current, 0);
            ASSERT_TRUE(act("search", {{u"text"_s, u"F0001-2"_s}}).isValid());
            EXPECT_EQ(count(1, kHit), 0) << "nothing of the search before";
        }
        part<QLineEdit>("crwSearchBox").setFocus();
        QTest::keyClick(&part("crwSearchBox"), Qt::Key_Escape);
        QCoreApplication::processEvents();  // what the thread still says
        act("goto", {{u"page"_s, 1}});
        ASSERT_EQ(picture(), clean) << round;
    }
    act("object", {{u"page"_s, 1}, {u"field"_s, u"NumarFactura"_s}, {u"record"_s, 1}});
    act("goto", {{u"page"_s, 1}});
    const auto pageOf = [&](const QImage& seen, int page) {
        return seen.copy(pages.view().pageRect(page) & seen.rect());
    };
    EXPECT_NE(pageOf(picture(), 0), pageOf(clean, 0));
    EXPECT_EQ(pageOf(picture(), 1), pageOf(clean, 1)) << "the frame of what is chosen stands on its page alone";
}

TEST_F(ReportSearch, theBoxGoesBackEndsAndBeginsAnew) {
    QApplication::setActiveWindow(&viewer);
    auto& box = part<QLineEdit>("crwSearchBox");
    type(u"-40"_s);
    ASSERT_TRUE(waitForPosition(u"1 din 12"_s));
    EXPECT_TRUE(part("crwFindNext").isEnabled());
    box.setFocus();
    QTest::keyClick(&box, Qt::Key_Return, Qt::ShiftModifier);
    EXPECT_TRUE(waitForPosition(u"12 din 12"_s));
    box.clear();  // as its button does
    EXPECT_TRUE(waitForPosition({}));
    EXPECT_FALSE(part("crwFindNext").isEnabled());
    type(u"-40"_s);
    EXPECT_TRUE(waitForPosition(u"12 din 12"_s)) << "from the page in view";
    QTest::keyClick(&box, Qt::Key_Escape);
    type(u"-40"_s);
    EXPECT_TRUE(waitForPosition(u"12 din 12"_s)) << "the same text again";
}

TEST_F(ReportSearch, anotherSheetIsSearchedAnewAndKeepsThePage) {
    type(u"-40"_s);
    ASSERT_TRUE(waitForPosition(u"1 din 12"_s));
    act("goto", {{u"page"_s, 4}});
    viewer.setPageSetup(report::pageSetup(u"A3"_s, true));
    viewer.refreshEx(false);
    EXPECT_TRUE(QTest::qWaitFor([this] { return part<QLabel>("crwSearchPosition").text().endsWith(u" din 12"_s); }));
    EXPECT_GE(viewer.currentPage(), 4);
}

TEST_F(ReportSearch, anActionAnswersThePage) {
    const QVariant found = act("search", {{u"text"_s, u"f0007-1"_s}});
    const int page = found.toMap().value(u"page"_s).toInt();
    ASSERT_GT(page, 1);
    EXPECT_TRUE(viewer.pageLines(page).join(u'\n').contains(u"F0007-1"_s));
    EXPECT_FALSE(viewer.pageLines(page - 1).join(u'\n').contains(u"F0007-1"_s));
    EXPECT_EQ(viewer.currentPage(), page);
    EXPECT_FALSE(act("search", {{u"text"_s, u"nicăieri"_s}}).isValid());
    EXPECT_FALSE(act("search", {{u"text"_s, u""_s}}).isValid());
}

}  // namespace velcoran::tests
