#include "end_watch.h"

#include "system/thread.h"

#include "base/error.h"
#include "system/durable_file.h"

#include <QCoreApplication>

#include <array>
#include <chrono>
#include <csignal>
#include <cstdlib>
#include <system_error>

#include <fcntl.h>
#include <poll.h>
#include <unistd.h>

namespace velcoran::host {

namespace {

using namespace std::chrono_literals;

constexpr int kStatusClosed = 1;
constexpr int kStatusSignal = 128;
/// A cancel reaches only what runs at that moment: it is repeated until the run ends.
constexpr auto kCancelInterval = 50ms;

constexpr char kFinished = 0;  ///< written into the pipe in place of a signal's number

constexpr std::array kSignals{SIGTERM, SIGINT, SIGHUP};

/// A signal handler can reach nothing else.
std::array<int, 2> signalPipe{-1, -1};
std::array<struct sigaction, kSignals.size()> formerHandlers{};

void write(char byte) { static_cast<void>(!::write(signalPipe[1], &byte, 1)); }

extern "C" void noteSignal(int number) {
    const int error = errno;
    write(static_cast<char>(number));
    errno = error;
}

void takeSignals() {
    for (std::size_t index = 0; index < kSignals.size(); ++index) {
        struct sigaction action {};
        action.sa_handler = noteSignal;
        action.sa_flags = SA_RESTART;
        ::sigaction(kSignals[index], nullptr, &formerHandlers[index]);
        if (formerHandlers[index].sa_handler != SIG_IGN) ::sigaction(kSignals[index], &action, nullptr);
    }
}

void giveSignalsBack() {
    for (std::size_t index = 0; index < kSignals.size(); ++index)
        ::sigaction(kSignals[index], &formerHandlers[index], nullptr);
}

void closePipe() {
    for (int& end : signalPipe) {
        ::close(end);
        end = -1;
    }
}

/// What ended the wait: a byte of the pipe, or nothing.
std::optional<char> readPipe() {
    char byte = 0;
    return ::read(signalPipe[0], &byte, 1) == 1 ? std::optional(byte) : std::nullopt;
}

}  // namespace

EndWatch::EndWatch(int output, std::chrono::milliseconds patience) : m_patience(patience) {
    if (::pipe2(signalPipe.data(), O_CLOEXEC | O_NONBLOCK) != 0)
        throw base::Error(base::kOutOfMemory, QString::fromStdString(std::system_category().message(errno)));
    try {
        m_thread = system::startThread([this, output] { watch(output); });
    } catch (...) {
        closePipe();
        throw base::currentError();
    }
    takeSignals();
}

EndWatch::~EndWatch() {
    giveSignalsBack();
    write(kFinished);
    m_thread.join();
    closePipe();
}

void EndWatch::cancelBy(std::function<void()> cancel) {
    const std::scoped_lock lock(m_mutex);
    m_cancel = std::move(cancel);
}

void EndWatch::cleanUpBy(std::function<void()> cleanUp) {
    const std::scoped_lock lock(m_mutex);
    m_cleanUp = std::move(cleanUp);
}

std::optional<int> EndWatch::status() const {
    const int status = m_status;
    return status < 0 ? std::nullopt : std::optional(status);
}

void EndWatch::watch(int output) noexcept {
    std::array<pollfd, 2> watched{pollfd{signalPipe[0], POLLIN, 0}, pollfd{output, 0, 0}};
    while (true) {
        if (::poll(watched.data(), watched.size(), -1) < 0) continue;
        if (const auto byte = readPipe()) {
            if (*byte == kFinished) return;
            return end(kStatusSignal + *byte);
        }
        if (watched[1].revents != 0) return end(kStatusClosed);
    }
}

/// An event loop that is entered later hears nothing of an earlier end: it is told again and again too.
void EndWatch::end(int status) noexcept {
    m_status = status;
    pollfd pipe{signalPipe[0], POLLIN, 0};
    for (auto waited = 0ms; waited < m_patience; waited += kCancelInterval) {
        cancel();
        QMetaObject::invokeMethod(
            QCoreApplication::instance(), [status] { QCoreApplication::exit(status); }, Qt::QueuedConnection);
        if (::poll(&pipe, 1, kCancelInterval.count()) <= 0) continue;
        const auto byte = readPipe();
        if (byte == kFinished) return;
        if (byte) break;  // a second signal
    }
    leave(status);
}

void EndWatch::leave(int status) noexcept {
    system::removeUnfinishedFiles();
    const std::scoped_lock lock(m_mutex);
    try {
        if (m_cleanUp) m_cleanUp();
    } catch (...) {  // the process ends without it
    }
    std::_Exit(status);
}

void EndWatch::cancel() noexcept {
    const std::scoped_lock lock(m_mutex);
    try {
        if (m_cancel) m_cancel();
    } catch (...) {  // the run ends without it
    }
}

}  // namespace velcoran::host
