#include "worker.h"

#include "system/thread.h"

#include "base/error.h"

#include <algorithm>
#include <condition_variable>
#include <deque>
#include <mutex>

namespace velcoran::odbc {

namespace {

using Clock = std::chrono::steady_clock;

/// A cancel that reaches the driver before it has sent the statement is lost, so it is repeated.
constexpr std::chrono::milliseconds kCancelInterval{300};

struct Call {
    Worker::Step step;
    SharedToken token;  ///< null for a step that frees something
    bool isStarted = false;
    bool isDone = false;
    std::exception_ptr failure = nullptr;

    [[nodiscard]] bool isUnwanted() const { return token && token->isRequested(); }
};

}  // namespace

struct Worker::State {
    Step cancelCall;
    std::chrono::milliseconds cancelWait{};
    std::mutex mutex;
    std::condition_variable work;    ///< for the calling thread
    std::condition_variable wishes;  ///< for the cancelling thread
    std::condition_variable done;    ///< for who waits
    std::deque<std::shared_ptr<Call>> queue;
    std::shared_ptr<Call> current;
    bool isStopping = false;
    bool isAbandoned = false;
    int threadCount = 2;

    void makeCalls();
    void makeCall(std::unique_lock<std::mutex>& lock);
    void cancelCalls();
    void requestAll();
    void notifyAll();
    [[nodiscard]] bool isCurrentUnwanted() const { return current && current->isUnwanted(); }
    [[nodiscard]] bool haveThreadsEnded() const { return threadCount == 0; }
    void awaitEnd(std::unique_lock<std::mutex>& lock, const std::shared_ptr<Call>& call, Deadline deadline);
};

void Worker::State::notifyAll() {
    work.notify_all();
    wishes.notify_all();
    done.notify_all();
}

void Worker::State::makeCalls() {
    std::unique_lock lock(mutex);
    for (;;) {
        work.wait(lock, [this] { return !queue.empty() || isStopping; });
        if (queue.empty()) break;
        makeCall(lock);
    }
    --threadCount;
    notifyAll();
}

void Worker::State::makeCall(std::unique_lock<std::mutex>& lock) {
    current = std::move(queue.front());
    queue.pop_front();
    current->isStarted = true;
    const std::shared_ptr<Call> call = current;
    // Whoever waited for an ordinary step of an abandoned worker is gone.
    const bool isWanted = !isAbandoned || !call->token;
    lock.unlock();
    try {
        if (isWanted) call->step();
    } catch (...) {
        call->failure = std::current_exception();
    }
    call->step = nullptr;  // frees here, on the driver's thread, what the step owned
    lock.lock();
    call->isDone = true;
    current.reset();
    notifyAll();
}

void Worker::State::cancelCalls() {
    std::unique_lock lock(mutex);
    const auto haveCallsEnded = [this] { return threadCount < 2; };
    for (;;) {
        wishes.wait(lock, [&] { return haveCallsEnded() || isCurrentUnwanted(); });
        if (haveCallsEnded()) break;
        lock.unlock();
        cancelCall();
        lock.lock();
        wishes.wait_for(lock, kCancelInterval, [&] { return haveCallsEnded() || !isCurrentUnwanted(); });
    }
    --threadCount;
    notifyAll();
}

void Worker::State::requestAll() {
    if (current && current->token) current->token->request();
    for (const auto& call : queue)
        if (call->token) call->token->request();
    notifyAll();
}

void Worker::State::awaitEnd(std::unique_lock<std::mutex>& lock, const std::shared_ptr<Call>& call, Deadline deadline) {
    Deadline patience;
    while (!call->isDone) {
        if (isAbandoned) throw Abandoned();
        if (deadline && Clock::now() >= *deadline) {
            call->token->request();
            deadline.reset();
        }
        if (!call->isUnwanted()) {
            if (deadline) {
                done.wait_until(lock, *deadline);
            } else {
                done.wait(lock);
            }
            continue;
        }
        if (!call->isStarted) {
            std::erase(queue, call);
            throw base::Cancelled();
        }
        wishes.notify_all();
        if (!patience) patience = Clock::now() + cancelWait;
        if (Clock::now() >= *patience) {
            isAbandoned = true;
            notifyAll();
            throw Abandoned();
        }
        done.wait_until(lock, *patience);
    }
}

Worker::Worker(Step cancelCall, std::chrono::milliseconds cancelWait) : m_state(std::make_shared<State>()) {
    m_state->cancelCall = std::move(cancelCall);
    m_state->cancelWait = cancelWait;
    m_caller = system::startThread([state = m_state] { state->makeCalls(); });
    try {
        m_canceller = system::startThread([state = m_state] { state->cancelCalls(); });
    } catch (...) {
        {
            const std::scoped_lock lock(m_state->mutex);
            m_state->isStopping = true;
        }
        m_state->notifyAll();
        m_caller.join();
        throw;
    }
}

Worker::~Worker() { stop({}); }

void Worker::run(const SharedToken& token, Step step, Deadline deadline) {
    const auto call = std::make_shared<Call>(Call{std::move(step), token});
    std::unique_lock lock(m_state->mutex);
    if (m_state->isAbandoned || m_state->isStopping) throw Abandoned();
    m_state->queue.push_back(call);
    m_state->work.notify_all();
    m_state->awaitEnd(lock, call, deadline);
    lock.unlock();
    if (call->failure) std::rethrow_exception(call->failure);
}

void Worker::post(Step step) noexcept {
    try {
        const auto call = std::make_shared<Call>(Call{std::move(step), nullptr});
        const std::scoped_lock lock(m_state->mutex);
        m_state->queue.push_back(call);
    } catch (const std::exception&) {
        return;  // out of memory: the last step frees it
    }
    m_state->work.notify_all();
}

void Worker::cancel(CancelToken& token) noexcept {
    const std::scoped_lock lock(m_state->mutex);
    token.request();
    m_state->notifyAll();
}

void Worker::cancelAll() noexcept {
    const std::scoped_lock lock(m_state->mutex);
    m_state->requestAll();
}

void Worker::stop(Step last) noexcept {
    try {
        const auto call = std::make_shared<Call>(Call{std::move(last), nullptr});
        std::unique_lock lock(m_state->mutex);
        if (m_state->isStopping) return;
        if (call->step) m_state->queue.push_back(call);
        m_state->isStopping = true;
        m_state->requestAll();
        const auto haveEnded = [this] { return m_state->haveThreadsEnded(); };
        if (!m_state->isAbandoned && !m_state->done.wait_for(lock, m_state->cancelWait, haveEnded))
            m_state->isAbandoned = true;
        const bool ended = haveEnded();
        lock.unlock();
        m_state->notifyAll();
        endThreads(ended);
    } catch (const std::exception&) {
        endThreads(false);
    }
}

void Worker::endThreads(bool haveEnded) noexcept {
    for (std::thread* thread : {&m_caller, &m_canceller}) {
        if (!thread->joinable()) continue;
        if (haveEnded) {
            thread->join();
        } else {
            thread->detach();
        }
    }
}

}  // namespace velcoran::odbc
