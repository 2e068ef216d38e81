// A bare window of GTK 4 with one text, as other applications of a desktop have it at the least; records each
// frame.

#include "bench/FrameRecord.h"

#include <gtk/gtk.h>

namespace {

void show(GtkApplication* application)
{
    auto* window = gtk_application_window_new(application);
    gtk_window_set_default_size(GTK_WINDOW(window), 390, 844);
    gtk_window_set_child(GTK_WINDOW(window), gtk_label_new("One text"));
    gtk_window_present(GTK_WINDOW(window));
    auto* frames = gdk_surface_get_frame_clock(gtk_native_get_surface(GTK_NATIVE(window)));
    g_signal_connect(frames, "after-paint", G_CALLBACK(MirrowvaleAuthenticator::recordFrame), nullptr);
}

} // namespace

int main(int argc, char* argv[])
{
    auto* application = gtk_application_new(nullptr, G_APPLICATION_NON_UNIQUE);
    g_signal_connect(application, "activate", G_CALLBACK(show), nullptr);
    return g_application_run(G_APPLICATION(application), argc, argv);
}
