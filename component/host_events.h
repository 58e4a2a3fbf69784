#pragma once

#include <velcoran/window.h>

#include <QString>

#include <memory>

namespace velcoran::component {

/// What the host hears of the window. News wait, whatever thread they come from, until the event loop of the window's
/// thread tells them: outside of every handler of ours, so that a host may answer with any call.
class HostEvents {
public:
    class Mailbox;

    HostEvents();
    ~HostEvents();
    HostEvents(const HostEvents&) = delete;
    HostEvents& operator=(const HostEvents&) = delete;

    /// @param listener  null for nobody
    void setListener(com::Ref<IWindowEvents> listener);
    [[nodiscard]] bool hasListener() const { return static_cast<bool>(m_listener); }
    /// True while the host is told something: code of ours is on the stack then.
    [[nodiscard]] bool isTelling() const { return m_telling > 0; }

    /// From now on the event loop of the calling thread tells the news; until end(), which drops none.
    void begin();
    void end();
    /// Tells what waits, now.
    void tellNews();

    void queueClosed();
    /// Where a connection that was released is to be written down; may be kept longer than this lives.
    [[nodiscard]] const std::shared_ptr<Mailbox>& mailbox() const { return m_mailbox; }
    /// Any thread.
    static void queueReleased(Mailbox& mailbox, IConnection* connection);
    /// At once.
    void openDocument(const QString& number, const QString& kind, const QString& partner);

private:
    class Postman;
    template <class Call>
    void tell(Call call) noexcept;

    std::shared_ptr<Mailbox> m_mailbox;
    std::unique_ptr<Postman> m_postman;  ///< on the window's thread; null where nobody waits for news
    com::Ref<IWindowEvents> m_listener;
    int m_telling = 0;
};

}  // namespace velcoran::component
