#include "display.h"

#include "qt_platforms.h"
#include "wayland_display.h"
#include "x_display.h"

#include <QCoreApplication>
#include <QGuiApplication>

#include <algorithm>
#include <iterator>
#include <vector>

#include <fcntl.h>
#include <unistd.h>

using namespace Qt::StringLiterals;

namespace velcoran::system {

namespace {

constexpr std::chrono::seconds kPatience{2};
/// More than Qt opens for an application object and its first window; without them it ends the process.
constexpr std::size_t kSpareDescriptors = 32;
/// Platforms that show nothing and cannot fail, as a last entry of Qt's list.
constexpr const char16_t* kNets[] = {u"offscreen", u"minimal"};

enum class Server : std::uint8_t { None, X, Wayland };

struct PlatformRow {
    const char16_t* name;
    Server server;
};

/// The platforms of Qt that never end the process once their server has answered.
constexpr PlatformRow kPlatforms[] = {
    {u"xcb", Server::X},          {u"wayland", Server::Wayland}, {u"wayland-egl", Server::Wayland},
    {u"offscreen", Server::None}, {u"minimal", Server::None},    {u"vnc", Server::None},
};

const PlatformRow* rowOf(const QtPlatform& platform) {
    const auto row = std::find_if(std::begin(kPlatforms), std::end(kPlatforms),
                                  [&](const PlatformRow& candidate) { return platform.name == candidate.name; });
    if (row == std::end(kPlatforms)) return nullptr;
    // A file that describes screens is one more thing that can be missing.
    const bool hasFile = std::any_of(platform.arguments.begin(), platform.arguments.end(),
                                     [](const QString& argument) { return argument.startsWith("configfile"_L1); });
    return hasFile ? nullptr : &*row;
}

DisplayAnswer ask(Server server) {
    const Deadline deadline = std::chrono::steady_clock::now() + kPatience;
    if (server == Server::X) return askXServer(qgetenv("DISPLAY"), deadline);
    return askCompositor(waylandSocketPath(), deadline);
}

QString subjectOf(const QtPlatform& platform, Server server) {
    const QByteArray address = server == Server::X         ? qgetenv("DISPLAY")
                               : server == Server::Wayland ? waylandSocketPath()
                                                           : QByteArray();
    return address.isEmpty() ? platform.name : platform.name + u' ' + QString::fromLocal8Bit(address);
}

QByteArrayList argumentsFor(const QtPlatform& platform, Server server, const QByteArray& net) {
    QByteArrayList arguments{"-platform", platform.entry + ';' + net};
    // A desktop's theme may open a display of its own, and end the process when there is none.
    if (server == Server::None)
        arguments << "-platformtheme"
                  << "";
    return arguments;
}

/// @return empty when neither of them is installed
QByteArray findNet() {
    for (const char16_t* name : kNets) {
        const QString file = platformPlugin(QString::fromUtf16(name));
        if (!file.isEmpty() && loadPlugin(file)) return QString::fromUtf16(name).toLatin1();
    }
    return {};
}

bool hasDescriptors() {
    std::vector<int> spare;
    while (spare.size() < kSpareDescriptors) {
        const int descriptor = ::open("/dev/null", O_RDONLY | O_CLOEXEC);
        if (descriptor < 0) break;
        spare.push_back(descriptor);
    }
    for (const int descriptor : spare) ::close(descriptor);
    return spare.size() == kSpareDescriptors;
}

/// What would end the process with any platform.
std::optional<DisplayFault> processFault() {
    if (::geteuid() != ::getuid() && !QCoreApplication::isSetuidAllowed())
        return DisplayFault{DisplayProblem::ForeignRights, {}};
    if (!hasDescriptors()) return DisplayFault{DisplayProblem::NoDescriptors, {}};
    return {};
}

/// The platform's server first, then its plugin: where nothing answers, Qt is left alone.
std::optional<Display> tryPlatform(const QtPlatform& platform, QList<DisplayFault>& faults) {
    const PlatformRow* row = rowOf(platform);
    if (row == nullptr) {
        faults.append({DisplayProblem::UnknownPlatform, QString::fromLatin1(platform.entry)});
        return {};
    }
    DisplayAnswer answer;
    if (row->server != Server::None) {
        answer = ask(row->server);
        if (!answer.connection) {
            faults.append({answer.problem, subjectOf(platform, row->server)});
            return {};
        }
    }
    const QString file = platformPlugin(platform.name);
    if (file.isEmpty() || !loadPlugin(file)) {
        faults.append({DisplayProblem::NoPlugin, platform.name});
        return {};
    }
    const QByteArray net = findNet();
    if (net.isEmpty()) {
        faults.append({DisplayProblem::NoPlugin, QString::fromUtf16(kNets[0])});
        return {};
    }
    return Display{platform.name, argumentsFor(platform, row->server, net), std::move(answer.connection)};
}

}  // namespace

QString wordsOf(const DisplayFault& fault, const ProblemWords& words) {
    return (fault.subject.isEmpty() ? QString() : fault.subject + QStringLiteral(": ")) +
           QString::fromUtf16(words[fault.problem].words);
}

DisplaySearch findDisplay(const QByteArray& platforms) {
    DisplaySearch search;
    if (const auto fault = processFault()) {
        search.faults.append(*fault);
        return search;
    }
    for (const QtPlatform& platform : readPlatforms(platforms)) {
        search.display = tryPlatform(platform, search.faults);
        if (search.display) return search;
    }
    if (search.faults.isEmpty())
        search.faults.append({DisplayProblem::UnknownPlatform, QString::fromLatin1(platforms)});
    return search;
}

bool isOpen(const Display& display) {
    return QGuiApplication::platformName() == display.platform && QGuiApplication::primaryScreen() != nullptr;
}

}  // namespace velcoran::system
