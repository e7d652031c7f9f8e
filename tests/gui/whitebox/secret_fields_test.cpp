// What input methods and on-screen keyboards are told about the fields that take a secret, and what
// they bring into them. No other program can see it, so it is looked at from the inside.
#include <gtest/gtest.h>
#include <gtk/gtk.h>
#include <vector>

#include "dialogs/common/window_ptr.h"
#include "dialogs/unlock_with_cr_dialog.h"
#include "pin/legal_signature_dialog.h"
#include "pin/pin_entry_dialog.h"
#include "pin/pin_field.h"
#include "pin/secure_text_control.h"
#include "policy/change_pin_dialog.h"

namespace zeldlg {

namespace {

void Collect(GtkWidget* widget, gpointer entries) {
    if (GTK_IS_ENTRY(widget) && gtk_entry_get_visibility(GTK_ENTRY(widget)) == FALSE) {
        static_cast<std::vector<GtkEntry*>*>(entries)->push_back(GTK_ENTRY(widget));
    } else if (GTK_IS_CONTAINER(widget)) {
        gtk_container_forall(GTK_CONTAINER(widget), Collect, entries);
    }
}

void ExpectSecretFields(const wxWindow& window, size_t count) {
    std::vector<GtkEntry*> entries;
    Collect(window.GetHandle(), &entries);
    EXPECT_EQ(entries.size(), count);
    for (GtkEntry* const entry : entries) {
        EXPECT_EQ(gtk_entry_get_input_purpose(entry), GTK_INPUT_PURPOSE_PASSWORD);
        const int hints = gtk_entry_get_input_hints(entry);
        EXPECT_TRUE(hints & GTK_INPUT_HINT_NO_SPELLCHECK);
        EXPECT_TRUE(hints & GTK_INPUT_HINT_NO_EMOJI);
        EXPECT_FALSE(hints & GTK_INPUT_HINT_WORD_COMPLETION);
    }
}

TEST(SecretFields, AreDeclaredAsSuchInThePinDialogs) {
    const PinLengthRule rule(4, 8);
    ExpectSecretFields(*MakeWindow<CPinEntryDialog>(nullptr, "Card", rule, PinFailureLines()), 1);
    ExpectSecretFields(*MakeWindow<CLegalSignatureDialog>(nullptr, "Card", rule, PinFailureLines()),
                       1);
}

TEST(SecretFields, AreDeclaredAsSuchInTheChangeDialog) {
    for (const bool policed : {false, true}) {
        ChangePinPrompt prompt;
        prompt.policed = policed;
        ExpectSecretFields(*MakeWindow<CChangePinDialog>(nullptr, prompt), 3);
    }
}

TEST(SecretFields, AreDeclaredAsSuchInTheChallengeDialogWhereItAsksForANewPin) {
    for (const bool askNewPin : {false, true}) {
        const UnlockWithCRPrompt prompt{.tokenLabel = "Card",
                                        .challenge = "\x01",
                                        .serialNumber = "1",
                                        .responseLength = 8,
                                        .newPinBounds = {.min = 4, .max = 8},
                                        .askNewPin = askNewPin};
        ExpectSecretFields(*MakeWindow<CUnlockWithCRDialog>(prompt), askNewPin ? 2 : 0);
    }
}

TEST(SecretFields, TheMaskedControlIsOne) {
    const auto dialog = MakeWindow<wxDialog>(nullptr, wxID_ANY, wxString());
    new CSecureTextControl(dialog.get(), wxID_ANY, 0, 0, wxDefaultSize, true, 0);
    ExpectSecretFields(*dialog, 1);
}

// What input methods and pastes do: they put a text at the caret.
void Commit(PinField& field, const char* text) {
    g_signal_emit_by_name(field.GetHandle(), "insert-at-cursor", text);
}

class PinFieldTest : public testing::Test {
protected:
    PinField& NewField(PinField::Accepts accepts) {
        auto* const label = new wxStaticText(m_dialog.get(), wxID_ANY, "Enter PIN:");
        auto* const field = new PinField(m_dialog.get(), *label, accepts);
        field->Bind(wxEVT_TEXT, [this](wxCommandEvent&) { ++m_changes; });
        return *field;
    }
    int Changes() const { return m_changes; }

private:
    WindowPtr<wxDialog> m_dialog = MakeWindow<wxDialog>(nullptr, wxID_ANY, wxString());
    int m_changes = 0;
};

TEST_F(PinFieldTest, CommitsAreFreedOfWhatIsNotAscii) {
    PinField& field = NewField(PinField::Accepts::AsciiOnly);
    Commit(field, "1234");
    field.SetInsertionPoint(2);
    Commit(field, "\u00e95\u20ac6");
    EXPECT_EQ(std::string_view(field.Pin()), "125634");
    EXPECT_EQ(field.GetInsertionPoint(), 4);
    EXPECT_EQ(Changes(), 2);
}

TEST_F(PinFieldTest, ARefusedCommitLeavesTheCaretWhereItIs) {
    PinField& field = NewField(PinField::Accepts::AsciiOnly);
    Commit(field, "1234");
    field.SetInsertionPoint(1);
    Commit(field, "\u00e9\U0001f511");
    EXPECT_EQ(std::string_view(field.Pin()), "1234");
    EXPECT_EQ(field.GetInsertionPoint(), 1);
    EXPECT_EQ(Changes(), 1);
}

TEST_F(PinFieldTest, TakesEverythingWhereThatIsAllowed) {
    PinField& field = NewField(PinField::Accepts::Everything);
    Commit(field, "1\u00e9");
    EXPECT_EQ(std::string_view(field.Pin()), "1\u00e9");
    EXPECT_EQ(field.Length(), 2U);
}

}  // namespace

}  // namespace zeldlg
