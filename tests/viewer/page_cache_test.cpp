#include "viewer/pages/page_cache.h"

#include "viewer/pages/page_area.h"
#include "viewer/pages/page_layout.h"
#include "viewer_fixture.h"

#include <algorithm>

namespace velcoran::viewer {

class Pictures : public tests::ViewerTest {
protected:
    Pictures() { load(tests::scriptedReport(tests::reportRows(30, 40))); }
};

TEST_F(Pictures, comeInTheOrderAskedForAndKeepTheLimit) {
    constexpr QSize kSize(400, 283);
    constexpr qint64 kOne = qint64{400} * 283 * 4;
    PageCache cache(5 * kOne);
    cache.setDocument(viewer.document());
    QList<int> ready;
    QObject::connect(&cache, &PageCache::pictureReady, &cache, [&](int page) { ready << page; });
    cache.want({{0, kSize, 0}, {1, kSize, 0}, {2, kSize, 0}});
    ASSERT_TRUE(QTest::qWaitFor([&] { return ready.size() == 3; }, 20'000));
    EXPECT_NE(ready.first(), 2) << "two are drawn at a time, the first ones first";
    EXPECT_EQ(cache.bytes(), 3 * kOne);
    cache.want({{0, kSize, 0}, {1, kSize, 0}});
    for (int page = 3; page < 12; ++page) {
        EXPECT_FALSE(cache.find({0, kSize, 0}).isNull()) << "what is shown stays";
        EXPECT_FALSE(cache.drawNow({page, kSize, 0}).isNull());
        EXPECT_LE(cache.bytes(), 5 * kOne);
    }
    EXPECT_TRUE(cache.find({1, kSize, 0}).isNull());
    EXPECT_EQ(cache.standIns(0, QSize(800, 566)).size(), 1U);
    EXPECT_TRUE(cache.standIns(0, kSize).empty());
    cache.setDocument(viewer.document());
    EXPECT_EQ(cache.bytes(), 0);
}

TEST_F(Pictures, ofTheReportBeforeAreDroppedHoweverLateTheyCome) {
    constexpr QSize kSize(400, 283);
    PageCache cache;
    for (int round = 0; round < 10; ++round) {
        cache.setDocument(viewer.document());
        std::vector<PictureKey> before;
        for (int page = 0; page < 12; ++page) before.push_back({page, kSize, 0});
        QList<int> ready;
        const auto noted = QObject::connect(&cache, &PageCache::pictureReady, &cache, [&](int page) { ready << page; });
        cache.want(before);
        ASSERT_TRUE(QTest::qWaitFor([&] { return !ready.isEmpty(); }, 20'000));
        cache.setDocument(viewer.document());  // while the threads draw
        ready.clear();
        cache.want({{20, kSize, 0}, {21, kSize, 0}, {22, kSize, 0}, {23, kSize, 0}});
        ASSERT_TRUE(QTest::qWaitFor([&] { return ready.size() >= 4; }, 20'000));
        EXPECT_GE(*std::ranges::min_element(ready), 20);
        QObject::disconnect(noted);
    }
}

// A picture of the window is whole, also when it is taken before the threads have drawn the page that was gone to.
TEST_F(Pictures, aGrabbedWindowShowsThePageAtOnce) {
    auto& pages = this->pages();
    for (const int page : {20, 5, 30}) {
        act("goto", {{QStringLiteral("page"), page}});
        const QImage early = pages.viewport()->grab().toImage();
        const QRect inside = pages.view().pageRect(page - 1).adjusted(40, 40, -40, -100) & early.rect();
        QImage white(inside.size(), early.format());
        white.fill(Qt::white);
        EXPECT_NE(early.copy(inside), white) << page;
    }
}

TEST_F(Pictures, tilesShowTheSamePageAsOnePicture) {
    PageCache cache;
    cache.setDocument(viewer.document());
    constexpr QSize kSize(1500, 1061);
    ASSERT_EQ(tileCount(kSize), 4);
    QImage whole(kSize, QImage::Format_RGB32);
    whole.fill(Qt::white);
    QPainter painter(&whole);
    const report::Page page = viewer.document()->page({2});
    report::paintPage(painter, page, kSize.width() / double(page.width.value));
    painter.end();
    for (int tile = 0; tile < 4; ++tile)
        EXPECT_EQ(cache.drawNow({1, kSize, tile}), whole.copy(tileRect(kSize, tile))) << tile;
}

}  // namespace velcoran::viewer
