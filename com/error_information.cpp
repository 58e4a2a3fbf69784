#include "error_information.h"

#include <memory>
#include <new>

#include <pthread.h>

namespace velcoran::com {

namespace {

/// One error a thread. Not a thread_local object: the destructor of one keeps the library in the process until its
/// thread ends, and the main thread outlives every library.
class ThreadErrors {
public:
    ThreadErrors() { m_isUsable = pthread_key_create(&m_key, &ThreadErrors::destroy) == 0; }
    ~ThreadErrors() {
        if (!m_isUsable) return;
        set(nullptr);
        pthread_key_delete(m_key);
    }
    ThreadErrors(const ThreadErrors&) = delete;
    ThreadErrors& operator=(const ThreadErrors&) = delete;

    [[nodiscard]] const base::Error* get() const {
        return m_isUsable ? static_cast<const base::Error*>(pthread_getspecific(m_key)) : nullptr;
    }
    /// @param error  may be null: out of memory, an error is told by its code alone
    void set(std::unique_ptr<base::Error> error) {
        if (!m_isUsable) return;
        const std::unique_ptr<base::Error> old(static_cast<base::Error*>(pthread_getspecific(m_key)));
        (void)pthread_setspecific(m_key, nullptr);
        if (pthread_setspecific(m_key, error.get()) == 0) (void)error.release();
    }

private:
    static void destroy(void* error) { delete static_cast<base::Error*>(error); }

    pthread_key_t m_key{};
    bool m_isUsable = false;
};

ThreadErrors& threadErrors() {
    static ThreadErrors errors;
    return errors;
}

}  // namespace

const base::Error* threadError() { return threadErrors().get(); }

void setThreadError(const base::Error& error) {
    threadErrors().set(std::unique_ptr<base::Error>(new (std::nothrow) base::Error(error)));
}

void clearThreadError() { threadErrors().set(nullptr); }

void nameErrorSource(const QString& source) {
    const base::Error* error = threadError();
    if (error == nullptr || !error->source().isEmpty()) return;
    try {
        setThreadError(base::Error(error->number(), error->description(), source));
    } catch (const std::bad_alloc&) {  // number and words are worth more
    }
}

HResult keepCurrentException() noexcept {
    const base::Error error = base::currentError();
    setThreadError(error);
    return error.number() == base::kOutOfMemory ? kOutOfMemory : resultOfNumber(error.number());
}

}  // namespace velcoran::com
