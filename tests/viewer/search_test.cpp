#include "report/layout/search.h"

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
