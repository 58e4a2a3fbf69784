#include "progress.h"

#include "dialog_language.h"

#include "system/live_wait.h"

#include <QDialog>
#include <QDialogButtonBox>
#include <QLabel>
#include <QLocale>
#include <QProgressBar>
#include <QPushButton>
#include <QTimer>
#include <QVBoxLayout>

#include <algorithm>
#include <chrono>

namespace velcoran::dialogs {

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace {

constexpr auto kPatience = 500ms;
constexpr auto kBeat = 100ms;
constexpr int kSteps = 1000;

/// Says how far the work is. The application object may take it along with the window.
class ProgressDialog final : public QDialog {
public:
    ProgressDialog(QWidget& window, const QString& what) : QDialog(&window), m_what(what) {
        setObjectName(u"progressDialog"_s);
        setWindowTitle(window.windowTitle());
        setWindowModality(Qt::WindowModal);
        auto* layout = new QVBoxLayout(this);
        m_label = new QLabel(what, this);
        m_bar = new QProgressBar(this);
        m_bar->setRange(0, 0);
        m_bar->setMinimumWidth(fontMetrics().averageCharWidth() * 50);
        auto* buttons = new QDialogButtonBox(this);
        m_cancel = buttons->addButton(u"&Renunță"_s, QDialogButtonBox::RejectRole);
        layout->addWidget(m_label);
        layout->addWidget(m_bar);
        layout->addWidget(buttons);
        connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);
    }

    void follow(const system::WorkProgress& progress) {
        const qint64 total = progress.total();
        const qint64 done = std::min<qint64>(progress.done(), total);
        m_bar->setRange(0, total == 0 ? 0 : kSteps);
        if (total == 0 || m_isStopping) return;
        const QLocale romanian(QLocale::Romanian, QLocale::Romania);
        m_bar->setValue(static_cast<int>(done * kSteps / total));
        m_label->setText(u"%1 (%2 din %3)"_s.arg(m_what, romanian.toString(done), romanian.toString(total)));
    }
    std::function<void()> stopped;

    /// Stays until the work has ended.
    void reject() override {
        m_isStopping = true;
        m_label->setText(u"Se oprește…"_s);
        m_cancel->setEnabled(false);
        if (stopped) stopped();
    }

private:
    QString m_what;
    QLabel* m_label;
    QProgressBar* m_bar;
    QPushButton* m_cancel;
    bool m_isStopping = false;
};

}  // namespace

void runWithProgress(QWidget& window, system::IWaiting& waiting, const QString& what,
                     const system::WorkProgress& progress, const std::function<void()>& work) {
    const DialogLanguage language;
    ProgressDialog dialog(window, what);
    dialog.stopped = [&waiting] { waiting.stop(); };
    QTimer beat;
    QObject::connect(&beat, &QTimer::timeout, &dialog, [&] { dialog.follow(progress); });
    QTimer patience;
    patience.setSingleShot(true);
    patience.setTimerType(Qt::PreciseTimer);
    QObject::connect(&patience, &QTimer::timeout, &dialog, [&] {
        if (waiting.isUnwanted()) return;
        dialog.follow(progress);
        dialog.setVisible(true);
        beat.start(kBeat);
    });
    patience.start(kPatience);
    static_cast<void>(system::runLive(waiting, {.call = work, .dispatching = {}, .patience = {}}));
}

}  // namespace velcoran::dialogs
