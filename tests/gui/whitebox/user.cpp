#include "user.h"

#include <gtest/gtest.h>
#include <gtk/gtk.h>
#include <wx/uiaction.h>

#include <bit>
#include <functional>

#include "test_app.h"

namespace zeldlg::test::user {

namespace {

// Two clicks are a double click only where a test wants that, however fast it runs.
constexpr int kNeverMilliseconds = 0;
constexpr int kAlwaysMilliseconds = 60'000;

void SetDoubleClickTime(int milliseconds) {
    g_object_set(gtk_settings_get_default(), "gtk-double-click-time", milliseconds, nullptr);
}

// Acts and waits until `count` more events of this type have been dispatched.
bool ActAndAwait(const std::function<void()>& action, wxEventType type, int count = 1) {
    const int wanted = GetTestApp().Seen(type) + count;
    action();
    return PumpUntil([&] { return GetTestApp().Seen(type) >= wanted; });
}

wxEventType UpEvent(wxMouseButton button) {
    switch (button) {
        case wxMOUSE_BTN_MIDDLE:
            return wxEVT_MIDDLE_UP;
        case wxMOUSE_BTN_RIGHT:
            return wxEVT_RIGHT_UP;
        default:
            return wxEVT_LEFT_UP;
    }
}

// Whether the display has the window's dialog under the pointer, and nothing over it.
bool IsUnderPointer(const wxWindow& window) {
    GdkDisplay* const display = gdk_display_get_default();
    GdkWindow* const under = gdk_device_get_window_at_position(
        gdk_seat_get_pointer(gdk_display_get_default_seat(display)), nullptr, nullptr);
    return under != nullptr &&
           gdk_window_get_toplevel(under) ==
               gdk_window_get_toplevel(gtk_widget_get_window(window.GetHandle()));
}

// The window may still be on its way to its place, so the pointer follows it.
bool FollowTo(const wxWindow& window, wxPoint place) {
    return PumpUntil([&] {
        const wxPoint screen = window.GetScreenPosition() + place;
        if (wxGetMousePosition() == screen) {
            return true;
        }
        wxUIActionSimulator().MouseMove(screen);
        return false;
    });
}

void MoveTo(const wxWindow& window, wxPoint place) {
    EXPECT_TRUE(FollowTo(window, place));
    EXPECT_TRUE(PumpUntil([&] { return IsUnderPointer(window); }));
}

// From where the pointer is.
void MoveInSteps(const wxWindow& window, wxPoint to) {
    constexpr int kSteps = 10;
    const wxPoint start = wxGetMousePosition();
    const wxPoint way = window.GetScreenPosition() + to - start;
    for (int step = 1; step <= kSteps; ++step) {
        wxUIActionSimulator().MouseMove(start + way * step / kSteps);
    }
    EXPECT_TRUE(FollowTo(window, to));
}

struct WatchedDrag {
    bool begun = false;
    gpointer context = nullptr;  // Null again once all of it is gone, the icon on screen too.

