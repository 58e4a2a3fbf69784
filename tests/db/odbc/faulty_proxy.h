#pragma once

#include <cstdint>
#include <random>
#include <string>
#include <thread>
#include <vector>

namespace velcoran::tests {

/// What goes wrong between a client and its server.
enum class Fault : std::uint8_t {
    None,   ///< nothing, but the bytes come in odd pieces
    Cut,    ///< the connection is closed
    Delay,  ///< pieces are late, again and again
    Stall,  ///< nothing moves any more, and new connections are accepted and never answered
};

struct FaultPlan {
    Fault fault = Fault::None;
    std::uint64_t afterBytes = 0;  ///< of the server, on all connections together
    unsigned seed = 1;             ///< of the sizes of the pieces and of the delays
};

/// Stands between a client and a server on the loopback address, in a thread of its own.
class FaultyProxy {
public:
    /// @param serverPort  0 for no server: connections are accepted and never answered
    FaultyProxy(int serverPort, FaultPlan plan);
    ~FaultyProxy();
    FaultyProxy(const FaultyProxy&) = delete;
    FaultyProxy& operator=(const FaultyProxy&) = delete;

    [[nodiscard]] int port() const { return m_port; }

private:
    /// One direction of a connection: what was read and is still to be written.
    struct Flow {
        int from = -1;
        int to = -1;
        bool isFromServer = false;
        bool isOver = false;
        std::string waiting;
    };

    void serve();
    void accept();
    void read(Flow& flow);
    void write(Flow& flow);
    void cut();
    [[nodiscard]] bool isDue() const { return m_bytes >= m_plan.afterBytes; }
    [[nodiscard]] bool isStalled() const { return m_plan.fault == Fault::Stall && isDue(); }

    int m_serverPort;
    FaultPlan m_plan;
    std::minstd_rand m_random;
    int m_port = 0;
    int m_listener = -1;
    int m_stop = -1;
    std::uint64_t m_bytes = 0;
    std::vector<Flow> m_flows;
    std::vector<int> m_sockets;
    std::thread m_thread;
};

}  // namespace velcoran::tests
