#include "release_watch.h"

#include "forwarding.h"

#include <map>
#include <mutex>
#include <utility>

namespace velcoran::db {

struct ReleaseWatch::Living {
    std::mutex mutex;
    std::map<IConnection*, StandIn*> standIns;
    std::function<void(IConnection*)> released;
};

/// Counts its users under the lock of the list that it stands in: nobody finds it there who could not keep it alive.
class ReleaseWatch::StandIn final : public ForwardingConnection {
public:
    StandIn(const com::Ref<IConnection>& inner, std::shared_ptr<Living> state)
        : ForwardingConnection(inner), m_connection(inner.get()), m_state(std::move(state)) {}

    std::uint32_t AddRef() override {
        const std::scoped_lock lock(m_state->mutex);
        return ++m_users;
    }
    std::uint32_t Release() override {
        const std::shared_ptr<Living> state = m_state;
        IConnection* connection = m_connection;
        {
            const std::scoped_lock lock(state->mutex);
            if (--m_users > 0) return m_users;
            state->standIns.erase(connection);
        }
        ForwardingConnection::Release();
        state->released(connection);
        return 0;
    }
    /// To be called under the lock.
    com::Ref<IConnection> shared() {
        ++m_users;
        return com::Ref<IConnection>::adopt(this);
    }

private:
    IConnection* m_connection;
    std::shared_ptr<Living> m_state;
    std::uint32_t m_users = 1;
};

ReleaseWatch::ReleaseWatch(std::function<void(IConnection*)> released) : m_state(std::make_shared<Living>()) {
    m_state->released = std::move(released);
}

ReleaseWatch::~ReleaseWatch() = default;

com::Ref<IConnection> ReleaseWatch::watch(const com::Ref<IConnection>& connection) {
    if (!connection) return {};
    {
        const std::scoped_lock lock(m_state->mutex);
        const auto living = m_state->standIns.find(connection.get());
        if (living != m_state->standIns.end()) return living->second->shared();
    }
    com::Ref<StandIn> fresh = com::makeObject<StandIn>(connection, m_state);  // asks the host: without the lock
    const std::scoped_lock lock(m_state->mutex);
    m_state->standIns[connection.get()] = fresh.get();
    return com::Ref<IConnection>::adopt(fresh.release());
}

}  // namespace velcoran::db
