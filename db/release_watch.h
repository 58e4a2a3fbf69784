#pragma once

#include <velcoran/connection.h>

#include <functional>
#include <memory>

namespace velcoran::db {

/// Says when the component has let go of a host's connection: whoever uses it holds a stand-in that hands every call
/// on, and the last one to let go of that, on whatever thread, is the moment.
class ReleaseWatch {
public:
    /// @param released  called on the releasing thread after the connection was released, also after this has gone; the
    ///                  pointer is only to be compared; throws nothing
    explicit ReleaseWatch(std::function<void(IConnection* connection)> released);
    ~ReleaseWatch();
    ReleaseWatch(const ReleaseWatch&) = delete;
    ReleaseWatch& operator=(const ReleaseWatch&) = delete;

    /// The stand-in of a connection, the same one as long as it lives: what is asked of it by identity, whether a run
    /// on it is kept, stays true. Null for null. Called by one thread alone.
    [[nodiscard]] com::Ref<IConnection> watch(const com::Ref<IConnection>& connection);

private:
    class StandIn;
    struct Living;
    std::shared_ptr<Living> m_state;
};

}  // namespace velcoran::db
