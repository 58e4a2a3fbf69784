// A host without the toolkit, on GLib's main loop: the component brings its own application object up and takes it away
// again.
#include "fixed_connection.h"
#include "loaded_component.h"
#include "rounds.h"

#include <glib.h>

namespace {

using hosts::expect;

/// Lets the main loop run for a while.
void runLoop(GMainLoop* loop, guint milliseconds) {
    g_timeout_add(
        milliseconds,
        [](gpointer data) -> gboolean {
            g_main_loop_quit(static_cast<GMainLoop*>(data));
            return G_SOURCE_REMOVE;
        },
        loop);
    g_main_loop_run(loop);
}

/// Closes the windows as the end of a desktop session does. The host links no toolkit: it borrows the function from the
/// one that came with the component.
void closeWindows(GMainLoop* loop) {
    void* toolkit = dlopen("libQt6Widgets.so.6", RTLD_NOW | RTLD_NOLOAD);
    expect(toolkit != nullptr, "the toolkit is in the process");
    auto* closeAll = reinterpret_cast<void (*)()>(dlsym(toolkit, "_ZN12QApplication15closeAllWindowsEv"));
    expect(closeAll != nullptr, "QApplication::closeAllWindows");
    closeAll();
    dlclose(toolkit);
    runLoop(loop, 1);
}

void work(const char* library, GMainLoop* loop) {
    const auto connection = velcoran::com::Ref<hosts::FixedConnection>::adopt(new hosts::FixedConnection);
    hosts::LoadedComponent component(library);
    component.open(u"Import", connection.get());
    runLoop(loop, 10);
    component.open(u"Export", connection.get());
    expect(connection->count() == 2, "the window has the connection");
    closeWindows(loop);
    expect(connection->count() == 1, "the closed window has let go of it");
    component.open(u"Import", connection.get());
    expect(!component.canUnload(), "the open window keeps the library");
    closeWindows(loop);
    component.unload(library);
    runLoop(loop, 1);
}

}  // namespace

int main(int argc, char** argv) {
    expect(argc == 3, "two arguments, the library and the number of rounds");
    GMainLoop* loop = g_main_loop_new(nullptr, FALSE);
    hosts::runRounds(std::atoi(argv[2]), [&] { work(argv[1], loop); });
    g_main_loop_unref(loop);
    return 0;
}
