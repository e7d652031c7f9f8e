// Texts of an input method in every PIN field of the dialogs that limit theirs to ASCII. No host
// and no key can bring them about as an input method does: finished, past the events for keys.
#include <gtest/gtest.h>
#include <wx/app.h>

#include <vector>

#include "dialogs/unlock_with_cr_dialog.h"
#include "policy/change_pin_dialog.h"
#include "user.h"

namespace zeldlg::test {

namespace {

std::vector<wxTextCtrl*> SecretFields(const wxWindow& window) {
    std::vector<wxTextCtrl*> fields;
    for (wxWindow* const child : window.GetChildren()) {
        auto* const field = dynamic_cast<wxTextCtrl*>(child);
        if (field != nullptr && field->HasFlag(wxTE_PASSWORD)) {
            fields.push_back(field);
        }
    }
    return fields;
}

wxDialog* NewChangeDialog() { return new CChangePinDialog(nullptr, ChangePinPrompt()); }

wxDialog* NewUnlockDialog() {
    return new CUnlockWithCRDialog({.tokenLabel = "Card",
                                    .challenge = "\x01",
                                    .serialNumber = "1",
                                    .responseLength = 8,
                                    .newPinBounds = {.min = 4, .max = 8},
                                    .askNewPin = true});
}

struct LimitedDialog {
    const char* name;
    wxDialog* (*make)();
    size_t fields;
};

class AsciiFields : public testing::TestWithParam<LimitedDialog> {
protected:
    AsciiFields() : m_dialog(GetParam().make()), m_fields(SecretFields(*m_dialog)) {}
    ~AsciiFields() override {
        m_dialog->Destroy();
        wxTheApp->ProcessIdle();
    }

    wxDialog* m_dialog;
    std::vector<wxTextCtrl*> m_fields;
};

TEST_P(AsciiFields, ARefusedTextLeavesTextAndCaretWhereTheyWere) {
    ASSERT_EQ(m_fields.size(), GetParam().fields);
    for (wxTextCtrl* const field : m_fields) {
        field->SetValue("1234");
        for (const long caret : {0L, 2L, 4L}) {
            field->SetInsertionPoint(caret);
            user::Commit(*field, "\xC3\xA9\xE6\xBC\xA2");
            EXPECT_EQ(field->GetValue(), "1234");
            EXPECT_EQ(field->GetInsertionPoint(), caret);
        }
    }
}

TEST_P(AsciiFields, WhatIsTypedAfterARefusedTextStaysInOrder) {
    for (wxTextCtrl* const field : m_fields) {
        field->SetValue("1122");
        field->SetInsertionPoint(2);
        for (const char* const text : {"\xC3\xA9", "3", "\xE6\xBC\xA2", "4"}) {
            user::Commit(*field, text);
        }
        EXPECT_EQ(field->GetValue(), "113422");
    }
}

INSTANTIATE_TEST_SUITE_P(Dialogs, AsciiFields,
                         testing::Values(LimitedDialog{"Change", NewChangeDialog, 3},
                                         LimitedDialog{"Unlock", NewUnlockDialog, 2}),
                         [](const auto& dialog) { return dialog.param.name; });

}  // namespace

}  // namespace zeldlg::test
