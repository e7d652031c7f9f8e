/* A GTK module that sees when a dialog's first control has the keyboard, and plays the user: it
 * types a PIN, where that is a text field, and presses OK. It also sees when windows paint
 * anything. The toolkit loads it by itself (GTK_MODULES) into the host of the library and into the
 * bare program, so that both are measured, and slowed, alike. */
#include <gtk/gtk.h>

#include "note.h"

static gboolean Answer(gpointer field) {
    if (GTK_IS_ENTRY(field)) {
        gtk_entry_set_text(GTK_ENTRY(field), "123456");
    }
    Note("ok");
    /* Clicked, for the Return key shows the button pressed for a quarter of a second. */
    GtkWindow* const window = GTK_WINDOW(gtk_widget_get_toplevel(GTK_WIDGET(field)));
    gtk_button_clicked(GTK_BUTTON(gtk_window_get_default_widget(window)));
    return G_SOURCE_REMOVE;
}

static gboolean OnFocus(GSignalInvocationHint* hint, guint count, const GValue* values,
                        gpointer data) {
    (void)hint;
    (void)count;
    (void)data;
    GObject* const widget = g_value_get_object(&values[0]);
    if (GTK_IS_ENTRY(widget) || GTK_IS_TREE_VIEW(widget) || GTK_IS_RADIO_BUTTON(widget)) {
        Note("focus");
        /* Once the window has been painted. */
        g_idle_add_full(G_PRIORITY_LOW, Answer, g_object_ref(widget), g_object_unref);
    }
    return TRUE;
}

static gboolean OnDraw(GSignalInvocationHint* hint, guint count, const GValue* values,
                       gpointer data) {
    (void)hint;
    (void)count;
    (void)data;
    if (GTK_IS_ENTRY(g_value_get_object(&values[0]))) {
        Note("painted");
    }
    return TRUE;
}

static gboolean OnFrame(GSignalInvocationHint* hint, guint count, const GValue* values,
                        gpointer data) {
    (void)hint;
    (void)count;
    (void)values;
    (void)data;
    Note("frame");
    return TRUE;
}

G_MODULE_EXPORT void gtk_module_init(const gint* argc, gchar*** argv);

void gtk_module_init(const gint* argc, gchar*** argv) {
    (void)argc;
    (void)argv;
    g_type_ensure(GTK_TYPE_WIDGET);
    gpointer const widgets = g_type_class_ref(GTK_TYPE_WIDGET);
    g_signal_add_emission_hook(g_signal_lookup("focus-in-event", GTK_TYPE_WIDGET), 0, OnFocus, NULL,
                               NULL);
    g_signal_add_emission_hook(g_signal_lookup("draw", GTK_TYPE_WIDGET), 0, OnDraw, NULL, NULL);
    g_type_class_unref(widgets);
    gpointer const clocks = g_type_class_ref(GDK_TYPE_FRAME_CLOCK);
    g_signal_add_emission_hook(g_signal_lookup("paint", GDK_TYPE_FRAME_CLOCK), 0, OnFrame, NULL,
                               NULL);
    g_type_class_unref(clocks);
}
