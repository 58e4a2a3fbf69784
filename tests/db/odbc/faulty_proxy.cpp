#include "faulty_proxy.h"

#include <chrono>
#include <stdexcept>

#include <arpa/inet.h>
#include <fcntl.h>
#include <poll.h>
#include <sys/eventfd.h>
#include <sys/socket.h>
#include <unistd.h>

namespace velcoran::tests {

namespace {

constexpr std::size_t kMaxWaiting = 65536;
constexpr std::size_t kMaxPiece = 8192;
constexpr std::chrono::milliseconds kLongestDelay{10};

sockaddr_in loopback(int port) {
    sockaddr_in address{};
    address.sin_family = AF_INET;
    address.sin_port = htons(static_cast<std::uint16_t>(port));
    address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    return address;
}

}  // namespace

FaultyProxy::FaultyProxy(int serverPort, FaultPlan plan)
    : m_serverPort(serverPort),
      m_plan(plan),
      m_random(plan.seed),
      m_listener(socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0)),
      m_stop(eventfd(0, EFD_CLOEXEC)) {
    sockaddr_in address = loopback(0);
    socklen_t length = sizeof address;
    auto* const plain = reinterpret_cast<sockaddr*>(&address);
    if (bind(m_listener, plain, length) != 0 || listen(m_listener, 16) != 0 ||
        getsockname(m_listener, plain, &length) != 0)
        throw std::runtime_error("the proxy has no port");
    m_port = ntohs(address.sin_port);
    m_thread = std::thread([this] { serve(); });
}

FaultyProxy::~FaultyProxy() {
    const std::uint64_t one = 1;
    if (::write(m_stop, &one, sizeof one) != sizeof one) std::terminate();
    m_thread.join();
    cut();
    close(m_listener);
    close(m_stop);
}

void FaultyProxy::serve() {
    for (;;) {
        std::vector<pollfd> polled = {{m_stop, POLLIN, 0}, {m_listener, POLLIN, 0}};
        for (const Flow& flow : m_flows) {
            const bool canRead = !isStalled() && !flow.isOver && flow.waiting.size() < kMaxWaiting;
            const bool canWrite = !isStalled() && !flow.waiting.empty();
            polled.push_back({canRead ? flow.from : -1, POLLIN, 0});
            polled.push_back({canWrite ? flow.to : -1, POLLOUT, 0});
        }
        if (poll(polled.data(), polled.size(), -1) < 0) continue;
        if (polled[0].revents != 0) return;
        for (std::size_t i = 0; i < m_flows.size(); ++i) {
            if (polled[2 * i + 2].revents != 0) read(m_flows[i]);
            if (polled[2 * i + 3].revents != 0) write(m_flows[i]);
        }
        if (polled[1].revents != 0) accept();
        if (m_plan.fault == Fault::Cut && isDue()) cut();
    }
}

void FaultyProxy::accept() {
    const int client = accept4(m_listener, nullptr, nullptr, SOCK_CLOEXEC | SOCK_NONBLOCK);
    if (client < 0) return;
    m_sockets.push_back(client);
    if (m_serverPort == 0 || isStalled()) return;
    const int server = socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0);
    m_sockets.push_back(server);
    const sockaddr_in address = loopback(m_serverPort);
    if (connect(server, reinterpret_cast<const sockaddr*>(&address), sizeof address) != 0) return cut();
    fcntl(server, F_SETFL, fcntl(server, F_GETFL) | O_NONBLOCK);
    m_flows.push_back({client, server, false, false, {}});
    m_flows.push_back({server, client, true, false, {}});
}

void FaultyProxy::read(Flow& flow) {
    char piece[kMaxPiece];
    const std::size_t wanted = m_random() % 3 == 0 ? 1 + m_random() % 64 : kMaxPiece;
    const ssize_t count = recv(flow.from, piece, wanted, 0);
    if (count <= 0) {
        flow.isOver = true;
        if (flow.waiting.empty()) shutdown(flow.to, SHUT_WR);
        return;
    }
    flow.waiting.append(piece, static_cast<std::size_t>(count));
    if (flow.isFromServer) m_bytes += static_cast<std::uint64_t>(count);
    if (m_plan.fault == Fault::Delay && isDue() && m_random() % 4 == 0)
        std::this_thread::sleep_for(kLongestDelay * (m_random() % 100) / 100);
}

void FaultyProxy::write(Flow& flow) {
    const ssize_t count = send(flow.to, flow.waiting.data(), flow.waiting.size(), MSG_NOSIGNAL);
    flow.waiting.erase(0, count < 0 ? flow.waiting.size() : static_cast<std::size_t>(count));
    if (flow.isOver && flow.waiting.empty()) shutdown(flow.to, SHUT_WR);
}

/// Closes every connection; what comes later is cut at its first byte.
void FaultyProxy::cut() {
    for (const int descriptor : m_sockets) close(descriptor);
    m_sockets.clear();
    m_flows.clear();
}

}  // namespace velcoran::tests
