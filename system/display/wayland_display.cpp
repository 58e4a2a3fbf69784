#include "wayland_display.h"

#include <QByteArrayList>

#include <cstring>

namespace velcoran::system {

namespace {

// The wire protocol of Wayland: words in the byte order of this machine, a head of two words on each message.
using Word = std::uint32_t;
constexpr Word kDisplay = 1, kRegistry = 2, kCallback = 3;  // objects; the first is given, the others are ours
constexpr Word kSync = 0, kGetRegistry = 1;                 // requests of the display
constexpr Word kError = 0, kGlobal = 0, kDone = 0;          // events of the display, the registry, the callback
constexpr qsizetype kWord = sizeof(Word);
constexpr qsizetype kHead = 2 * kWord;
constexpr qsizetype kNamePlace = 2 * kWord;  // in a global: its number, the length of its name, its name

QByteArray request(Word opcode, Word newObject) {
    const Word words[] = {kDisplay, static_cast<Word>(3 * kWord) << 16 | opcode, newObject};
    return {reinterpret_cast<const char*>(words), sizeof words};
}

Word wordAt(const QByteArray& bytes, qsizetype place) {
    Word word = 0;
    std::memcpy(&word, bytes.constData() + place, sizeof word);
    return word;
}

struct Event {
    Word object;
    Word opcode;
    QByteArray body;
};

std::optional<Event> receiveEvent(const StreamSocket& socket, Deadline deadline) {
    const auto head = socket.receive(kHead, deadline);
    if (!head) return {};
    const Word sizeAndOpcode = wordAt(*head, kWord);
    const qsizetype size = sizeAndOpcode >> 16;
    if (size < kHead) return {};
    auto body = socket.receive(size - kHead, deadline);
    if (!body) return {};
    return Event{wordAt(*head, 0), sizeAndOpcode & 0xFFFF, std::move(*body)};
}

bool canShowWindows(const QByteArrayList& globals) {
    return globals.contains("wl_compositor") && globals.contains("wl_shm") &&
           (globals.contains("xdg_wm_base") || globals.contains("wl_shell"));
}

}  // namespace

QByteArray waylandSocketPath() {
    QByteArray name = qgetenv("WAYLAND_DISPLAY");
    if (!qEnvironmentVariableIsSet("WAYLAND_DISPLAY")) name = "wayland-0";
    if (name.startsWith('/')) return name;
    const QByteArray folder = qgetenv("XDG_RUNTIME_DIR");
    return folder.startsWith('/') && !name.isEmpty() ? folder + '/' + name : QByteArray();
}

DisplayAnswer askCompositor(const QByteArray& path, Deadline deadline) {
    if (qEnvironmentVariableIsSet("WAYLAND_SOCKET")) return {{}, DisplayProblem::UnknownPlatform};
    if (path.isEmpty()) return {{}, DisplayProblem::NoServer};
    auto socket = StreamSocket::toPath(path, false, deadline);
    if (!socket) return {{}, isPast(deadline) ? DisplayProblem::NoAnswer : DisplayProblem::NoServer};
    if (!socket->send(request(kGetRegistry, kRegistry) + request(kSync, kCallback), deadline))
        return {{}, unanswered(deadline)};
    QByteArrayList globals;
    while (const auto event = receiveEvent(*socket, deadline)) {
        if (event->object == kDisplay && event->opcode == kError) return {{}, DisplayProblem::Refusal};
        if (event->object == kRegistry && event->opcode == kGlobal && event->body.size() > kNamePlace)
            globals.append(QByteArray(event->body.constData() + kNamePlace));  // ends with a zero byte
        if (event->object == kCallback && event->opcode == kDone) {
            if (!canShowWindows(globals)) return {{}, DisplayProblem::NoScreen};
            return {std::move(socket), {}};
        }
    }
    return {{}, unanswered(deadline)};
}

}  // namespace velcoran::system
