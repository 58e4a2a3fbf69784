#include "viewer/panels/toolbar.h"
#include "viewer/commands/command_table.h"
#include "viewer/commands/icons.h"
#include "viewer_fixture.h"

#include <QSet>
#include <QSignalSpy>
#include <QTabBar>
#include <QToolButton>

using namespace Qt::StringLiterals;

namespace velcoran::tests {

using viewer::ReportViewer;

class Bar : public ViewerTest {};

TEST_F(Bar, eachOptionSwitchesItsPart) {
    const struct {
        int option;
        const char* name;
        bool isShownAtFirst;
    } cases[] = {{253, "crwTree", true},       {254, "crwFirst", true},   {254, "crwPageBox", true},
                 {255, "crwSearch", true},     {258, "crwPrint", true},   {259, "crwRefresh", false},
                 {260, "crwZoom", true},       {261, "crwHelp", false},   {262, "crwClose", false},
                 {263, "crwTreeButton", true}, {264, "crwFilter", false}, {340, "crwExport", true},
                 {365, "crwToolbar", true},    {367, "crwTabs", false}};
    viewer.resize(2200, 800);
    load(scriptedReport(reportRows(3, 3)));
    for (const auto& each : cases) {
        EXPECT_EQ(part(each.name).isVisible(), each.isShownAtFirst) << each.name;
        for (const bool isOn : {!each.isShownAtFirst, each.isShownAtFirst}) {
            viewer.setOption(each.option, isOn);
            EXPECT_EQ(part(each.name).isVisible(), isOn) << each.name;
        }
    }
    viewer.setOption(999, true);
    EXPECT_EQ(viewer.options().value(u"999"_s), true);
    EXPECT_EQ(viewer.options().value(u"340"_s), true);
    EXPECT_FALSE(viewer.options().contains(u"370"_s));
}

TEST_F(Bar, stopAndProgressFollowTheirOptionsWhileLoading) {
    viewer.resize(2200, 800);
    FakeAnswer slow = reportRows(1, 1);
    slow.runDelay = std::chrono::hours(1);
    viewer.setReportSource(scriptedReport(slow));
    viewer.viewReport();
    for (const bool isOn : {false, true}) {
        viewer.setOption(364, isOn);
        EXPECT_EQ(part("crwStop").isVisible(), isOn);
        viewer.setOption(257, isOn);
        EXPECT_EQ(part("crwProgress").isVisible(), isOn);
    }
    viewer.cancelLoading(true);
    EXPECT_FALSE(part("crwProgress").isVisible());
}

TEST_F(Bar, buttonsAreOffWithoutAReportAndHaveNames) {
    QSet<QString> names;
    const auto buttons = part("crwToolbar").findChildren<QToolButton*>(QRegularExpression(u"^crw"_s));
    ASSERT_GE(buttons.size(), 16);
    for (const QToolButton* button : buttons) {
        EXPECT_FALSE(button->accessibleName().isEmpty()) << qPrintable(button->objectName());
        EXPECT_FALSE(button->toolTip().isEmpty()) << qPrintable(button->objectName());
        EXPECT_FALSE(names.contains(button->accessibleName())) << qPrintable(button->objectName());
        names.insert(button->accessibleName());
        EXPECT_EQ(button->isEnabled(), button->objectName() == u"crwMore"_s) << qPrintable(button->objectName());
    }
    load(scriptedReport(reportRows(1, 1)));
    for (const char* name : {"crwExport", "crwPrint", "crwFirst", "crwLast", "crwZoomIn", "crwTreeButton", "crwSearch"})
        EXPECT_TRUE(part(name).isEnabled()) << name;
    EXPECT_FALSE(part("crwStop").isEnabled());
}

TEST_F(Bar, exportAndPrintAskTheWindowByButtonKeyAndAction) {
    const QSignalSpy exports(&viewer, &ReportViewer::exportButtonClicked);
    const QSignalSpy prints(&viewer, &ReportViewer::printButtonClicked);
    const auto pressAll = [this] {
        part<QToolButton>("crwExport").click();
        part<QToolButton>("crwPrint").click();
        QTest::keyClick(&part("crwPages"), Qt::Key_E, Qt::ControlModifier);
        QTest::keyClick(&part("crwPages"), Qt::Key_P, Qt::ControlModifier);
        act("export");
        act("print");
    };
    pressAll();
    EXPECT_EQ(exports.size() + prints.size(), 0) << "without a report";
    load(scriptedReport(reportRows(1, 1)));
    pressAll();
    EXPECT_EQ(exports.size(), 3);
    EXPECT_EQ(prints.size(), 3);
    viewer.setOption(258, false);
    viewer.setOption(340, false);
    pressAll();
    EXPECT_EQ(exports.size() + prints.size(), 6) << "switched off";
}

TEST_F(Bar, theTabShowsTheTitleAsItIs) {
    const auto report = scriptedReport(reportRows(1, 1));
    report->setText(u"Text1"_s, u"A & B"_s);
    viewer.setOption(367, true);
    load(report);
    EXPECT_EQ(part<QTabBar>("crwTabs").tabText(0), u"A && B"_s);
}

// The window's own two buttons lie over the right end.
TEST_F(Bar, theRightEndStaysFreeAtEveryWidth) {
    load(scriptedReport(reportRows(1, 1)));
    for (const int width : {1920, 1280, 1024, 800, 500, 320}) {
        viewer.resize(width, 600);
        EXPECT_EQ(viewer.width(), width);
        QCoreApplication::processEvents();
        QWidget& bar = part("crwToolbar");
        const int free = bar.width() - 4040 / 15;
        for (const QWidget* child : bar.findChildren<QWidget*>(QRegularExpression(u"^crw"_s))) {
            if (!child->isVisible()) continue;
            EXPECT_LE(child->mapTo(&bar, QPoint(child->width(), 0)).x(), std::max(free, 40)) << width;
        }
    }
    EXPECT_TRUE(part("crwMore").isVisible());
    EXPECT_EQ(part("crwToolbar").height(), 480 / 15);
}

TEST(Commands, noKeyAndNoNameIsGivenTwice) {
    QSet<QString> keys;
    QSet<QString> names;
    for (const viewer::CommandRow& row : viewer::commandRows()) {
        const QString key = row.keyText == nullptr ? QString() : QString::fromUtf16(row.keyText);
        EXPECT_TRUE(key.isEmpty() || !keys.contains(key)) << qPrintable(key);
        keys.insert(key);
        if (row.name == nullptr) continue;
        EXPECT_FALSE(names.contains(QString::fromUtf16(row.name)));
        names.insert(QString::fromUtf16(row.name));
        EXPECT_EQ(viewer::commandNamed(QString::fromUtf16(row.name)), row.command);
    }
    EXPECT_EQ(viewer::tooltipOf(viewer::Command::Export), u"Exportă raportul (Ctrl+E)"_s);
}

TEST(Commands, everyIconIsDrawnInTheColourAskedFor) {
    for (const viewer::CommandRow& row : viewer::commandRows()) {
        if (row.icon == nullptr) continue;
        const QIcon icon = viewer::svgIcon(QString::fromUtf16(row.icon), Qt::red);
        const auto strongest = [&icon](QIcon::Mode mode) {
            const QImage image = icon.pixmap({48, 48}, mode).toImage().convertToFormat(QImage::Format_ARGB32);
            QRgb found = 0;
            for (int y = 0; y < image.height(); ++y)
                for (int x = 0; x < image.width(); ++x)
                    if (qAlpha(image.pixel(x, y)) > qAlpha(found)) found = image.pixel(x, y);
            return found;
        };
        EXPECT_EQ(strongest(QIcon::Normal), 0xFFFF0000) << QString::fromUtf16(row.icon).toStdString();
        EXPECT_LT(qAlpha(strongest(QIcon::Disabled)), 100) << "an icon of a command that is off is faint";
    }
    EXPECT_TRUE(viewer::svgIcon(u"nothing"_s, Qt::red).isNull());
}

}  // namespace velcoran::tests
