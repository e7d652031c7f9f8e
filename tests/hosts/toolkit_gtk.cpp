// GTK 3 and GTK 4.
#include <gtk/gtk.h>

#include "toolkit.h"

namespace testhost {

namespace {

void Paint(cairo_t* cairo) {
    cairo_set_source_rgb(cairo, NextFrame() / 255.0, 0.5, 0.5);
    cairo_paint(cairo);
}

#if GTK_CHECK_VERSION(4, 0, 0)
bool Start() { return gtk_init_check() != 0; }

GtkWidget* MakeArea() {
    GtkWidget* const area = gtk_drawing_area_new();
    gtk_drawing_area_set_draw_func(
        GTK_DRAWING_AREA(area),
        [](GtkDrawingArea*, cairo_t* cairo, int, int, gpointer) { Paint(cairo); }, nullptr,
        nullptr);
    return area;
}

GtkWidget* MakeWindow(GtkWidget* content) {
    GtkWidget* const window = gtk_window_new();
    gtk_window_set_child(GTK_WINDOW(window), content);
    return window;
}

void Add(GtkWidget* box, GtkWidget* widget) { gtk_box_append(GTK_BOX(box), widget); }

void DestroyWindow(GtkWidget* window) { gtk_window_destroy(GTK_WINDOW(window)); }

GMainLoop* g_loop = nullptr;  // the main thread's; there is one while it runs

void RunLoop() {
    g_loop = g_main_loop_new(nullptr, FALSE);
    g_main_loop_run(g_loop);
    g_main_loop_unref(g_loop);
}

void QuitLoop() { g_main_loop_quit(g_loop); }
#else
bool Start() { return gtk_init_check(nullptr, nullptr) != 0; }

GtkWidget* MakeArea() {
    GtkWidget* const area = gtk_drawing_area_new();
    const auto onDraw = +[](GtkWidget*, cairo_t* cairo, gpointer) -> gboolean {
        Paint(cairo);
        return TRUE;
    };
    g_signal_connect(area, "draw", G_CALLBACK(onDraw), nullptr);
    return area;
}

GtkWidget* MakeWindow(GtkWidget* content) {
    GtkWidget* const window = gtk_window_new(GTK_WINDOW_TOPLEVEL);
    gtk_container_add(GTK_CONTAINER(window), content);
    gtk_widget_show_all(content);
    return window;
}

void Add(GtkWidget* box, GtkWidget* widget) { gtk_container_add(GTK_CONTAINER(box), widget); }

void DestroyWindow(GtkWidget* window) { gtk_widget_destroy(window); }

void RunLoop() { gtk_main(); }

void QuitLoop() { gtk_main_quit(); }
#endif

GtkWidget* ShowWindow(GtkWidget* area) {
    GtkWidget* const box = gtk_box_new(GTK_ORIENTATION_VERTICAL, kMargin);
    Add(box, gtk_label_new(kWindowText));
    Add(box, gtk_entry_new());
    Add(box, area);
    gtk_widget_set_vexpand(area, TRUE);
    GtkWidget* const window = MakeWindow(box);
    gtk_window_set_title(GTK_WINDOW(window), kWindowTitle);
    gtk_window_set_default_size(GTK_WINDOW(window), kWindowWidth, kWindowHeight);
    gtk_widget_show(window);
    return window;
}

}  // namespace

bool RunToolkit(const std::function<void()>& running) {
    if (!Start()) {
        return false;
    }
    GtkWidget* const area = MakeArea();
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
    gdk_display_flush(gdk_display_get_default());
    return true;
}

void QuitToolkit() {
    g_idle_add_once([](gpointer) { QuitLoop(); }, nullptr);
}

}  // namespace testhost
