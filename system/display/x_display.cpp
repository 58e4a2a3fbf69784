#include "x_display.h"

#include <QtEndian>

#include <X11/Xauth.h>

#include <array>
#include <cstring>
#include <memory>
#include <thread>

#include <netinet/in.h>
#include <sys/socket.h>
#include <unistd.h>

namespace velcoran::system {

namespace {

constexpr int kFirstPort = 6000;  // X11/Xproto.h: X_TCP_PORT
constexpr int kLastDisplay = 0xFFFF - kFirstPort;
const QByteArray kAuthority = "MIT-MAGIC-COOKIE-1";

// X11/X.h: FamilyInternet, FamilyInternet6; its macros go well with no other header
constexpr unsigned short kFamilyInternet = 0;
constexpr unsigned short kFamilyInternet6 = 6;

// The connection set-up of the X protocol, in the byte order of this machine.
constexpr char kByteOrder = Q_BYTE_ORDER == Q_LITTLE_ENDIAN ? 'l' : 'B';
constexpr std::uint16_t kProtocolMajor = 11;
constexpr qsizetype kSetUpHead = 8;
constexpr qsizetype kLengthPlace = 6;    // in units of four bytes
constexpr qsizetype kScreensPlace = 20;  // behind the head: the number of screens
constexpr char kAccepted = 1;
// A server that begins anew after its last client breaks off whoever comes in that moment.
constexpr int kMaxAttempts = 8;
constexpr std::chrono::milliseconds kResetTime{50};
// A request whose answer changes nothing, and the units in which answers and events come.
constexpr char kGetInputFocus = 43;
constexpr qsizetype kPacket = 32;
constexpr char kReply = 1;

template <class Number>
void append(QByteArray& bytes, Number number) {
    bytes.append(reinterpret_cast<const char*>(&number), sizeof number);
}

QByteArray padded(const QByteArray& bytes) { return bytes + QByteArray((4 - bytes.size() % 4) % 4, '\0'); }

/// @return nothing for what is not a number of at most five digits
std::optional<int> readNumber(const QByteArray& text) {
    bool isNumber = !text.isEmpty() && text.size() <= 5;
    for (const char character : text) isNumber = isNumber && character >= '0' && character <= '9';
    return isNumber ? std::optional(text.toInt()) : std::nullopt;
}

struct FreeAuthority {
    void operator()(Xauth* entry) const { XauDisposeAuth(entry); }
};

/// The name under which a server's entry stands: this machine's for a server on it, else the server's address.
struct AuthorityKey {
    unsigned short family = FamilyLocal;
    QByteArray address;
};

AuthorityKey authorityKey(const StreamSocket& socket) {
    sockaddr_storage peer{};
    socklen_t length = sizeof peer;
    if (::getpeername(socket.descriptor(), reinterpret_cast<sockaddr*>(&peer), &length) == 0) {
        const auto& four = reinterpret_cast<const sockaddr_in&>(peer);
        const auto& six = reinterpret_cast<const sockaddr_in6&>(peer);
        const auto bytesOf = [](const auto& part, qsizetype from = 0) {
            return QByteArray(reinterpret_cast<const char*>(&part) + from, sizeof part - from);
        };
        if (peer.ss_family == AF_INET && four.sin_addr.s_addr != htonl(INADDR_LOOPBACK))
            return {kFamilyInternet, bytesOf(four.sin_addr)};
        if (peer.ss_family == AF_INET6 && IN6_IS_ADDR_V4MAPPED(&six.sin6_addr)) {
            const QByteArray mapped = bytesOf(six.sin6_addr, 12);
            const std::uint32_t loopback = htonl(INADDR_LOOPBACK);
            if (std::memcmp(mapped.constData(), &loopback, sizeof loopback) != 0) return {kFamilyInternet, mapped};
        } else if (peer.ss_family == AF_INET6 && !IN6_IS_ADDR_LOOPBACK(&six.sin6_addr)) {
            return {kFamilyInternet6, bytesOf(six.sin6_addr)};
        }
    }
    std::array<char, 256> machine{};
    if (::gethostname(machine.data(), machine.size() - 1) != 0) return {};
    return {FamilyLocal, QByteArray(machine.data())};
}

/// The secret that the user's authority file has for the display; empty for none.
QByteArray authorityFor(const StreamSocket& socket, int display) {
    const AuthorityKey key = authorityKey(socket);
    const QByteArray number = QByteArray::number(display);
    QByteArray kind = kAuthority;
    std::array<char*, 1> kinds{kind.data()};
    const std::array<int, 1> lengths{static_cast<int>(kind.size())};
    const std::unique_ptr<Xauth, FreeAuthority> entry(XauGetBestAuthByAddr(
        key.family, static_cast<unsigned short>(key.address.size()), key.address.constData(),
        static_cast<unsigned short>(number.size()), number.constData(), 1, kinds.data(), lengths.data()));
    return entry ? QByteArray(entry->data, entry->data_length) : QByteArray();
}

QByteArray setUpRequest(const QByteArray& secret) {
    const QByteArray kind = secret.isEmpty() ? QByteArray() : kAuthority;
    QByteArray request(1, kByteOrder);
    request.append('\0');
    append(request, kProtocolMajor);
    append(request, std::uint16_t{0});
    append(request, static_cast<std::uint16_t>(kind.size()));
    append(request, static_cast<std::uint16_t>(secret.size()));
    append(request, std::uint16_t{0});
    return request + padded(kind) + padded(secret);
}

std::optional<StreamSocket> connectTo(const XAddress& address, Deadline deadline) {
    std::optional<StreamSocket> socket;
    for (const bool isAbstract : {true, false})
        if (!socket && !address.path.isEmpty()) socket = StreamSocket::toPath(address.path, isAbstract, deadline);
    if (!socket && !address.host.isEmpty())
        socket = StreamSocket::toHost(address.host, static_cast<std::uint16_t>(kFirstPort + address.display), deadline);
    return socket;
}

/// Nothing when the connection stands and is served.
std::optional<DisplayProblem> setUp(const StreamSocket& socket, const XAddress& address, Deadline deadline) {
    if (!socket.send(setUpRequest(authorityFor(socket, address.display)), deadline)) return unanswered(deadline);
    const auto head = socket.receive(kSetUpHead, deadline);
    if (!head) return unanswered(deadline);
    if (head->front() != kAccepted) return DisplayProblem::Refusal;
    std::uint16_t length = 0;
    std::memcpy(&length, head->constData() + kLengthPlace, sizeof length);
    const auto body = socket.receive(qsizetype{4} * length, deadline);
    if (!body) return unanswered(deadline);
    if (body->size() <= kScreensPlace || address.screen >= static_cast<unsigned char>(body->at(kScreensPlace)))
        return DisplayProblem::NoScreen;
    QByteArray request(1, kGetInputFocus);
    request.append('\0');
    append(request, std::uint16_t{1});
    if (!socket.send(request, deadline)) return unanswered(deadline);
    while (true) {  // events may come before the answer
        const auto packet = socket.receive(kPacket, deadline);
        if (!packet) return unanswered(deadline);
        if (packet->front() == kReply) return {};
    }
}

}  // namespace

std::optional<XAddress> readXAddress(const QByteArray& name) {
    const qsizetype slash = name.lastIndexOf('/');
    const QByteArray protocol = slash < 0 ? QByteArray() : name.left(slash);
    const QByteArray rest = name.mid(slash + 1);
    const qsizetype colon = rest.lastIndexOf(':');
    if (colon < 0) return {};
    const QByteArray numbers = rest.mid(colon + 1);
    const qsizetype point = numbers.indexOf('.');
    const auto display = readNumber(point < 0 ? numbers : numbers.left(point));
    const auto screen = point < 0 ? std::optional(0) : readNumber(numbers.mid(point + 1));
    if (!display || !screen || *display > kLastDisplay) return {};
    XAddress address;
    address.display = *display;
    address.screen = *screen;
    const QByteArray host = rest.left(colon);
    const bool isHere = protocol == "unix" || host.isEmpty() || host == "unix";
    if (isHere) {
        address.path = "/tmp/.X11-unix/X" + QByteArray::number(*display);
    }
    if (!isHere || (protocol.isEmpty() && host.isEmpty())) address.host = host.isEmpty() ? "localhost" : host;
    // A number with colons in it stands in brackets.
    if (address.host.startsWith('[') && address.host.endsWith(']'))
        address.host = address.host.mid(1, address.host.size() - 2);
    return address;
}

DisplayAnswer askXServer(const QByteArray& name, Deadline deadline) {
    const auto address = readXAddress(name);
    if (!address) return {{}, DisplayProblem::NoServer};
    for (int attempt = 1;; ++attempt) {
        auto socket = connectTo(*address, deadline);
        if (!socket) return {{}, isPast(deadline) ? DisplayProblem::NoAnswer : DisplayProblem::NoServer};
        const auto problem = setUp(*socket, *address, deadline);
        if (!problem) return {std::move(socket), {}};
        if (*problem != DisplayProblem::BrokenOff || attempt == kMaxAttempts) return {{}, *problem};
        std::this_thread::sleep_for(kResetTime);
    }
}

}  // namespace velcoran::system
