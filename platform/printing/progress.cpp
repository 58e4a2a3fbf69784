#include "platform/printing/progress.h"

#include "platform/printing/dialog_language.h"

#include <QCloseEvent>
#include <QCoreApplication>
#include <QDialog>
#include <QDialogButtonBox>
#include <QEventLoop>
#include <QLabel>
#include <QLocale>
#include <QProgressBar>
#include <QPushButton>
#include <QTimer>
#include <QVBoxLayout>

#include <algorithm>
#include <chrono>
#include <exception>
#include <optional>
#include <system_error>
#include <thread>

namespace velcoran::printing {

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

    void follow(const WorkProgress& progress) {
        const qint64 total = progress.total;
        const qint64 done = std::min<qint64>(progress.done, total);
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

/// Keeps the user's input from the window while the work runs. Closing it stops the work.
class InputShield final : public QObject {
public:
    InputShield(QWidget& window, std::atomic_bool& stop) : m_window(window), m_stop(stop) {
        QCoreApplication::instance()->installEventFilter(this);
    }

protected:
    bool eventFilter(QObject* receiver, QEvent* event) override {
        const auto* widget = qobject_cast<const QWidget*>(receiver);
        if (widget == nullptr || widget->window() != &m_window) return false;
        switch (event->type()) {
            case QEvent::Hide:
            case QEvent::Close:
                // A minimised window is hidden from outside; that stops nothing.
                if (widget == &m_window && !(event->type() == QEvent::Hide && event->spontaneous())) m_stop = true;
                return false;
            case QEvent::KeyPress:
            case QEvent::KeyRelease:
            case QEvent::Shortcut:
            case QEvent::ShortcutOverride:
            case QEvent::MouseButtonPress:
            case QEvent::MouseButtonRelease:
            case QEvent::MouseButtonDblClick:
            case QEvent::Wheel:
            case QEvent::ContextMenu:
                return true;
            default:
                return false;
        }
    }

private:
    QWidget& m_window;
    std::atomic_bool& m_stop;
};

/// The work's thread; joined in the destructor.
class Worker {
public:
    Worker(QEventLoop& loop, const std::function<void()>& work)
        : m_thread([this, &loop, &work] {
              try {
                  work();
              } catch (...) {
                  m_failure = std::current_exception();
              }
              m_isDone = true;
              QMetaObject::invokeMethod(&loop, &QEventLoop::quit, Qt::QueuedConnection);
          }) {}
    ~Worker() {
        if (m_thread.joinable()) m_thread.join();
    }
    Worker(const Worker&) = delete;
    Worker& operator=(const Worker&) = delete;

    [[nodiscard]] bool isDone() const { return m_isDone; }
    void finish() {
        m_thread.join();
        if (m_failure) std::rethrow_exception(m_failure);
    }

private:
    std::exception_ptr m_failure;
    std::atomic_bool m_isDone{false};
    std::thread m_thread;
};

}  // namespace

void runWithProgress(QWidget& window, const QString& what, const WorkProgress& progress, std::atomic_bool& stop,
                     const std::function<void()>& work) {
    const DialogLanguage language;
    const InputShield shield(window, stop);
    ProgressDialog dialog(window, what);
    dialog.stopped = [&stop] { stop = true; };
    QEventLoop loop;
    QTimer beat;
    QObject::connect(&beat, &QTimer::timeout, &dialog, [&] { dialog.follow(progress); });
    QTimer patience;
    patience.setSingleShot(true);
    patience.setTimerType(Qt::PreciseTimer);
    QObject::connect(&patience, &QTimer::timeout, &dialog, [&] {
        if (stop) return;
        dialog.follow(progress);
        dialog.setVisible(true);
        beat.start(kBeat);
    });
    std::optional<Worker> worker;
    try {
        worker.emplace(loop, work);
    } catch (const std::system_error&) {
        return work();  // no thread to be had: the window waits
    }
    patience.start(kPatience);
    loop.exec();
    // A loop that ended for another reason belongs to a program that is leaving.
    if (!worker->isDone()) stop = true;
    worker->finish();
}

}  // namespace velcoran::printing
