// A host in GTK 3, whose main loop is GLib's: Qt hooks into it.
#include "toolkit_host.h"

#include <gtk/gtk.h>

namespace {

gboolean endLoop(gpointer) {
    gtk_main_quit();
    return G_SOURCE_REMOVE;
}

}  // namespace

int main(int argc, char** argv) {
    gtk_init(nullptr, nullptr);
    GtkWidget* window = gtk_window_new(GTK_WINDOW_TOPLEVEL);
    gtk_container_add(GTK_CONTAINER(window), gtk_entry_new());
    gtk_widget_show_all(window);
    const std::string before = hosts::xHandlers();
    const auto runLoop = [](int milliseconds) {
        g_timeout_add(static_cast<guint>(milliseconds), endLoop, nullptr);
        gtk_main();
    };
    runLoop(100);
    const int status = hosts::runHost(argc, argv, runLoop, false);
    hosts::expect(hosts::xHandlers() == before, "the toolkit's handlers of X errors stand");
    gtk_widget_destroy(window);
    return status;
}
