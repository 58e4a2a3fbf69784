#include "worker.h"

#include "thread.h"

#include <utility>

namespace velcoran::system {

Worker::Worker(std::function<void()> call, std::function<void()> over)
    : m_state(std::make_shared<State>()),
      m_thread(startThread([state = m_state, call = std::move(call), over = std::move(over)]() mutable {
          std::exception_ptr failure;
          try {
              call();
          } catch (...) {
              failure = std::current_exception();
          }
          call = nullptr;  // what it owns goes before anybody hears of the end
          {
              const std::scoped_lock lock(state->mutex);
              state->failure = std::move(failure);
              state->isDone = true;
          }
          state->isOver.notify_all();
          if (over) over();
      })) {}

Worker::~Worker() {
    if (m_thread.joinable()) m_thread.join();
}

bool Worker::waitFor(std::chrono::milliseconds time) const {
    std::unique_lock lock(m_state->mutex);
    return m_state->isOver.wait_for(lock, time, [this] { return m_state->isDone; });
}

void Worker::rethrow() const {
    const std::scoped_lock lock(m_state->mutex);
    if (m_state->failure) std::rethrow_exception(m_state->failure);
}

void Worker::abandon() noexcept {
    if (m_thread.joinable()) m_thread.detach();
}

}  // namespace velcoran::system
