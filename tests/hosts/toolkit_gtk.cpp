// GTK 3 and GTK 4.
#include <gtk/gtk.h>

#include "toolkit.h"

namespace testhost {

namespace {

GMainLoop* g_loop = nullptr;  // the main thread's; there is one while it runs

void Paint(cairo_t* cairo) {
    cairo_set_source_rgb(cairo, NextFrame() / 255.0, 0.5, 0.5);
    cairo_paint(cairo);
}

GtkWidget* ShowWindow(GtkWidget* area) {
#if GTK_CHECK_VERSION(4, 0, 0)
    GtkWidget* const window = gtk_window_new();
    gtk_drawing_area_set_draw_func(
        GTK_DRAWING_AREA(area),
        [](GtkDrawingArea*, cairo_t* cairo, int, int, gpointer) { Paint(cairo); }, nullptr,
        nullptr);
    gtk_window_set_child(GTK_WINDOW(window), area);
#else
    GtkWidget* const window = gtk_window_new(GTK_WINDOW_TOPLEVEL);
    const auto onDraw = +[](GtkWidget*, cairo_t* cairo, gpointer) -> gboolean {
        Paint(cairo);
        return TRUE;
    };
    g_signal_connect(area, "draw", G_CALLBACK(onDraw), nullptr);
    gtk_container_add(GTK_CONTAINER(window), area);
    gtk_widget_show(area);
#endif
    gtk_window_set_title(GTK_WINDOW(window), kWindowTitle);
    gtk_window_set_default_size(GTK_WINDOW(window), kWindowWidth, kWindowHeight);
    gtk_widget_show(window);
    return window;
}

void DestroyWindow(GtkWidget* window) {
#if GTK_CHECK_VERSION(4, 0, 0)
    gtk_window_destroy(GTK_WINDOW(window));
    while (g_main_context_iteration(nullptr, FALSE) != 0) {
    }
#else
    gtk_widget_destroy(window);
    while (gtk_events_pending() != 0) {
        gtk_main_iteration();
    }
#endif
    gdk_display_flush(gdk_display_get_default());
}

void RunLoop() {
#if GTK_CHECK_VERSION(4, 0, 0)
    g_main_loop_run(g_loop);
#else
    gtk_main();
#endif
}

void QuitLoop() {
#if GTK_CHECK_VERSION(4, 0, 0)
    g_main_loop_quit(g_loop);
#else
    gtk_main_quit();
#endif
}

}  // namespace

bool RunToolkit(const std::function<void()>& running) {
#if GTK_CHECK_VERSION(4, 0, 0)
    if (gtk_init_check() == 0) {
        return false;
    }
#else
    if (gtk_init_check(nullptr, nullptr) == 0) {
        return false;
    }
#endif
    g_loop = g_main_loop_new(nullptr, FALSE);
    GtkWidget* const area = gtk_drawing_area_new();
    GtkWidget* const window = ShowWindow(area);
    const guint frames = g_timeout_add(
        kFrameMilliseconds,
        [](gpointer shown) -> gboolean {
            gtk_widget_queue_draw(GTK_WIDGET(shown));
            return G_SOURCE_CONTINUE;
        },
        area);
    g_idle_add_once([](gpointer call) { (*static_cast<const std::function<void()>*>(call))(); },
                    const_cast<std::function<void()>*>(&running));
    RunLoop();
    g_source_remove(frames);
    DestroyWindow(window);
    g_main_loop_unref(g_loop);
    return true;
}

void QuitToolkit() {
    g_idle_add_once([](gpointer) { QuitLoop(); }, nullptr);
}

}  // namespace testhost
