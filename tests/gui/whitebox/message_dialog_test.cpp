// The message dialog and the boxes made of it, also those that no host can reach.
#include "dialogs/message_dialog.h"

#include <gtest/gtest.h>
#include <gtk/gtk.h>
#include <wx/image.h>
#include <wx/modalhook.h>
#include <wx/mstream.h>
#include <wx/statbmp.h>
#include <wx/uiaction.h>

#include <algorithm>
#include <cstring>
#include <functional>
#include <memory>
#include <utility>
#include <vector>

#include "biometric/retry_boxes.h"
#include "controls.h"
#include "dialogs/message_boxes.h"
#include "resources/pictures.h"
#include "runtime/handlers/handlers.h"
#include "test_app.h"

namespace zeldlg {

namespace {

using test::AllOf;
using test::HasStyle;
using test::Nth;
using test::PumpUntil;
using test::SamePicture;

wxString TextOf(const wxWindow& dialog) { return Nth<wxStaticText>(dialog, 0).GetLabelText(); }

std::vector<wxString> ButtonsOf(const wxWindow& dialog) {
    std::vector<wxString> labels;
    for (const wxButton* const button : AllOf<wxButton>(dialog)) {
        labels.push_back(button->GetLabel());
    }
    return labels;
}

bool HasIcon(const wxWindow& dialog, const std::string& name) {
    return SamePicture(
        Nth<wxStaticBitmap>(dialog, 0).GetBitmap(),
        ThemeIcon(name.c_str(), 48, dialog.GetForegroundColour()).GetBitmap(wxSize(48, 48)));
}

class MessageDialog : public testing::Test {
protected:
    ~MessageDialog() override {
        if (m_dialog != nullptr) {
            m_dialog->Destroy();
        }
        wxTheApp->ProcessIdle();
    }

    CMessageDialog& Make(long style, int64_t seconds = 0, const wxString& text = "Some text") {
        m_dialog = new CMessageDialog(nullptr, "Some caption", text, style, seconds);
        return *m_dialog;
    }

    wxButton& DefaultButton() const { return dynamic_cast<wxButton&>(*m_dialog->GetDefaultItem()); }

