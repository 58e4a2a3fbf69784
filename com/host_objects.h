#pragma once

#include <velcoran/com.h>

#include <mutex>
#include <vector>

namespace velcoran::com {

/// The factories that a host registered in the process, by class. Any thread.
class HostObjects {
public:
    /// Registers a factory; a second one for the same class replaces the first.
    void add(const Guid& classId, Ref<IClassFactory> factory);
    /// @return false when nothing was registered for the class
    bool remove(const Guid& classId);
    [[nodiscard]] Ref<IClassFactory> find(const Guid& classId) const;

    /// Creates an object of a registered class; null when there is no factory or the factory refuses.
    template <class Interface>
    [[nodiscard]] Ref<Interface> create(const Guid& classId) const {
        Ref<Interface> object;
        const Ref<IClassFactory> factory = find(classId);
        if (!factory || failed(factory->CreateInstance(nullptr, Interface::kId, object.receiveVoid())))
            return Ref<Interface>();
        return object;
    }

private:
    struct Entry {
        Guid classId;
        Ref<IClassFactory> factory;
    };
    mutable std::mutex m_mutex;
    std::vector<Entry> m_entries;
};

}  // namespace velcoran::com
