#include "host_objects.h"

#include <algorithm>

namespace velcoran::com {

void HostObjects::add(const Guid& classId, Ref<IClassFactory> factory) {
    // What is replaced is released outside the lock: its destructor belongs to the host and may call back.
    const std::lock_guard lock(m_mutex);
    const auto entry = std::find_if(m_entries.begin(), m_entries.end(),
                                    [&classId](const Entry& each) { return each.classId == classId; });
    if (entry == m_entries.end()) {
        m_entries.push_back({classId, std::move(factory)});
    } else {
        std::swap(entry->factory, factory);
    }
}

bool HostObjects::remove(const Guid& classId) {
    Ref<IClassFactory> removed;
    const std::lock_guard lock(m_mutex);
    const auto entry = std::find_if(m_entries.begin(), m_entries.end(),
                                    [&classId](const Entry& each) { return each.classId == classId; });
    if (entry == m_entries.end()) return false;
    removed = std::move(entry->factory);
    m_entries.erase(entry);
    return true;
}

Ref<IClassFactory> HostObjects::find(const Guid& classId) const {
    const std::lock_guard lock(m_mutex);
    for (const Entry& entry : m_entries)
        if (entry.classId == classId) return entry.factory;
    return {};
}

}  // namespace velcoran::com
