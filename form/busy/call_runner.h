#pragma once

#include "db/connection.h"

namespace velcoran::form {

class Activity;

/// Runs the window's statements, one at a time. To the caller every call is synchronous; on a connection that allows
/// it, the call runs on a worker, and a window that waits longer than a third of a second is painted again and can be
/// cancelled: Esc in it and closing it cancel the statement, all other input for it is dropped, and what the host's own
/// windows get waits until the statement has ended. A driver that does not answer a cancel is left to the keeper.
///
/// Any other connection is called on the window's thread. Its host may dispatch events in there, and then keeps its own
/// windows alive; the window's input is treated as above.
class CallRunner final : public db::ICallRunner {
public:
    /// @param activity  outlives this
    explicit CallRunner(Activity& activity) : m_activity(activity) {}

    /// @throws what the call throws; Cancelled when the user stopped it, or closed the window while it ran, also when
    ///         the call came to its end by then; Cancelled without any call while anything else of the window runs, or
    ///         once it is to close
    void run(const db::Connection& connection, std::function<void()> call) override;

private:
    void make(const db::Connection& connection, const std::function<void()>& call);

    Activity& m_activity;
};

}  // namespace velcoran::form