    CMessageDialog* m_dialog = nullptr;
};

// Some screen readers read only those of a window's texts that have three words.
TEST_F(MessageDialog, ItsButtonTellsWhatIsTooShortToBeRead) {
    const std::pair<const char*, const char*> rows[] = {{"Wrong PIN", "Wrong PIN"},
                                                        {"PIN is wrong", ""},
                                                        {"This-PIN is-wrong", "This-PIN is-wrong"}};
    for (const auto& [text, description] : rows) {
        const auto dialog =
            std::make_unique<CMessageDialog>(nullptr, "Caption", text, wxICON_ERROR, 0);
        const char* const told = atk_object_get_description(
            gtk_widget_get_accessible(Nth<wxButton>(*dialog, 0).GetHandle()));
        EXPECT_STREQ(told != nullptr ? told : "", description) << text;
    }
}

TEST_F(MessageDialog, ShowsTheIconOfTheFirstFlagThatIsSet) {
    const struct {
        long style;
        std::string icon;
    } rows[] = {
        {0x100, "dialog-warning"},     {0x200, "dialog-error"},   {0x400, "dialog-question"},
        {0x800, "dialog-information"}, {0, "dialog-information"}, {0x300, "dialog-warning"},
        {0x600, "dialog-error"},       {0x700, "dialog-warning"}, {0x500, "dialog-warning"}};
    for (const auto& row : rows) {
        EXPECT_TRUE(HasIcon(Make(row.style), row.icon)) << std::hex << row.style;
        m_dialog->Destroy();
    }
    m_dialog = nullptr;
}

TEST_F(MessageDialog, IconsDiffer) {
    const CMessageDialog& dialog = Make(0x100);
    for (const char* const other : {"dialog-error", "dialog-question", "dialog-information"}) {
        EXPECT_FALSE(HasIcon(dialog, other));
    }
}

TEST_F(MessageDialog, TheIconStandsOnTheDialogsColour) {
    Make(0x400);
    EXPECT_EQ(Nth<wxStaticBitmap>(*m_dialog, 0).GetBackgroundColour(),
              m_dialog->GetBackgroundColour());
}

TEST_F(MessageDialog, ButtonsFollowTheFlags) {
    const struct {
        long style;
        std::vector<wxString> labels;
    } rows[] = {{0, {"OK"}},
                {0x800, {"OK"}},
                {0x400, {"&Yes", "&No"}},
                {0x600, {"&Yes", "&No"}},
                {0x13ED, {"OK", "Cancel"}},
                {0x1BED, {"OK", "Cancel"}},
                {0x13EC, {"OK"}},
                {0x03ED, {"OK"}},
                {wxCANCEL, {"OK"}},
                {0x17ED, {"&Yes", "&No"}}};
    for (const auto& row : rows) {
        EXPECT_EQ(ButtonsOf(Make(row.style)), row.labels) << std::hex << row.style;
        EXPECT_EQ(DefaultButton().GetId(), wxID_OK);
        EXPECT_EQ(DefaultButton().GetLabel(), row.labels.front());
        m_dialog->Destroy();
    }
    m_dialog = nullptr;
}

TEST_F(MessageDialog, HasAFixedSize) {
    Make(0x400);
    EXPECT_EQ(m_dialog->GetMinSize(), m_dialog->GetSize());
    EXPECT_EQ(m_dialog->GetMaxSize(), m_dialog->GetSize());
    EXPECT_FALSE(m_dialog->HasFlag(wxRESIZE_BORDER));
    EXPECT_EQ(m_dialog->GetWindowStyle() & wxDEFAULT_DIALOG_STYLE, wxDEFAULT_DIALOG_STYLE);
}

TEST_F(MessageDialog, BordersAreThoseOfEachRow) {
    Make(0x400, 0, "A text that is wider than the two buttons below it");
    const wxRect icon = Nth<wxStaticBitmap>(*m_dialog, 0).GetRect();
    const wxRect text = Nth<wxStaticText>(*m_dialog, 0).GetRect();
    const wxRect yes = DefaultButton().GetRect();
    const wxRect no = m_dialog->FindWindow(wxID_CANCEL)->GetRect();
    const wxSize client = m_dialog->GetClientSize();
    EXPECT_EQ(icon.GetTopLeft(), wxPoint(20, 20));
    EXPECT_EQ(text.GetLeft() - icon.GetRight() - 1, 20);
    EXPECT_EQ(client.x - text.GetRight() - 1, 20);
    const int rowHeight = std::max(icon.height, text.height) + 40;
    EXPECT_EQ(text.y, (rowHeight - text.height) / 2);
    EXPECT_EQ(yes.y, rowHeight + 15 + 5);
    EXPECT_EQ(no.GetLeft() - yes.GetRight() - 1, 10);
    EXPECT_EQ(client.y - yes.GetBottom() - 1, 15 + 5);
    EXPECT_NEAR((yes.GetLeft() + no.GetRight() + 1) / 2, client.x / 2, 1);
}

TEST_F(MessageDialog, ASingleOkHasItsOwnBorder) {
    Make(0x200);
    const wxRect icon = Nth<wxStaticBitmap>(*m_dialog, 0).GetRect();
    const wxRect text = Nth<wxStaticText>(*m_dialog, 0).GetRect();
    const wxRect ok = DefaultButton().GetRect();
    EXPECT_EQ(ok.y, std::max(icon.height, text.height) + 40 + 20);
    EXPECT_EQ(m_dialog->GetClientSize().y - ok.GetBottom() - 1, 20);
}

TEST_F(MessageDialog, IsNotOnTheScreenBeforeItIsShown) {
    Make(0x400);
    EXPECT_FALSE(m_dialog->IsShown());
    EXPECT_FALSE(gtk_widget_get_visible(m_dialog->GetHandle()));
}

TEST_F(MessageDialog, WithoutAParentItTakesNone) {
    auto* const other = new wxDialog(nullptr, wxID_ANY, "Another window");
    other->Show();
    ASSERT_TRUE(PumpUntil([&] { return gtk_widget_get_mapped(other->GetHandle()); }));
    Make(0x400);
    EXPECT_EQ(m_dialog->GetParent(), nullptr);
    EXPECT_EQ(m_dialog->GetParentForModalDialog(), nullptr);
    EXPECT_EQ(gtk_window_get_transient_for(GTK_WINDOW(m_dialog->GetHandle())), nullptr);
    other->Destroy();
}

TEST_F(MessageDialog, BelongsToTheParentThatItIsGiven) {
    auto* const parent = new wxDialog(nullptr, wxID_ANY, "A parent");
    parent->Show();
    auto* const dialog = new CMessageDialog(parent, "Some caption", "Some text", 0x400, 0);
    EXPECT_EQ(dialog->GetParentForModalDialog(), parent);
    parent->Destroy();
}

// Ways out

/// Waits for nothing: the box may be gone before the key is released.
void Press(int key, int modifiers = wxMOD_NONE) { wxUIActionSimulator().Char(key, modifiers); }

class WaysOut : public MessageDialog {
protected:
    /// Shows the box, does something once it has the keyboard, and gives what the box returned.
    int Answer(long style, const std::function<void()>& act) {
        Make(style);
        m_dialog->CallAfter([this, &act] {
            // The toolkit says that a window has the focus as soon as that is asked for. Keys go to
            // it only once the display says so, too.
            EXPECT_TRUE(PumpUntil(
                [this] { return gtk_widget_has_focus(DefaultButton().GetHandle()) != FALSE; }));
            act();
            if (!PumpUntil([this] { return !m_dialog->IsModal(); })) {
                m_dialog->EndModal(wxID_NONE);  // a box that stays would stop all tests
            }
        });
        const int result = m_dialog->ShowModal();
        m_dialog->Destroy();
        m_dialog = nullptr;
        return result;
    }
};

TEST_F(WaysOut, EscapeIsNeverOk) {
    for (const long style : {0x200, 0x400, 0x600, 0x13ED}) {
        EXPECT_EQ(Answer(style, [] { Press(WXK_ESCAPE); }), 5101) << std::hex << style;
    }
}

TEST_F(WaysOut, TheCloseBoxIsNeverOk) {
    for (const long style : {0x200, 0x400, 0x600, 0x13ED}) {
        EXPECT_EQ(Answer(style, [this] { m_dialog->Close(); }), 5101) << std::hex << style;
    }
}

TEST_F(WaysOut, EnterIsTheDefaultButton) {
    for (const long style : {0x200, 0x400, 0x600, 0x13ED}) {
        EXPECT_EQ(Answer(style, [] { Press(WXK_RETURN); }), 5100) << std::hex << style;
    }
}

TEST_F(WaysOut, MnemonicsAnswer) {
    EXPECT_EQ(Answer(0x400, [] { Press('Y', wxMOD_ALT); }), 5100);
    EXPECT_EQ(Answer(0x400, [] { Press('N', wxMOD_ALT); }), 5101);
}

// The count-down

constexpr int kTwoTicks = 2500;

bool Waits(int milliseconds) {
    const wxLongLong end = wxGetLocalTimeMillis() + milliseconds;
    return PumpUntil([end] { return wxGetLocalTimeMillis() >= end; });
}

TEST_F(MessageDialog, CountsDownOnceASecondAndGoesOnBelowZero) {
    Make(0x600, 2);
    m_dialog->Show();
    wxLongLong last = wxGetLocalTimeMillis();
    EXPECT_EQ(DefaultButton().GetLabel(), "&Yes (2s)");
    for (const char* const label : {"&Yes (1s)", "&Yes (0s)", "&Yes (-1s)"}) {
        const wxString before = DefaultButton().GetLabel();
        ASSERT_TRUE(PumpUntil([&] { return DefaultButton().GetLabel() != before; }));
        EXPECT_EQ(DefaultButton().GetLabel(), label);
        const wxLongLong now = wxGetLocalTimeMillis();
        EXPECT_NEAR((now - last).ToDouble(), 1000, 400);
        last = now;
    }
    EXPECT_TRUE(m_dialog->IsShown());
}

TEST_F(MessageDialog, WithoutYesAndNoNothingIsCountedAndNoTimerRuns) {
    const int seen = test::GetTestApp().Seen(wxEVT_TIMER);
    Make(0x200, 3);
    m_dialog->Show();
    ASSERT_TRUE(Waits(kTwoTicks));
    EXPECT_EQ(ButtonsOf(*m_dialog), std::vector<wxString>{"OK"});
    EXPECT_EQ(test::GetTestApp().Seen(wxEVT_TIMER), seen);
}

TEST_F(MessageDialog, AYesNoBoxWithoutACountStartsNoTimer) {
    const int seen = test::GetTestApp().Seen(wxEVT_TIMER);
    Make(0x400, 0);
    m_dialog->Show();
    ASSERT_TRUE(Waits(kTwoTicks));
    EXPECT_EQ(DefaultButton().GetLabel(), "&Yes");
    EXPECT_EQ(test::GetTestApp().Seen(wxEVT_TIMER), seen);
}

TEST_F(MessageDialog, ASettingThatIsTooLargeForTheLabelIsNotShownAsTimeThatIsOver) {
    for (const int64_t seconds : {int64_t{INT32_MAX} + 1, int64_t{UINT32_MAX}}) {
        Make(0x600, seconds);
        EXPECT_EQ(DefaultButton().GetLabel(), "&Yes (2147483647s)") << seconds;
        m_dialog->Destroy();
    }
    m_dialog = nullptr;
}

TEST_F(MessageDialog, TheYesButtonHasRoomForTheCount) {
    for (const int64_t seconds : {int64_t{3}, int64_t{120}, int64_t{86400}, int64_t{INT32_MAX}}) {
        Make(0x600, seconds);
        EXPECT_GE(DefaultButton().GetSize().x, DefaultButton().GetBestSize().x) << seconds;
        m_dialog->Destroy();
    }
    m_dialog = nullptr;
}

// What the screen is too small for

wxString Lines(int count) {
    wxString text;
    for (int i = 0; i < count; ++i) {
        text += wxString::Format("Line %d\n", i);
    }
    return text;
}

// A line that is wider than the screen is broken there.
wxString WithoutBreaks(wxString text) {
    text.Replace("\n", "");
    return text;
}

TEST_F(MessageDialog, StaysOnTheScreenWithItsButtonsWhateverTheText) {
    const wxSize screen = wxGetClientDisplayRect().GetSize();
    for (const wxString& text : {Lines(200), wxString('W', 4000), Lines(200) + wxString('W', 4000),
                                 Lines(200) + wxString('W', 100), Lines(2000)}) {
        Make(0x400, 0, text);
        m_dialog->Show();
        ASSERT_TRUE(PumpUntil([&] { return gtk_widget_get_mapped(m_dialog->GetHandle()); }));
        EXPECT_LE(m_dialog->GetSize().x, screen.x);
        EXPECT_LE(m_dialog->GetSize().y, screen.y);
        const wxRect client(m_dialog->GetClientSize());
        EXPECT_TRUE(client.Contains(DefaultButton().GetRect()));
        EXPECT_TRUE(client.Contains(m_dialog->FindWindow(wxID_CANCEL)->GetRect()));
        EXPECT_EQ(WithoutBreaks(TextOf(*m_dialog)), WithoutBreaks(text));
        m_dialog->Destroy();
    }
    m_dialog = nullptr;
}

TEST_F(MessageDialog, ATextThatFitsIsNotPutIntoAnArea) {
    Make(0x400, 0, Lines(10));
    EXPECT_EQ(Nth<wxStaticText>(*m_dialog, 0).GetParent(), m_dialog);
    EXPECT_EQ(TextOf(*m_dialog), Lines(10));
}

// The boxes. What would be shown is recorded instead.

class Answering : public wxModalDialogHook {
public:
    explicit Answering(int answer) : m_answer(answer) { Register(); }
    ~Answering() override { Unregister(); }
    Answering(const Answering&) = delete;
    Answering& operator=(const Answering&) = delete;

