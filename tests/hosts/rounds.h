// Repeats a host's work and sees what each round leaves behind.
#pragma once

#include "loaded_component.h"
#include "process_facts.h"

#include <cstdio>
#include <cstdlib>

namespace hosts {

/// True when every entry of a list ("17 ; 23 ; ") stands in another one.
inline bool isWithin(const std::string& entries, const std::string& others) {
    for (std::size_t start = 0; start < entries.size();) {
        const std::size_t end = entries.find("; ", start) + 2;
        if (("; " + others).find("; " + entries.substr(start, end - start)) == std::string::npos) return false;
        start = end;
    }
    return true;
}

/// Ends the program when a fact is another than before. Threads of the host's own toolkit may end when they like.
inline void expectSame(const std::map<std::string, std::string>& before,
                       const std::map<std::string, std::string>& after) {
    for (const auto& [name, value] : after) {
        const auto old = before.find(name);
        const std::string& was = old == before.end() ? std::string() : old->second;
        if (name == "threads" && isWithin(value, was)) continue;
        if (was != value) std::fprintf(stderr, "%s\n  was %s\n  is  %s\n", name.c_str(), was.c_str(), value.c_str());
        expect(was == value, "the process is as it was");
    }
    expect(before.size() == after.size(), "nothing of the process is missing");
}

/// The first rounds may fill caches of Qt; from then on a round holds back next to nothing.
constexpr int kFirstMeasuredRound = 50;
#ifdef __SANITIZE_ADDRESS__
constexpr double kMaxBytesPerRound = 2048 + 4096;  // its run-time keeps an entry for each static object of each loading
#else
constexpr double kMaxBytesPerRound = 2048;
#endif

/// @param round  loads, works, unloads; the process's facts are compared around each one
template <class Round>
void runRounds(int count, Round round) {
    std::size_t heap = 0, resident = 0;
    for (int done = 0; done < count; ++done) {
        if (done == kFirstMeasuredRound) {
            heap = heapBytes();
            resident = residentBytes();
        }
        const auto before = processFacts();
        round();
        expectSame(before, processFacts());
    }
    if (count <= kFirstMeasuredRound) return;
    const auto perRound = [count](std::size_t before, std::size_t after) {
        return (static_cast<double>(after) - static_cast<double>(before)) / (count - kFirstMeasuredRound);
    };
    const double heapGrowth = perRound(heap, heapBytes());
    std::printf("%d rounds; from round %d on %.0f bytes of heap and %.0f resident bytes a round\n", count,
                kFirstMeasuredRound, heapGrowth, perRound(resident, residentBytes()));
    expect(heapGrowth <= kMaxBytesPerRound, "a round leaves nothing on the heap");
}

}  // namespace hosts
