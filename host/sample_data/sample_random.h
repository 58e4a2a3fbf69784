#pragma once

#include <cstddef>
#include <cstdint>
#include <span>

namespace velcoran::host {

/// splitmix64: the same numbers on every machine and with every library.
class SampleRandom {
public:
    explicit SampleRandom(std::uint64_t seed) : m_state(seed) {}
    /// A stream of its own for one record, so that any table can be written without the others.
    SampleRandom(std::uint64_t seed, std::uint64_t stream, std::uint64_t number)
        : m_state(seed ^ (stream * 0xD1342543DE82EF95ULL)) {
        m_state = next() ^ (number * 0x9E3779B97F4A7C15ULL);
        next();
    }

    std::uint64_t next() {
        m_state += 0x9E3779B97F4A7C15ULL;
        std::uint64_t mixed = m_state;
        mixed = (mixed ^ (mixed >> 30U)) * 0xBF58476D1CE4E5B9ULL;
        mixed = (mixed ^ (mixed >> 27U)) * 0x94D049BB133111EBULL;
        return mixed ^ (mixed >> 31U);
    }
    /// From first to last, both included.
    std::int64_t between(std::int64_t first, std::int64_t last) {
        return first + static_cast<std::int64_t>(next() % static_cast<std::uint64_t>(last - first + 1));
    }
    /// True in so many of a hundred cases.
    bool isChance(int percent) { return between(1, 100) <= percent; }
    template <class Item>
    const Item& pick(std::span<const Item> items) {
        return items[next() % items.size()];
    }
    template <class Item, std::size_t Count>
    const Item& pick(const Item (&items)[Count]) {
        return items[next() % Count];
    }

private:
    std::uint64_t m_state;
};

}  // namespace velcoran::host