    wxString m_caption, m_text;
    std::vector<wxString> m_buttons;
    std::string m_icon;
    bool m_warns = false;  // of what the first button does

protected:
    int Enter(wxDialog* dialog) override {
        m_caption = dialog->GetTitle();
        m_text = TextOf(*dialog);
        m_buttons = ButtonsOf(*dialog);
        m_warns = HasStyle(Nth<wxButton>(*dialog, 0), "destructive-action");
        for (const char* const icon :
             {"dialog-warning", "dialog-error", "dialog-question", "dialog-information"}) {
            if (HasIcon(*dialog, icon)) {
                m_icon = icon;
            }
        }
        return m_answer;
    }

private:
    int m_answer;
};

struct BoxRow {
    void (*show)();
    const char* caption;
    const char* text;
    std::string icon;
};

class MessageBoxes : public testing::TestWithParam<BoxRow> {};

TEST_P(MessageBoxes, HaveTitleIconTextAndOk) {
    const Answering user(wxID_OK);
    GetParam().show();
    EXPECT_EQ(user.m_caption, GetParam().caption);
    EXPECT_EQ(user.m_text, GetParam().text);
    EXPECT_EQ(user.m_icon, GetParam().icon);
    EXPECT_EQ(user.m_buttons, std::vector<wxString>{"OK"});
}

INSTANTIATE_TEST_SUITE_P(
    Rows, MessageBoxes,
    testing::Values(
        BoxRow{[] { ShowWarningBox(nullptr, "R&D && more\n_x"); }, "Warning", "R&D && more\n_x",
               "dialog-warning"},
        BoxRow{[] { ShowErrorBox(nullptr, ""); }, "Error", "", "dialog-error"},
        BoxRow{[] { ShowInformationBox(nullptr, "100 %s %d"); }, "Information", "100 %s %d",
               "dialog-information"},
        BoxRow{[] { ShowTokenLockedBox(nullptr, "A & B"); }, "Token locked",
               "The token \"A & B\" is locked.\nPlease use the token manager to unlock it,\n"
               "or contact your system administrator.",
               "dialog-error"},
        BoxRow{[] { ShowBiometricError(nullptr, 0x63C0); }, "Error",
               "Verification failed!\nThe authentication method is now blocked!", "dialog-error"},
        BoxRow{[] { ShowTokenErrorBox(nullptr, 164); }, "Error", "PIN locked", "dialog-error"},
        BoxRow{[] { ShowTokenErrorBox(nullptr, 5); }, "Error", "Device error (0x05)",
               "dialog-error"},
        BoxRow{[] { ShowUnknownErrorBox(nullptr, 0x1FF); }, "Error", "Unknown error (0x1FF)",
               "dialog-error"}));

TEST(MessageBoxRequests, EachCodeShowsItsBoxAndTheAnswerStaysUntouched) {
    const struct {
        uint64_t code;
        const char* caption;
        std::string icon;
    } rows[] = {{0x1001, "Error", "dialog-error"},
                {0x1002, "Information", "dialog-information"},
                {0x1003, "Question", "dialog-question"}};
    for (const auto& row : rows) {
        for (const wchar_t* const text : {L"Well?", static_cast<const wchar_t*>(nullptr)}) {
            const Answering user(wxID_OK);
            bool answer = false;
            CMessage message(row.code, reinterpret_cast<uint64_t>(text),
                             reinterpret_cast<uint64_t>(&answer));
            EXPECT_TRUE(HandleMessageBox(&message));
            EXPECT_EQ(user.m_caption, row.caption);
            EXPECT_EQ(user.m_text, text == nullptr ? "" : "Well?");
            EXPECT_EQ(user.m_icon, row.icon);
            EXPECT_FALSE(answer);
        }
    }
}

TEST(MessageBoxRequests, YesToTheDeletionOfACertificateWarns) {
    const auto warns = [](const wxString& text) {
        const Answering user(wxID_OK);
        const std::wstring shown = text.ToStdWstring();
        CMessage message(0x1003, reinterpret_cast<uint64_t>(shown.c_str()), 0);
        EXPECT_TRUE(HandleMessageBox(&message));
        return user.m_warns;
    };
    EXPECT_TRUE(warns("The application X is trying to delete it:\n\nDo you wish to allow this?"));
    EXPECT_FALSE(warns("This token is locked, would you like to unlock it?"));
}

struct QuestionRow {
    bool (*ask)();
    const char* caption;
    const char* text;
    std::string icon;
};

class QuestionBoxes : public testing::TestWithParam<QuestionRow> {};

TEST_P(QuestionBoxes, HaveYesAndNoAndReturnTheAnswer) {
    for (const int answer : {wxID_OK, wxID_CANCEL}) {
        const Answering user(answer);
        EXPECT_EQ(GetParam().ask(), answer == wxID_OK);
        EXPECT_EQ(user.m_caption, GetParam().caption);
        EXPECT_EQ(user.m_text, GetParam().text);
        EXPECT_EQ(user.m_icon, GetParam().icon);
        EXPECT_EQ(user.m_buttons, (std::vector<wxString>{"&Yes", "&No"}));
    }
}

INSTANTIATE_TEST_SUITE_P(
    Rows, QuestionBoxes,
    testing::Values(
        QuestionRow{[] { return ShowQuestionBox(nullptr, "Well?"); }, "Question", "Well?",
                    "dialog-question"},
        QuestionRow{[] { return AskAuthenticationRetry(nullptr); }, "Authentication failed",
                    "Authentication to the Lumora Bio Token failed!\nWould you like to try again?",
                    "dialog-error"},
        QuestionRow{[] { return AskEnrolmentRetry(nullptr); }, "Enrolment failed",
                    "Enrolment of (new) fingerprint(s) on the Lumora Bio Token failed!\n"
                    "Would you like to try again?",
                    "dialog-error"},
        QuestionRow{[] { return ShowBiometricError(nullptr, 0x6400); }, "Error",
                    "Device error (0x6400)\n\nWould you like to try again?", "dialog-error"}));

TEST(MessageBoxes, AnErrorThatAllowsNoRetryIsNotAnsweredWithYes) {
    const Answering user(wxID_OK);
    EXPECT_FALSE(ShowBiometricError(nullptr, 0x6983));
}

}  // namespace
}  // namespace zeldlg
