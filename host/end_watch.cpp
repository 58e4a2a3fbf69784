#include "host/end_watch.h"

#include "base/error.h"

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
constexpr auto kPatience = 2000ms;

constexpr char kFinished = 0;  ///< written into the pipe in place of a signal's number

struct SignalRow {
    int number;
    bool isEnd;  ///< ends the run; the other one is ignored
};
constexpr std::array kSignals{SignalRow{SIGTERM, true}, SignalRow{SIGINT, true}, SignalRow{SIGHUP, true},
                              SignalRow{SIGPIPE, false}};

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
        action.sa_handler = kSignals[index].isEnd ? noteSignal : SIG_IGN;
        action.sa_flags = SA_RESTART;
        ::sigaction(kSignals[index].number, &action, &formerHandlers[index]);
    }
}

void giveSignalsBack() {
    for (std::size_t index = 0; index < kSignals.size(); ++index)
        ::sigaction(kSignals[index].number, &formerHandlers[index], nullptr);
}

/// What ended the wait: a byte of the pipe, or nothing.
std::optional<char> readPipe() {
    char byte = 0;
    return ::read(signalPipe[0], &byte, 1) == 1 ? std::optional(byte) : std::nullopt;
}

}  // namespace

EndWatch::EndWatch(int output) {
    if (::pipe2(signalPipe.data(), O_CLOEXEC | O_NONBLOCK) != 0)
        throw base::Error(base::kOutOfMemory, QString::fromStdString(std::system_category().message(errno)));
    m_thread = std::thread([this, output] { watch(output); });
    takeSignals();
}

EndWatch::~EndWatch() {
    giveSignalsBack();
    write(kFinished);
    m_thread.join();
    for (int& end : signalPipe) {
        ::close(end);
        end = -1;
    }
}

void EndWatch::cancelBy(std::function<void()> cancel) {
    const std::scoped_lock lock(m_mutex);
    m_cancel = std::move(cancel);
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

void EndWatch::end(int status) noexcept {
    m_status = status;
    QMetaObject::invokeMethod(
        QCoreApplication::instance(), [status] { QCoreApplication::exit(status); }, Qt::QueuedConnection);
    pollfd pipe{signalPipe[0], POLLIN, 0};
    for (auto waited = 0ms; waited < kPatience; waited += kCancelInterval) {
        cancel();
        if (::poll(&pipe, 1, kCancelInterval.count()) > 0 && readPipe() == kFinished) return;
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