    static void OnBegin(GtkWidget*, GdkDragContext* context, gpointer self) {
        auto* const drag = static_cast<WatchedDrag*>(self);
        drag->begun = true;
        drag->context = context;
        g_object_add_weak_pointer(G_OBJECT(context), &drag->context);
    }
};

// The entry keeps it to itself; it tells of the end of what an input method has begun.
GtkIMContext* InputMethodOf(GtkEntry* entry) {
    GtkIMContext* found = nullptr;
    const guint signal = g_signal_lookup("preedit-changed", GTK_TYPE_IM_CONTEXT);
    const auto onSignal =
        +[](GSignalInvocationHint*, guint, const GValue* values, gpointer data) -> gboolean {
        if (GTK_IS_IM_MULTICONTEXT(g_value_get_object(&values[0]))) {
            *static_cast<GtkIMContext**>(data) = GTK_IM_CONTEXT(g_value_get_object(&values[0]));
        }
        return TRUE;
    };
    const gulong hook = g_signal_add_emission_hook(signal, 0, onSignal, &found, nullptr);
    g_object_set(entry, "im-module", nullptr, nullptr);
    g_signal_remove_emission_hook(signal, hook);
    return found;
}

void ClickTimes(const wxWindow& window, wxPoint place, wxMouseButton button, int times) {
    MoveTo(window, place);
    SetDoubleClickTime(times > 1 ? kAlwaysMilliseconds : kNeverMilliseconds);
    for (int click = 0; click < times; ++click) {
        EXPECT_TRUE(
            ActAndAwait([&] { wxUIActionSimulator().MouseClick(button); }, UpEvent(button)));
    }
    SetDoubleClickTime(kNeverMilliseconds);
}

}  // namespace

void Press(int key, int modifiers) {
    // Each modifier is a key of its own.
    const int keys = 1 + std::popcount(static_cast<unsigned>(modifiers));
    EXPECT_TRUE(
        ActAndAwait([&] { wxUIActionSimulator().Char(key, modifiers); }, wxEVT_KEY_UP, keys))
        << "key " << key << " with modifiers " << modifiers;
}

void Type(const char* text) {
    for (const char* character = text; *character != '\0'; ++character) {
        const char one[] = {*character, '\0'};
        EXPECT_TRUE(ActAndAwait([&] { wxUIActionSimulator().Text(one); }, wxEVT_KEY_UP)) << text;
    }
}

void PressSymbol(wxWindow& focused, unsigned keySymbol) {
    GdkWindow* const window = gtk_widget_get_window(gtk_widget_get_toplevel(focused.GetHandle()));
    GdkSeat* const seat = gdk_display_get_default_seat(gdk_window_get_display(window));
    for (const GdkEventType type : {GDK_KEY_PRESS, GDK_KEY_RELEASE}) {
        GdkEvent* const event = gdk_event_new(type);
        event->key.window = GDK_WINDOW(g_object_ref(window));
        event->key.send_event = TRUE;
        event->key.time = GDK_CURRENT_TIME;
        event->key.keyval = keySymbol;
        gdk_event_set_device(event, gdk_seat_get_keyboard(seat));
        gtk_main_do_event(event);
        gdk_event_free(event);
    }
}

void Commit(const wxWindow& field, const char* text) {
    GtkIMContext* const context = InputMethodOf(GTK_ENTRY(field.GetHandle()));
    ASSERT_NE(context, nullptr);
    g_signal_emit_by_name(context, "commit", text);
}

void Click(const wxWindow& window, wxPoint place, wxMouseButton button) {
    ClickTimes(window, place, button, 1);
}

void ClickTwice(const wxWindow& window, wxPoint place) {
    ClickTimes(window, place, wxMOUSE_BTN_LEFT, 2);
}

void ClickThreeTimes(const wxWindow& window, wxPoint place) {
    ClickTimes(window, place, wxMOUSE_BTN_LEFT, 3);
}

void Drag(const wxWindow& window, wxPoint from, wxPoint to) {
    SetDoubleClickTime(kNeverMilliseconds);
    MoveTo(window, from);
    EXPECT_TRUE(ActAndAwait([] { wxUIActionSimulator().MouseDown(); }, wxEVT_LEFT_DOWN));
    MoveInSteps(window, to);
    EXPECT_TRUE(ActAndAwait([] { wxUIActionSimulator().MouseUp(); }, wxEVT_LEFT_UP));
}

void DragAndDrop(const wxWindow& fromWindow, wxPoint from, const wxWindow& toWindow, wxPoint to) {
    GtkWidget* const source = fromWindow.GetHandle();
    WatchedDrag drag;
    const gulong handler =
        g_signal_connect(source, "drag-begin", G_CALLBACK(&WatchedDrag::OnBegin), &drag);
    SetDoubleClickTime(kNeverMilliseconds);
    MoveTo(fromWindow, from);
    EXPECT_TRUE(ActAndAwait([] { wxUIActionSimulator().MouseDown(); }, wxEVT_LEFT_DOWN));
    MoveInSteps(toWindow, to);
    EXPECT_TRUE(PumpUntil([&] { return drag.begun; }));
    wxUIActionSimulator().MouseUp();
    EXPECT_TRUE(PumpUntil([&] { return drag.context == nullptr; }));
    g_signal_handler_disconnect(source, handler);
}

}  // namespace zeldlg::test::user
