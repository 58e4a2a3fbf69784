#pragma once

#include "report/layout/document.h"
#include "report/report.h"
#include "scripted_report.h"
#include "viewer/pages/page_area.h"
#include "viewer/report_viewer.h"

#include <QTest>

#include <gtest/gtest.h>

#include <algorithm>

namespace velcoran::tests {

/// A viewer in a window of a fixed size, with a note of its notifications.
class ViewerTest : public testing::Test {
protected:
    ViewerTest() {
        viewer.resize(1280, 800);
        viewer.show();
        QObject::connect(&viewer, &viewer::ReportViewer::downloadStarted, &viewer, [this] { events << "started"; });
        QObject::connect(&viewer, &viewer::ReportViewer::downloadFinished, &viewer, [this] { events << "finished"; });
    }

    void load(const std::shared_ptr<report::Report>& report) {
        viewer.setReportSource(report);
        viewer.viewReport();
        ASSERT_TRUE(waitUntilLoaded());
    }
    [[nodiscard]] bool waitUntilLoaded() {
        return QTest::qWaitFor([this] { return !viewer.isBusy(); }, 60'000);
    }
    template <class Widget = QWidget>
    [[nodiscard]] Widget& part(const char* name) {
        auto* found = viewer.findChild<Widget*>(QString::fromLatin1(name));
        if (found == nullptr) throw std::runtime_error(std::string("no part ") + name);
        return *found;
    }
    [[nodiscard]] viewer::PageArea& pages() { return part<viewer::PageArea>("crwPages"); }
    /// Middle of the first object of page 1 that passes.
    template <class Test>
    [[nodiscard]] QPoint middleOf(Test test) {
        const report::Page page = viewer.document()->page({1});
        const auto item = std::ranges::find_if(page.items, test);
        if (item == page.items.end()) throw std::runtime_error("no such object");
        return pages().view().placeOf(0, viewer::rectOf(*item)).center().toPoint();
    }
    QVariant act(const char* action, const QVariantMap& arguments = {}) {
        return viewer.act(QString::fromLatin1(action), arguments);
    }

    viewer::ReportViewer viewer;
    QList<QByteArray> events;
};

}  // namespace velcoran::tests
