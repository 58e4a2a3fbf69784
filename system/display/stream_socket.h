#pragma once

#include <QByteArray>

#include <chrono>
#include <optional>
#include <utility>

struct sockaddr;

namespace velcoran::system {

using Deadline = std::chrono::steady_clock::time_point;

/// A connected stream socket on which nothing blocks beyond a deadline; nor does making one. It is closed with the
/// object and not inherited by programs that the process starts.
class StreamSocket {
public:
    /// A socket in the file system or, with isAbstract, in the kernel's own names.
    /// @return nothing when no one listens there, or takes no connection until the deadline
    static std::optional<StreamSocket> toPath(const QByteArray& path, bool isAbstract, Deadline deadline);
    /// The first address of a host, by name or number, that takes the connection.
    static std::optional<StreamSocket> toHost(const QByteArray& host, std::uint16_t port, Deadline deadline);

    StreamSocket(StreamSocket&& other) noexcept : m_descriptor(std::exchange(other.m_descriptor, -1)) {}
    StreamSocket& operator=(StreamSocket&& other) noexcept;
    ~StreamSocket();

    /// @return false when not everything was taken until the deadline
    [[nodiscard]] bool send(const QByteArray& bytes, Deadline deadline) const;
    /// @return exactly so many bytes; nothing when they did not come until the deadline
    [[nodiscard]] std::optional<QByteArray> receive(qsizetype count, Deadline deadline) const;
    [[nodiscard]] int descriptor() const { return m_descriptor; }

private:
    explicit StreamSocket(int descriptor) : m_descriptor(descriptor) {}
    static std::optional<StreamSocket> connected(const sockaddr& address, std::size_t length, Deadline deadline);

    int m_descriptor;
};

}  // namespace velcoran::system
