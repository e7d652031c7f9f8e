// What a typed character costs on the screen: where nothing changed nothing is laid out or painted
// but the field itself.
#include <gtest/gtest.h>
#include <gtk/gtk.h>

#include <chrono>
#include <memory>
#include <set>
#include <string>
#include <vector>

#include "controls.h"
#include "dialogs/digital_id_dialog.h"
#include "pin/pin_prompt_dialog.h"
#include "policy/change_pin_dialog.h"
#include "test_app.h"
#include "user.h"

namespace zeldlg {

namespace {

using test::Nth;
using test::PumpUntil;

// Sees what happens to each widget of a window, by the widget's type.
class Watch {
public:
    using Types = std::multiset<std::string>;

    Watch() = default;
    // The toolkit may keep a widget beyond its window.
    ~Watch() {
        for (GtkWidget* const widget : m_widgets) {
            g_signal_handlers_disconnect_by_data(widget, this);
            g_object_unref(widget);
        }
    }
    Watch(const Watch&) = delete;
    Watch& operator=(const Watch&) = delete;

    void Begin(GtkWidget* widget) {
        m_widgets.push_back(GTK_WIDGET(g_object_ref(widget)));
        g_signal_connect(widget, "draw", G_CALLBACK(&Watch::OnDraw), this);
        g_signal_connect(widget, "size-allocate", G_CALLBACK(&Watch::OnAllocate), this);
        if (GTK_IS_CONTAINER(widget)) {
            gtk_container_forall(
                GTK_CONTAINER(widget),
                [](GtkWidget* child, gpointer self) { static_cast<Watch*>(self)->Begin(child); },
                this);
        }
    }
    bool HasDrawn(const char* type) const { return m_drawn.count(type) != 0; }
    const Types& Allocated() const { return m_allocated; }
    void Forget() {
        m_drawn.clear();
        m_allocated.clear();
    }

private:
    static gboolean OnDraw(GtkWidget* widget, cairo_t*, Watch* self) {
        self->m_drawn.insert(G_OBJECT_TYPE_NAME(widget));
        return FALSE;
    }
    static void OnAllocate(GtkWidget* widget, GdkRectangle*, Watch* self) {
        self->m_allocated.insert(G_OBJECT_TYPE_NAME(widget));
    }

    std::vector<GtkWidget*> m_widgets;
    Types m_drawn;
    Types m_allocated;
};

constexpr std::chrono::milliseconds kQuiet(200);
constexpr const char* kField = "GtkEntry";
constexpr const char* kRows = "GtkTreeView";

class Repaint : public testing::Test {
protected:
    void Open(wxDialog& dialog, const wxWindow& focused, const char* type = kField) {
        m_watch.Begin(dialog.m_widget);
        dialog.Show();
        ASSERT_TRUE(PumpUntil(
            [&] { return focused.HasFocus() && dialog.IsActive() && m_watch.HasDrawn(type); }));
        Settle();
    }

    // What one key leads to, until all of it is painted.
    void Type(const char* text) {
        Settle();
        test::user::Type(text);
        ASSERT_TRUE(PumpUntil([this] { return m_watch.HasDrawn(kField); }));
    }

    void PressDown() {
        Settle();
        test::user::Press(WXK_DOWN);
        ASSERT_TRUE(PumpUntil([this] { return m_watch.HasDrawn(kRows); }));
    }

    // The caret blinks: that is the field's own painting.
    void ExpectOnlyTheFocusedPainted() const {
        EXPECT_EQ(m_watch.Allocated(), Watch::Types());
        for (const char* const type : {"GtkLabel", "GtkImage", "GtkButton", "GtkTextView"}) {
            EXPECT_FALSE(m_watch.HasDrawn(type)) << type;
        }
    }

    const Watch& Seen() const { return m_watch; }

private:
    // Nothing but the caret has been painted for a while.
    void Settle() {
        auto quietSince = std::chrono::steady_clock::now();
        ASSERT_TRUE(PumpUntil([this, &quietSince] {
            const auto now = std::chrono::steady_clock::now();
            if (!m_watch.Allocated().empty() || m_watch.HasDrawn("GtkLabel")) {
                quietSince = now;
            }
            m_watch.Forget();
            return now - quietSince > kQuiet;
        }));
    }

    Watch m_watch;
};

TEST_F(Repaint, OfThePinDialogIsTheFieldAlone) {
    const auto dialog =
        std::make_unique<CPinEntryDialog>(nullptr, "Card", PinLengthRule(4, 8), PinFailureLines());
    Open(*dialog, Nth<PinField>(*dialog, 0));
    for (const char* const digit : {"1", "2", "3"}) {
        Type(digit);
        ExpectOnlyTheFocusedPainted();
    }
    Type("4");  // now the rule is met: that has to be seen
    EXPECT_TRUE(Seen().HasDrawn("GtkButton"));
    for (const char* const digit : {"5", "6"}) {
        Type(digit);
        ExpectOnlyTheFocusedPainted();
    }
}

TEST_F(Repaint, OfTheChangeDialogIsTheFieldAlone) {
    ChangePinPrompt prompt;
    prompt.bounds = {.newValue = {4, 8}, .oldValue = {4, 8}};
    prompt.policed = true;
    const auto dialog = std::make_unique<CChangePinDialog>(nullptr, prompt);
    Open(*dialog, Nth<PinField>(*dialog, 0));
    for (const char* const digit : {"1", "2", "3"}) {
        Type(digit);
        ExpectOnlyTheFocusedPainted();
    }
}

TEST_F(Repaint, OfAnotherDigitalIdIsTheListAlone) {
    DigitalIdPrompt prompt;
    prompt.validFrom = "2024-01-01";
    prompt.validTo = "2034-01-01";
    prompt.count = 4;
    prompt.directory = "corp.example";
    const auto dialog = std::make_unique<CDigitalIDSelectionDialog>(prompt);
    Open(*dialog, Nth<ChoiceList>(*dialog, 0), kRows);
    for (int row = 1; row < 4; ++row) {
        PressDown();
        EXPECT_EQ(Nth<ChoiceList>(*dialog, 0).GetSelection(), row);
        ExpectOnlyTheFocusedPainted();
    }
}

}  // namespace

}  // namespace zeldlg
