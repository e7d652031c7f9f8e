#include "widgets/accessible.h"

#include <gtk/gtk.h>

#include <algorithm>

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

wxString RuleState(const wxString& rule, bool met) {
    return met ? FormatTranslated("Met: %s", rule) : FormatTranslated("Not met: %s", rule);
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
