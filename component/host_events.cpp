#include "host_events.h"

#include "com/error_information.h"

#include <QCoreApplication>
#include <QEvent>
#include <QObject>

#include <deque>
#include <mutex>
#include <utility>

namespace velcoran::component {

namespace {

/// Posted to the postman by his mailbox alone, so that no number has to be asked for.
constexpr auto kNews = static_cast<QEvent::Type>(QEvent::User + 1);

struct News {
    bool isClosed = false;
    IConnection* released = nullptr;  ///< only to be compared
};

}  // namespace

class HostEvents::Mailbox {
public:
    void put(const News& news) {
        const std::scoped_lock lock(m_mutex);
        m_news.push_back(news);
        ring();
    }
    std::deque<News> takeAll() {
        const std::scoped_lock lock(m_mutex);
        return std::exchange(m_news, {});
    }
    /// @param postman  null for none
    void setPostman(QObject* postman) {
        const std::scoped_lock lock(m_mutex);
        m_postman = postman;
        if (!m_news.empty()) ring();
    }

private:
    void ring() const {
        if (m_postman != nullptr) QCoreApplication::postEvent(m_postman, new QEvent(kNews));
    }

    std::mutex m_mutex;
    std::deque<News> m_news;
    QObject* m_postman = nullptr;
};

class HostEvents::Postman final : public QObject {
public:
    explicit Postman(HostEvents& events) : m_events(events) {}
    bool event(QEvent* event) override {
        if (event->type() != kNews) return QObject::event(event);
        m_events.tellNews();
        return true;
    }

private:
    HostEvents& m_events;
};

HostEvents::HostEvents() : m_mailbox(std::make_shared<Mailbox>()) {}

HostEvents::~HostEvents() { m_mailbox->setPostman(nullptr); }

/// The old one is released last of all: that is the host's code.
void HostEvents::setListener(com::Ref<IWindowEvents> listener) { std::swap(m_listener, listener); }

void HostEvents::begin() {
    if (m_postman) return;
    m_postman = std::make_unique<Postman>(*this);
    m_mailbox->setPostman(m_postman.get());
}

void HostEvents::end() {
    m_mailbox->setPostman(nullptr);
    m_postman.reset();
}

void HostEvents::queueClosed() { m_mailbox->put({true, nullptr}); }

void HostEvents::queueReleased(Mailbox& mailbox, IConnection* connection) { mailbox.put({false, connection}); }

/// What a host answers, or throws, changes nothing.
template <class Call>
void HostEvents::tell(Call call) noexcept {
    const com::Ref<IWindowEvents> listener = m_listener;  // it may be taken away meanwhile
    if (!listener) return;
    ++m_telling;
    try {
        (void)call(*listener);
    } catch (...) {
    }
    --m_telling;
}

void HostEvents::tellNews() {
    for (const News& news : m_mailbox->takeAll())
        tell([&news](IWindowEvents& listener) {
            return news.isClosed ? listener.Closed() : listener.ConnectionReleased(news.released);
        });
}

void HostEvents::openDocument(const QString& number, const QString& kind, const QString& partner) {
    tell([&](IWindowEvents& listener) {
        return listener.OpenDocument(com::toText(number).get(), com::toText(kind).get(), com::toText(partner).get());
    });
}

}  // namespace velcoran::component
