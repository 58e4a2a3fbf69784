#include "dialogs/progress.h"

#include "base/error.h"
#include "dialog_driver.h"

#include <QElapsedTimer>
#include <QLabel>
#include <QProgressBar>
#include <QPushButton>
#include <QWidget>

#include <gtest/gtest.h>

#include <thread>

namespace velcoran::dialogs {

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace {

class Progress : public testing::Test, protected system::IWaiting {
protected:
    Progress() {
        window.resize(400, 300);
        window.show();
    }
    void run(const std::function<void()>& work) { runWithProgress(window, *this, u"Se lucrează…"_s, progress, work); }
    [[nodiscard]] Part partOf(const QObject& receiver) const override {
        return &receiver == &window || &receiver == window.windowHandle() ? Part::window : Part::dialog;
    }
    void stop() override { isStopped = true; }
    void close() override { isStopped = true; }
    [[nodiscard]] bool isUnwanted() const override { return isStopped; }
    void cancel() noexcept override { isAsked = true; }
    /// Works until it is stopped; at most ten seconds.
    void workUntilStopped() {
        QElapsedTimer elapsed;
        elapsed.start();
        while (!isAsked && elapsed.elapsed() < 10'000) std::this_thread::sleep_for(1ms);
        if (isAsked) throw base::Cancelled();
    }

    QWidget window;
    system::WorkProgress progress;
    bool isStopped = false;
    std::atomic_bool isAsked{false};
};

TEST_F(Progress, workRunsOnAThreadOfItsOwnAndItsFailureComesBack) {
    std::thread::id thread;
    run([&] { thread = std::this_thread::get_id(); });
    EXPECT_NE(thread, std::this_thread::get_id());
    EXPECT_THROW(run([] { throw base::Error(75, u"plin"_s); }), base::Error);
}

TEST_F(Progress, aShortWorkShowsNothing) {
    bool wasDialog = false;
    QTimer look;
    QObject::connect(&look, &QTimer::timeout,
                     [&] { wasDialog = wasDialog || QApplication::activeModalWidget() != nullptr; });
    look.start(10);
    run([] { std::this_thread::sleep_for(450ms); });
    EXPECT_FALSE(wasDialog);
}

TEST_F(Progress, aLongWorkSaysHowFarItIsAndEscapeStopsIt) {
    progress.tell(1500, 2000);
    QString said;
    QElapsedTimer elapsed;
    elapsed.start();
    qint64 appeared = 0;
    const tests::DialogDriver user([&](QDialog& dialog) {
        appeared = elapsed.elapsed();
        said = dialog.findChild<QLabel*>()->text();
        EXPECT_EQ(dialog.findChild<QProgressBar*>()->value() * 4, dialog.findChild<QProgressBar*>()->maximum() * 3);
        QTest::keyClick(&dialog, Qt::Key_Escape);
    });
    QString atLast;
    std::atomic_bool isSeen{false};
    QTimer::singleShot(900, &window, [&] {
        if (const QWidget* dialog = QApplication::activeModalWidget()) {
            atLast = dialog->findChild<QLabel*>()->text();
            EXPECT_FALSE(dialog->findChild<QPushButton*>()->isEnabled());
        }
        isSeen = true;
    });
    EXPECT_THROW(run([&] {
                     while (!isSeen) std::this_thread::sleep_for(1ms);
                     workUntilStopped();
                 }),
                 base::Cancelled);
    EXPECT_EQ(said, u"Se lucrează… (1.500 din 2.000)"_s);
    EXPECT_EQ(atLast, u"Se oprește…"_s);
    EXPECT_GE(appeared, 500);
}

TEST_F(Progress, closingTheWindowStopsTheWorkAndShowsNothingMore) {
    QTimer::singleShot(20, &window, &QWidget::close);
    bool wasDialog = false;
    QTimer::singleShot(550, &window, [&] { wasDialog = QApplication::activeModalWidget() != nullptr; });
    EXPECT_THROW(run([this] {
                     std::this_thread::sleep_for(600ms);
                     workUntilStopped();
                 }),
                 base::Cancelled);
    EXPECT_FALSE(wasDialog);
}

}  // namespace
}  // namespace velcoran::dialogs
