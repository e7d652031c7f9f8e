// What no host can bring about: texts of an input method in the response field, windows of others.
#include <gtest/gtest.h>
#include <gtk/gtk.h>
#include <wx/combobox.h>

#include <memory>
#include <vector>

#include "controls.h"
#include "dialogs/select_unblock_method_dialog.h"
#include "dialogs/unlock_with_cr_dialog.h"
#include "test_app.h"

namespace zeldlg {

namespace {

using test::PumpUntil;

class UnlockWithCr : public testing::Test {
protected:
    UnlockWithCr()
        : m_dialog(new CUnlockWithCRDialog({.tokenLabel = "Card",
                                            .challenge = "\x01",
                                            .serialNumber = "1",
                                            .responseLength = 8,
                                            .newPinBounds = {.min = 4, .max = 8},
                                            .askNewPin = false})) {
        for (wxWindow* const child : m_dialog->GetChildren()) {
            auto* const field = dynamic_cast<wxTextCtrl*>(child);
            if (field != nullptr && field->IsEditable()) {
                m_field = field;
            }
        }
    }
    ~UnlockWithCr() override {
        m_dialog->Destroy();
        wxTheApp->ProcessIdle();
    }

    // What an input method does with a finished text, at any time.
    void Commit(const char* text) {
        g_signal_emit_by_name(m_field->GetHandle(), "insert-at-cursor", text);
        wxTheApp->ProcessPendingEvents();
    }

    CUnlockWithCRDialog* m_dialog;
    wxTextCtrl* m_field = nullptr;
};

TEST_F(UnlockWithCr, ATextOfAnInputMethodIsTakenBackWithoutMovingTheCaret) {
    m_field->SetValue("112233");
    m_field->SetInsertionPoint(2);
    Commit("aB ");
    EXPECT_EQ(m_field->GetValue(), "11aB 2233");
    EXPECT_EQ(m_field->GetInsertionPoint(), 5);
    for (const char* const text : {"g", "12g34", "\xE6\xBC\xA2"}) {
        Commit(text);
        EXPECT_EQ(m_field->GetValue(), "11aB 2233") << text;
        EXPECT_EQ(m_field->GetInsertionPoint(), 5) << text;
    }
}

TEST_F(UnlockWithCr, WhatIsTypedAfterARefusedTextStaysInOrder) {
    m_field->SetValue("1122");
    m_field->SetInsertionPoint(2);
    for (const char* const text : {"g", "3", "x", "4"}) {
        g_signal_emit_by_name(m_field->GetHandle(), "insert-at-cursor", text);
    }
    wxTheApp->ProcessPendingEvents();
    EXPECT_EQ(m_field->GetValue(), "113422");
}

// As a menu a thousand of them take seconds, and so it must not be made as one first.
TEST(UnblockMethod, MoreThanAHundredAlgorithmsDropDownAsAList) {
    for (const size_t count : {100, 101}) {
        const auto dialog =
            std::make_unique<CSelectUnblockMethodDialog>(false, std::vector<uint32_t>(count, 1));
        AtkObject* const rows = gtk_combo_box_get_popup_accessible(
            GTK_COMBO_BOX(test::Nth<wxComboBox>(*dialog, 0).GetHandle()));
        EXPECT_EQ(atk_object_get_role(rows) == ATK_ROLE_MENU, count == 100) << count;
    }
}

TEST_F(UnlockWithCr, TheUnblockDialogsBelongToNoOtherWindow) {
    auto* const other = new wxDialog(nullptr, wxID_ANY, "Another window");
    other->Show();
    ASSERT_TRUE(PumpUntil([&] { return gtk_widget_get_mapped(other->GetHandle()); }));
    auto* const method = new CSelectUnblockMethodDialog(true, {0, 1});
    for (wxDialog* const dialog :
         {static_cast<wxDialog*>(m_dialog), static_cast<wxDialog*>(method)}) {
        EXPECT_EQ(dialog->GetParent(), nullptr);
        EXPECT_EQ(dialog->GetParentForModalDialog(), nullptr);
    }
    method->Destroy();
    other->Destroy();
}

TEST(UnblockMethod, ChoicesHaveTheirIdentifiers) {
    auto* const dialog = new CSelectUnblockMethodDialog(true, {0});
    const auto labelOf = [dialog](wxWindowID id) {
        return dynamic_cast<wxRadioButton&>(*dialog->FindWindow(id)).GetLabelText();
    };
    EXPECT_EQ(labelOf(6402), "Unlock PIN using the PUK");
    EXPECT_EQ(labelOf(6403), "Unlock PIN via off-line PIN unlock");
    dialog->Destroy();
    wxTheApp->ProcessIdle();
}

}  // namespace

}  // namespace zeldlg
