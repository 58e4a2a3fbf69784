#include "db/keeper.h"

#include <algorithm>

namespace velcoran::db {

Keeper::~Keeper() {
    for (Kept& kept : m_kept) {
        if (kept.worker.isDone()) continue;
        kept.worker.abandon();
        (void)kept.connection.release();  // its driver is still at work on it
    }
}

void Keeper::keep(Worker worker, com::Ref<IConnection> connection) {
    const std::scoped_lock lock(m_mutex);
    m_kept.push_back({std::move(worker), std::move(connection)});
}

bool Keeper::holds(const IConnection* connection) {
    joinEnded();
    const std::scoped_lock lock(m_mutex);
    return std::ranges::any_of(m_kept, [&](const Kept& kept) { return kept.connection.get() == connection; });
}

bool Keeper::isEmpty() {
    joinEnded();
    const std::scoped_lock lock(m_mutex);
    return m_kept.empty();
}

void Keeper::joinEnded() {
    std::list<Kept> ended;  // released outside the lock: a host's connection may do what it likes in it
    const std::scoped_lock lock(m_mutex);
    for (auto kept = m_kept.begin(); kept != m_kept.end();) {
        const auto next = std::next(kept);
        if (kept->worker.isDone()) ended.splice(ended.end(), m_kept, kept);
        kept = next;
    }
}

Keeper& keeper() {
    static Keeper instance;
    return instance;
}

}  // namespace velcoran::db
