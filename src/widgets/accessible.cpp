#include "widgets/accessible.h"

#include <gtk/gtk.h>

#include <algorithm>
#include <memory>

#include "resources/texts.h"

namespace zeldlg {

namespace {

constexpr const wchar_t* kNoBreakSpace = L"\u00A0";

// What has the keyboard focus: of a control that scrolls or drops down, the widget inside.
GtkWidget* FocusedWidget(const wxWindow& window) {
    GtkWidget* const widget = window.GetHandle();
    return GTK_IS_SCROLLED_WINDOW(widget) || GTK_IS_COMBO_BOX(widget)
               ? gtk_bin_get_child(GTK_BIN(widget))
               : widget;
}

AtkObject* AccessibleOf(const wxWindow& window) {
    return gtk_widget_get_accessible(FocusedWidget(window));
}

struct Unref {
    void operator()(gpointer object) const { g_object_unref(object); }
};

// What a screen reader takes for the control with the keyboard: of a list, the row.
std::unique_ptr<AtkObject, Unref> FocusedObject(const wxWindow& window) {
    if (GtkWidget* const widget = FocusedWidget(window); GTK_IS_TREE_VIEW(widget)) {
        GtkTreePath* path = nullptr;
        gtk_tree_view_get_cursor(GTK_TREE_VIEW(widget), &path, nullptr);
        if (path != nullptr) {
            const int row = gtk_tree_path_get_indices(path)[0];
            gtk_tree_path_free(path);
            AtkTable* const rows = ATK_TABLE(AccessibleOf(window));
            return std::unique_ptr<AtkObject, Unref>(atk_table_ref_at(rows, row, 0));
        }
    }
    return std::unique_ptr<AtkObject, Unref>(
        static_cast<AtkObject*>(g_object_ref(AccessibleOf(window))));
}

// Of a label: the widget that it stands for.
constexpr const char* kTied = "zeldlg-tied-to";

void UndoGuess(GtkLabel* label, GParamSpec*, gpointer) {
    const GtkWidget* const guessed = gtk_label_get_mnemonic_widget(label);
    gpointer const tied = g_object_get_data(G_OBJECT(label), kTied);
    if (guessed != nullptr && guessed != tied) {
        gtk_label_set_mnemonic_widget(label, static_cast<GtkWidget*>(tied));
    }
}

bool HoldsKeyboardControl(const wxWindow& window) {
    return std::any_of(window.GetChildren().begin(), window.GetChildren().end(),
                       [](const wxWindow* child) {
                           return child->AcceptsFocusFromKeyboard() || HoldsKeyboardControl(*child);
                       });
}

GtkWidget* LabelOf(const wxWindow& window) {
    GtkWidget* const widget = window.GetHandle();
    return GTK_IS_FRAME(widget) ? gtk_frame_get_label_widget(GTK_FRAME(widget)) : widget;
}

// Whenever the order of controls changes, the toolkit takes every label to stand for the next
// control that accepts the keyboard.
void UndoGuessesBelow(const wxWindow& window) {
    for (const wxWindow* const child : window.GetChildren()) {
        if (GtkWidget* const label = LabelOf(*child); GTK_IS_LABEL(label)) {
            g_signal_connect(label, "notify::mnemonic-widget", G_CALLBACK(UndoGuess), nullptr);
        }
        UndoGuessesBelow(*child);
    }
}

}  // namespace

void SetAccessibleName(wxWindow& window, const wxString& name) {
    atk_object_set_name(AccessibleOf(window), name.utf8_str());
}

void SetAccessibleDescription(wxWindow& window, const wxString& description) {
    atk_object_set_description(AccessibleOf(window), description.utf8_str());
}

void Announce(wxWindow& window, const wxString& text) {
    g_signal_emit_by_name(AccessibleOf(window), "announcement", text.utf8_str().data());
}

LiveDescription::LiveDescription(wxWindow& control) : m_control(control) {
    Describe({});  // a first description is no change yet: nobody would be told of it
    m_control.Bind(wxEVT_KEY_DOWN, &LiveDescription::OnKey, this);
    m_control.Bind(wxEVT_KILL_FOCUS, &LiveDescription::OnKeyboardLeaves, this);
    m_control.Bind(wxEVT_ACTIVATE, &LiveDescription::OnActivate, this);
}

LiveDescription::~LiveDescription() {
    m_control.Unbind(wxEVT_KEY_DOWN, &LiveDescription::OnKey, this);
    m_control.Unbind(wxEVT_KILL_FOCUS, &LiveDescription::OnKeyboardLeaves, this);
    m_control.Unbind(wxEVT_ACTIVATE, &LiveDescription::OnActivate, this);
}

void LiveDescription::Tell(const wxString& whole, const wxString& news) {
    m_state.Tell(whole, news);
    if (HasKeyboard() || IsRunning()) {
        StartOnce(SpokenState::kPause);
    } else {
        Publish(false);
    }
}

void LiveDescription::OnKey(wxKeyEvent& event) {
    if (IsRunning()) {
        StartOnce(SpokenState::kPause);
    }
    event.Skip();
}

// A screen reader takes the control for the one with the keyboard until it hears of the next.
void LiveDescription::OnKeyboardLeaves(wxFocusEvent& event) {
    StartOnce(SpokenState::kPause);
    event.Skip();
}

void LiveDescription::OnActivate(wxActivateEvent& event) {
    if (!event.GetActive()) {
        StartOnce(SpokenState::kPause);
    }
    event.Skip();
}

void LiveDescription::Notify() { Publish(HasKeyboard()); }

bool LiveDescription::HasKeyboard() const {
    const auto* const window = dynamic_cast<const wxTopLevelWindow*>(&m_control);
    return window != nullptr ? gtk_window_is_active(GTK_WINDOW(window->GetHandle())) != FALSE
                             : m_control.HasFocus();
}

void LiveDescription::Publish(bool hasKeyboard) {
    if (const std::optional<wxString> due = m_state.Due(hasKeyboard)) {
        Describe(*due);
    }
}

void LiveDescription::MoveToRow() { Describe(m_state.Anew()); }

void LiveDescription::Describe(const wxString& text) {
    if (const auto object = FocusedObject(m_control)) {
        atk_object_set_description(object.get(), text.utf8_str());
    }
}

void TellRuleState(wxWindow& window, const wxString& rule, bool met) {
    const wxString state = RuleState(rule, met);
    SetAccessibleName(window, state);
    Announce(window, state);
}

void SetLabelFor(wxStaticText& label, wxWindow& field) {
    GtkWidget* const widget = label.GetHandle();
    GtkWidget* const target = FocusedWidget(field);
    g_object_set_data(G_OBJECT(widget), kTied, target);
    gtk_label_set_mnemonic_widget(GTK_LABEL(widget), target);
    wxString name = label.GetLabelText();
    name.Replace("\n", " ");  // from wrapping
    if (name.EndsWith(":")) {
        name.RemoveLast();
        // French has a blank before a colon.
        name.EndsWith(kNoBreakSpace, &name);
    }
    SetAccessibleName(field, name);
}

void SetCaptionFor(wxStaticText& caption, wxStaticText& value) {
    AtkObject* const one = AccessibleOf(caption);
    AtkObject* const other = AccessibleOf(value);
    atk_object_add_relationship(one, ATK_RELATION_LABEL_FOR, other);
    atk_object_add_relationship(other, ATK_RELATION_LABELLED_BY, one);
}

void SetDescriptionFor(wxWindow& text, wxWindow& control) {
    AtkObject* const one = AccessibleOf(text);
    AtkObject* const other = AccessibleOf(control);
    atk_object_add_relationship(one, ATK_RELATION_DESCRIPTION_FOR, other);
    atk_object_add_relationship(other, ATK_RELATION_DESCRIBED_BY, one);
}

void MarkAsSecretField(wxTextCtrl& field) {
    GtkEntry* const entry = GTK_ENTRY(field.GetHandle());
    // Not the purpose "PIN", which offers digits only: a PIN may have any characters.
    gtk_entry_set_input_purpose(entry, GTK_INPUT_PURPOSE_PASSWORD);
    // The emoji chooser keeps a history of what was chosen.
    gtk_entry_set_input_hints(
        entry, static_cast<GtkInputHints>(GTK_INPUT_HINT_NO_SPELLCHECK | GTK_INPUT_HINT_NO_EMOJI));
}

void MarkAsDecoration(wxWindow& picture) {
    atk_object_set_role(AccessibleOf(picture), ATK_ROLE_REDUNDANT_OBJECT);
}

void DescribeWindow(wxTopLevelWindow& window, WindowRole role) {
    UndoGuessesBelow(window);
    if (!HoldsKeyboardControl(window)) {
        // It would take the focus itself, and has nothing to say.
        gtk_widget_set_can_focus(window.m_wxwindow, FALSE);
    }
    atk_object_set_role(AccessibleOf(window),
                        role == WindowRole::Alert ? ATK_ROLE_ALERT : ATK_ROLE_DIALOG);
}

}  // namespace zeldlg
