// What the objects of a host have in common.
#pragma once

#include <velcoran/com.h>

#include <algorithm>
#include <atomic>
#include <utility>
#include <vector>

namespace hosts {

namespace com = velcoran::com;

/// The count that every object of a host carries. Main is its interface.
template <class Main>
class Counted : public Main {
public:
    /// @param kinds  the identifiers of Main and of the interfaces that it is derived from
    explicit Counted(std::vector<com::Guid> kinds) : m_kinds(std::move(kinds)) { ++living(); }
    Counted(const Counted&) = delete;
    Counted& operator=(const Counted&) = delete;

    com::HResult QueryInterface(const com::Guid& id, void** object) override {
        if (object == nullptr) return com::kNullPointer;
        const bool isKnown = id == com::IUnknown::kId || std::find(m_kinds.begin(), m_kinds.end(), id) != m_kinds.end();
        *object = isKnown ? static_cast<Main*>(this) : nullptr;
        if (!isKnown) return com::kNoInterface;
        AddRef();
        return com::kOk;
    }
    std::uint32_t AddRef() override { return ++m_count; }
    std::uint32_t Release() override {
        const std::uint32_t left = --m_count;
        if (left == 0) delete this;
        return left;
    }
    [[nodiscard]] std::uint32_t count() const { return m_count; }
    /// Number of living objects of this interface.
    static std::atomic<int>& living() {
        static std::atomic<int> objects{0};
        return objects;
    }

protected:
    virtual ~Counted() { --living(); }

private:
    std::vector<com::Guid> m_kinds;
    std::atomic<std::uint32_t> m_count{1};
};

}  // namespace hosts
