// A host in GTK 4.
#include "toolkit_host.h"

#include <gtk/gtk.h>

namespace {

gboolean endLoop(gpointer loop) {
    g_main_loop_quit(static_cast<GMainLoop*>(loop));
    return G_SOURCE_REMOVE;
}

}  // namespace

int main(int argc, char** argv) {
    gtk_init();
    GtkWidget* window = gtk_window_new();
    gtk_window_set_child(GTK_WINDOW(window), gtk_entry_new());
    gtk_window_present(GTK_WINDOW(window));
    GMainLoop* loop = g_main_loop_new(nullptr, FALSE);
    const auto runLoop = [loop](int milliseconds) {
        g_timeout_add(static_cast<guint>(milliseconds), endLoop, loop);
        g_main_loop_run(loop);
    };
    runLoop(100);
    const std::string before = hosts::xHandlers();
    const int status = hosts::runHost(argc, argv, runLoop, false);
    hosts::expect(hosts::xHandlers() == before, "the toolkit's handlers of X errors stand");
    gtk_window_destroy(GTK_WINDOW(window));
    g_main_loop_unref(loop);
    return status;
}
