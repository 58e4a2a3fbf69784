#include "stream_socket.h"

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <memory>

#include <netdb.h>
#include <netinet/in.h>
#include <poll.h>
#include <sys/socket.h>
#include <sys/un.h>
#include <unistd.h>

namespace velcoran::system {

namespace {

using namespace std::chrono;

/// What is left until the deadline, rounded up; 0 when it has passed.
milliseconds leftUntil(Deadline deadline) {
    return std::max(ceil<milliseconds>(deadline - steady_clock::now()), milliseconds(0));
}

/// @return false when the socket is not ready for it until the deadline
bool waitFor(int descriptor, short events, Deadline deadline) {
    pollfd waited{descriptor, events, 0};
    while (true) {
        const int ready = ::poll(&waited, 1, static_cast<int>(leftUntil(deadline).count()));
        if (ready >= 0) return ready == 1;
        if (errno != EINTR) return false;
    }
}

struct FreeAddresses {
    void operator()(addrinfo* addresses) const { ::freeaddrinfo(addresses); }
};
using Addresses = std::unique_ptr<addrinfo, FreeAddresses>;

/// A question to the resolver with everything that it points to.
struct Question {
    QByteArray host;
    QByteArray port;
    addrinfo hints{};
    gaicb request{};
};

Addresses askResolver(const QByteArray& host, std::uint16_t port, int flags, Deadline deadline) {
    auto question = std::make_unique<Question>();
    question->host = host;
    question->port = QByteArray::number(port);
    question->hints.ai_socktype = SOCK_STREAM;
    question->hints.ai_flags = flags | AI_NUMERICSERV;
    gaicb& request = question->request;
    request.ar_name = question->host.constData();
    request.ar_service = question->port.constData();
    request.ar_request = &question->hints;
    if ((flags & AI_NUMERICHOST) != 0) {
        addrinfo* found = nullptr;
        return Addresses(::getaddrinfo(request.ar_name, request.ar_service, &question->hints, &found) == 0 ? found
                                                                                                           : nullptr);
    }
    gaicb* requests[] = {&request};
    if (::getaddrinfo_a(GAI_NOWAIT, requests, 1, nullptr) != 0) return {};
    while (::gai_error(&request) == EAI_INPROGRESS && leftUntil(deadline).count() > 0) {
        const auto left = leftUntil(deadline);
        const timespec patience{left.count() / 1000, left.count() % 1000 * 1'000'000};
        (void)::gai_suspend(requests, 1, &patience);
    }
    if (::gai_cancel(&request) == EAI_NOTCANCELED) {
        (void)question.release();  // the resolver still writes into it
        return {};
    }
    return Addresses(::gai_error(&request) == 0 ? request.ar_result : nullptr);
}

}  // namespace

StreamSocket& StreamSocket::operator=(StreamSocket&& other) noexcept {
    std::swap(m_descriptor, other.m_descriptor);
    return *this;
}

StreamSocket::~StreamSocket() {
    if (m_descriptor >= 0) ::close(m_descriptor);
}

std::optional<StreamSocket> StreamSocket::connected(const sockaddr& address, std::size_t length, Deadline deadline) {
    StreamSocket made(::socket(address.sa_family, SOCK_STREAM | SOCK_NONBLOCK | SOCK_CLOEXEC, 0));
    if (made.m_descriptor < 0) return {};
    while (::connect(made.m_descriptor, &address, static_cast<socklen_t>(length)) != 0) {
        if (errno == EINTR) continue;
        if (errno == EISCONN) return made;
        // A listener in the file system with a full queue says EAGAIN: nobody takes connections there.
        if (errno != EINPROGRESS && errno != EALREADY) return {};
        if (!waitFor(made.m_descriptor, POLLOUT, deadline)) return {};
        int failure = 0;
        socklen_t size = sizeof failure;
        if (::getsockopt(made.m_descriptor, SOL_SOCKET, SO_ERROR, &failure, &size) != 0 || failure != 0) return {};
    }
    return made;
}

std::optional<StreamSocket> StreamSocket::toPath(const QByteArray& path, bool isAbstract, Deadline deadline) {
    sockaddr_un address{};
    address.sun_family = AF_UNIX;
    const auto length = static_cast<std::size_t>(path.size());
    if (length + 1 > sizeof address.sun_path) return {};
    std::memcpy(address.sun_path + (isAbstract ? 1 : 0), path.constData(), length);
    return connected(reinterpret_cast<const sockaddr&>(address), offsetof(sockaddr_un, sun_path) + length + 1,
                     deadline);
}

std::optional<StreamSocket> StreamSocket::toHost(const QByteArray& host, std::uint16_t port, Deadline deadline) {
    // This machine has its name everywhere: no question, and no thread of the resolver's that lives on for a second.
    const bool isHere = host == "localhost";
    Addresses addresses = askResolver(isHere ? "127.0.0.1" : host, port, AI_NUMERICHOST, deadline);
    if (isHere && addresses) {
        if (auto made = connected(*addresses->ai_addr, addresses->ai_addrlen, deadline)) return made;
        addresses = askResolver("::1", port, AI_NUMERICHOST, deadline);
    }
    if (!addresses && !isHere) addresses = askResolver(host, port, 0, deadline);
    for (const addrinfo* address = addresses.get(); address != nullptr; address = address->ai_next)
        if (auto made = connected(*address->ai_addr, address->ai_addrlen, deadline)) return made;
    return {};
}

bool StreamSocket::send(const QByteArray& bytes, Deadline deadline) const {
    for (qsizetype sent = 0; sent < bytes.size();) {
        const auto count =
            ::send(m_descriptor, bytes.constData() + sent, static_cast<std::size_t>(bytes.size() - sent), MSG_NOSIGNAL);
        if (count >= 0)
            sent += count;
        else if (errno != EINTR && (errno != EAGAIN || !waitFor(m_descriptor, POLLOUT, deadline)))
            return false;
    }
    return true;
}

std::optional<QByteArray> StreamSocket::receive(qsizetype count, Deadline deadline) const {
    QByteArray bytes(count, '\0');
    for (qsizetype got = 0; got < count;) {
        const auto more = ::recv(m_descriptor, bytes.data() + got, static_cast<std::size_t>(count - got), 0);
        if (more == 0) return {};
        if (more > 0)
            got += more;
        else if (errno != EINTR && (errno != EAGAIN || !waitFor(m_descriptor, POLLIN, deadline)))
            return {};
    }
    return bytes;
}

}  // namespace velcoran::system
