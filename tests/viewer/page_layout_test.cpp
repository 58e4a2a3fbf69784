#include "viewer/pages/page_layout.h"

#include "support/test_data.h"
#include "viewer/commands/texts.h"

#include <gtest/gtest.h>

namespace velcoran::viewer {

using namespace Qt::StringLiterals;

constexpr QSizeF kSheet(16838, 11906);

TEST(PageLayout, placesOfPagesStayExactForManyPages) {
    for (const int pages : {1, 57, 25'000, 2'000'000}) {
        PageLayout layout(pages, kSheet, 96);
        layout.setPercent(400);
        for (const int page : {0, pages / 2, pages - 1}) {
            EXPECT_EQ(layout.pageAt(layout.top(page)), page);
            EXPECT_EQ(layout.pageAt(layout.top(page) + layout.pageSize().height() - 1), page);
        }
        EXPECT_EQ(layout.height(), layout.top(pages - 1) + layout.pageSize().height() + PageLayout::kGap);
        EXPECT_EQ(layout.pageAt(layout.height() * 2), pages - 1);
        EXPECT_EQ(layout.pageAt(-5), 0);
    }
}

TEST(PageLayout, fittedPagesNeedNoScrollBar) {
    PageLayout layout(3, kSheet, 96);
    for (const QSize view : {QSize(1000, 700), QSize(1013, 533), QSize(333, 900), QSize(1921, 1080)}) {
        layout.setPercent(layout.percentFor({Zoom::Kind::PageWidth}, view));
        EXPECT_LE(layout.width(), view.width());
        EXPECT_GT(layout.width(), view.width() - 3);
        layout.setPercent(layout.percentFor({Zoom::Kind::WholePage}, view));
        EXPECT_LE(layout.width(), view.width());
        EXPECT_LE(layout.pageSize().height() + 2 * PageLayout::kGap, view.height());
    }
}

TEST(PageLayout, zoomGoesToTheNextStepOfTheList) {
    const struct {
        int percent, in, out;
    } cases[] = {{25, 50, 25}, {90, 100, 75}, {100, 125, 75}, {130, 150, 125}, {400, 400, 300}, {10, 25, 10}};
    for (const auto& each : cases) {
        EXPECT_EQ(nextZoomStep(each.percent, true), each.in) << each.percent;
        EXPECT_EQ(nextZoomStep(each.percent, false), each.out) << each.percent;
    }
}

TEST(PageLayout, tilesCoverAPageOnce) {
    for (const QSize picture : {QSize(1, 1), QSize(1024, 1024), QSize(1025, 700), QSize(8984, 6352)}) {
        qint64 area = 0;
        QRect all;
        for (int tile = 0; tile < tileCount(picture); ++tile) {
            const QRect place = tileRect(picture, tile);
            area += qint64{place.width()} * place.height();
            all |= place;
        }
        EXPECT_EQ(all, QRect(QPoint(), picture));
        EXPECT_EQ(area, qint64{picture.width()} * picture.height());
    }
}

TEST(Texts, numbersReadAsRomanian) {
    const struct {
        qint64 rows;
        QString text;
    } cases[] = {{0, u"0 rânduri"_s},           {1, u"1 rând"_s},
                 {19, u"19 rânduri"_s},         {20, u"20 de rânduri"_s},
                 {100, u"100 de rânduri"_s},    {101, u"101 rânduri"_s},
                 {1000, u"1.000 de rânduri"_s}, {1'234'567, u"1.234.567 de rânduri"_s}};
    for (const auto& each : cases) EXPECT_EQ(rowsText(each.rows), each.text);
    EXPECT_EQ(durationText(7'400), u"0:07"_s);
    EXPECT_EQ(durationText(3'725'000), u"1:02:05"_s);
    EXPECT_EQ(pageText(3, 25'000), u"3 din 25.000"_s);
}

TEST(Texts, aPageIsReadFromWhatAPersonTypes) {
    const struct {
        QString text;
        int page;
    } cases[] = {{u"3"_s, 3}, {u" 12 din 57 "_s, 12}, {u"1.250 din 25.000"_s, 1250},     {u"7/57"_s, 7}, {u"abc"_s, 0},
                 {u""_s, 0},  {u"-4"_s, 0},           {u"99999999999999"_s, 999'999'999}};
    for (const auto& each : cases) EXPECT_EQ(pageOfText(each.text), each.page) << qPrintable(each.text);
}

}  // namespace velcoran::viewer
