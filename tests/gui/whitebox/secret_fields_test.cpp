// What input methods and on-screen keyboards are told about the fields that take a secret. No other
// program can see it, so it is looked at from the inside.
#include <gtest/gtest.h>
#include <gtk/gtk.h>
#include <memory>
#include <vector>

#include "dialogs/unlock_with_cr_dialog.h"
#include "pin/legal_signature_dialog.h"
#include "pin/pin_prompt_dialog.h"
#include "policy/change_pin_dialog.h"
#include "widgets/secure_text_control.h"

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
    ExpectSecretFields(*std::make_unique<CPinEntryDialog>(nullptr, "Card", rule, PinFailureLines()),
                       1);
    ExpectSecretFields(
        *std::make_unique<CLegalSignatureDialog>(nullptr, "Card", rule, PinFailureLines()), 1);
}

TEST(SecretFields, AreDeclaredAsSuchInTheChangeDialog) {
    for (const bool policed : {false, true}) {
        ChangePinPrompt prompt;
        prompt.policed = policed;
        ExpectSecretFields(*std::make_unique<CChangePinDialog>(nullptr, prompt), 3);
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
        ExpectSecretFields(*std::make_unique<CUnlockWithCRDialog>(prompt), askNewPin ? 2 : 0);
    }
}

TEST(SecretFields, TheMaskedControlIsOne) {
    const auto dialog = std::make_unique<wxDialog>(nullptr, wxID_ANY, wxString());
    new CSecureTextControl(dialog.get(), wxID_ANY, 0, 0, wxDefaultSize, true, 0);
    ExpectSecretFields(*dialog, 1);
}

}  // namespace

}  // namespace zeldlg
