#include "component/display.h"

#include <QString>

#include <dlfcn.h>

using namespace Qt::StringLiterals;

namespace velcoran::component {

namespace {

/// Connects to the display server as the toolkit's plugin would. Its library comes with the plugin and with nothing of
/// ours: where it is missing, the toolkit has the last word.
bool isServerReachable() {
    void* library = dlopen("libxcb.so.1", RTLD_NOW | RTLD_LOCAL);
    if (library == nullptr) return true;
    const auto connect = reinterpret_cast<void* (*)(const char*, int*)>(dlsym(library, "xcb_connect"));
    const auto errorOf = reinterpret_cast<int (*)(void*)>(dlsym(library, "xcb_connection_has_error"));
    const auto disconnect = reinterpret_cast<void (*)(void*)>(dlsym(library, "xcb_disconnect"));
    bool isReachable = true;
    if (connect != nullptr && errorOf != nullptr && disconnect != nullptr) {
        void* connection = connect(nullptr, nullptr);
        isReachable = errorOf(connection) == 0;
        disconnect(connection);
    }
    dlclose(library);
    return isReachable;
}

}  // namespace

bool hasDisplay() {
    const QString platform = qEnvironmentVariable("QT_QPA_PLATFORM");
    if (!platform.isEmpty() && platform != u"xcb"_s) return true;
    if (platform.isEmpty() && !qEnvironmentVariableIsEmpty("WAYLAND_DISPLAY")) return true;
    return !qEnvironmentVariableIsEmpty("DISPLAY") && isServerReachable();
}

}  // namespace velcoran::component
