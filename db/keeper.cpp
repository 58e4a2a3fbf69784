#include "keeper.h"

#include <algorithm>
#include <cstddef>
#include <new>

namespace velcoran::db {

Keeper::~Keeper() {
    for (Kept& kept : m_kept)
        if (!kept.worker.isDone()) kept.worker.abandon();
}

void Keeper::keep(system::Worker worker, const IConnection* connection) {
    joinEnded();
    const std::scoped_lock lock(m_mutex);
    m_kept.push_back({std::move(worker), connection});
}

bool Keeper::holds(const IConnection* connection) {
    const std::scoped_lock lock(m_mutex);
    return std::ranges::any_of(
        m_kept, [&](const Kept& kept) { return kept.connection == connection && !kept.worker.isDone(); });
}

bool Keeper::isEmpty() {
    joinEnded();
    const std::scoped_lock lock(m_mutex);
    return m_kept.empty();
}

void Keeper::joinEnded() {
    std::list<Kept> ended;  // joined outside the lock
    const std::scoped_lock lock(m_mutex);
    for (auto kept = m_kept.begin(); kept != m_kept.end();) {
        const auto next = std::next(kept);
        if (kept->worker.isDone()) ended.splice(ended.end(), m_kept, kept);
        kept = next;
    }
}

Keeper& keeper() {
    alignas(Keeper) static std::byte place[sizeof(Keeper)];
    static Keeper& instance = *new (place) Keeper;
    return instance;
}

}  // namespace velcoran::db
