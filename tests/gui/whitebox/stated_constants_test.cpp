// Every size, font, identifier, interval, colour, style and text that a dialog has to have, read
// off the controls of the real dialog. The expected values stand here as numbers: none is taken
// from the code that it checks.
#include <gtest/gtest.h>
#include <gtk/gtk.h>
#include <wx/checkbox.h>
#include <wx/combobox.h>
#include <wx/dcclient.h>
#include <wx/radiobut.h>
#include <wx/settings.h>
#include <wx/sizer.h>
#include <wx/statbmp.h>
#include <wx/statbox.h>
#include <wx/statline.h>
#include <wx/valtext.h>

#include <initializer_list>
#include <memory>
#include <stdexcept>
#include <string>
#include <vector>

#include "biometric/enrolment_hint_dialog.h"
#include "biometric/retry_boxes.h"
#include "biometric/super_token_notification_dialog.h"
#include "controls.h"
#include "dialogs/digital_id_dialog.h"
#include "dialogs/key_gen_progress_dialog.h"
#include "dialogs/message_boxes.h"
#include "dialogs/message_dialog.h"
#include "dialogs/select_unblock_method_dialog.h"
#include "dialogs/selection.h"
#include "dialogs/token_dialog.h"
#include "dialogs/unlock_with_cr_dialog.h"
#include "pin/legal_signature_dialog.h"
#include "pin/pin_pad_dialog.h"
#include "pin/pin_prompt_dialog.h"
#include "policy/change_pin_dialog.h"
#include "test_app.h"
#include "widgets/rule_marks.h"
#include "widgets/text_panel.h"

namespace zeldlg::test {

namespace {

// A row of the table: what is looked at, what it has to be, what it is.

std::string InWords(long number) {
    return wxString::Format("%ld (0x%lx)", number, number).utf8_string();
}
std::string InWords(const char* text) { return text; }
std::string InWords(const wxString& text) { return text.utf8_string(); }
std::string InWords(const std::vector<std::string>& texts) {
    std::string all;
    for (const std::string& text : texts) {
        all += "[" + text + "]\n";
    }
    return all;
}
std::string InWords(const wxSize& size) {
    return wxString::Format("%d x %d", size.x, size.y).utf8_string();
}
std::string InWords(const wxColour& colour) {
    return colour.GetAsString(wxC2S_CSS_SYNTAX).utf8_string();
}
std::string InWords(const std::vector<unsigned>& numbers) {
    std::string all;
    for (const unsigned number : numbers) {
        all += std::to_string(number) + " ";
    }
    return all;
}

struct Row {
    template <typename Stated, typename Real>
    Row(const char* subject, const Stated& stated, const Real& real)
        : what(subject), wanted(InWords(stated)), seen(InWords(real)) {}

    const char* what;
    std::string wanted;
    std::string seen;
};

void ExpectStated(std::initializer_list<Row> table) {
    for (const Row& row : table) {
        EXPECT_EQ(row.seen, row.wanted) << row.what;
    }
}

using Texts = std::vector<std::string>;

const wxColour kRed(255, 0, 0);

// Every dialog of the toolkit has tab traversal besides.
long StyleOf(const wxDialog& dialog) { return dialog.GetWindowStyle() & ~wxTAB_TRAVERSAL; }

int PointsOf(const wxWindow& window) { return window.GetFont().GetPointSize(); }
int WeightOf(const wxWindow& window) { return window.GetFont().GetNumericWeight(); }

wxWindow& WithId(const wxWindow& dialog, wxWindowID id) {
    wxWindow* const found = dialog.FindWindow(id);
    if (found == nullptr) {
        throw std::out_of_range("no control has the identifier " + std::to_string(id));
    }
    return *found;
}
wxString LabelOf(const wxWindow& dialog, wxWindowID id) { return WithId(dialog, id).GetLabel(); }

int IdOfDefault(const wxDialog& dialog) { return dialog.GetDefaultItem()->GetId(); }

wxString FocusedOf(const wxDialog& dialog) {
    const GtkWidget* const focus = gtk_window_get_focus(GTK_WINDOW(dialog.GetHandle()));
    return focus != nullptr ? G_OBJECT_TYPE_NAME(focus) : "nothing";
}

const wxSizerItem& PlaceOf(const wxWindow& control) {
    return *control.GetContainingSizer()->GetItem(const_cast<wxWindow*>(&control));
}
int BorderOf(const wxWindow& control) { return PlaceOf(control).GetBorder(); }
long FlagsOf(const wxWindow& control) { return PlaceOf(control).GetFlag(); }

// A PIN field of any dialog.
void ExpectPinField(const wxWindow& dialog, const PinField& field) {
    wxClientDC context(const_cast<wxWindow*>(&dialog));
    context.SetFont(wxSystemSettings::GetFont(wxSYS_DEFAULT_GUI_FONT));
    const int stars = context.GetTextExtent("******************").GetWidth();
    ExpectStated({{"a PIN field's size", wxSize(stars, 24), field.GetSize()},
                  {"a PIN field's least size", wxSize(stars, 24), field.GetMinSize()},
                  {"a PIN field masks", 2048, field.GetWindowStyle() & 2048},
                  {"a PIN field at first", "", field.GetValue()}});
}

// The icon of a rule in its two states.
void ExpectRuleIcon(RuleIcon& icon) {
    for (const bool met : {true, false, true}) {
        icon.SetMet(met);
        ExpectStated({{"an icon's size", wxSize(16, 16), icon.GetSize()},
                      {"an icon's picture", wxSize(16, 16), icon.GetBitmap().GetSize()}});
    }
}

bool Consumes(wxWindow& dialog, wxEventType type) {
    wxMouseEvent event(type);
    return dialog.GetEventHandler()->ProcessEvent(event);
}

void ExpectMousePressesConsumed(wxWindow& dialog) {
    const std::initializer_list<wxEventType> presses = {
        wxEVT_LEFT_DOWN,    wxEVT_LEFT_UP,       wxEVT_LEFT_DCLICK, wxEVT_MIDDLE_DOWN,
        wxEVT_MIDDLE_UP,    wxEVT_MIDDLE_DCLICK, wxEVT_RIGHT_DOWN,  wxEVT_RIGHT_UP,
        wxEVT_RIGHT_DCLICK, wxEVT_AUX1_DOWN,     wxEVT_AUX1_UP,     wxEVT_AUX1_DCLICK,
        wxEVT_AUX2_DOWN,    wxEVT_AUX2_UP,       wxEVT_AUX2_DCLICK};
    wxDialog plain(nullptr, wxID_ANY, "Plain");
    size_t index = 0;
    for (const wxEventType press : presses) {
        EXPECT_TRUE(Consumes(dialog, press)) << "press " << index;
        EXPECT_FALSE(Consumes(plain, press)) << "press " << index;
        ++index;
    }
}

// What the PIN dialog and the one for signatures have in common.
void ExpectPinPrompt(wxDialog& dialog, const char* okLabel) {
    ExpectStated(
        {{"style", 0x20008000, StyleOf(dialog)},
         {"title", "Enter PIN", dialog.GetTitle()},
         {"OK", okLabel, LabelOf(dialog, 5100)},
         {"Cancel", "Cancel", LabelOf(dialog, 5101)},
         {"the default button", 5100, IdOfDefault(dialog)},
         {"OK at first", false, WithId(dialog, 5100).IsEnabled()},
         {"the focus", "GtkEntry", FocusedOf(dialog)},
         {"first warning", kRed, LabelReading(dialog, "PIN incorrect").GetForegroundColour()}});
    for (const wxStaticText* const label : AllOf<wxStaticText>(dialog)) {
        if (label->GetLabelText().StartsWith("WARNING")) {
            EXPECT_EQ(label->GetForegroundColour(), kRed);
        }
    }
    ExpectPinField(dialog, Nth<PinField>(dialog, 0));
    ASSERT_EQ(AllOf<RuleIcon>(dialog).size(), 2);
    ExpectRuleIcon(Nth<RuleIcon>(dialog, 0));
    ExpectRuleIcon(Nth<RuleIcon>(dialog, 1));
    ExpectMousePressesConsumed(dialog);
}

const PinLengthRule kFourToEight(4, 8);

TEST(StatedConstants, OfThePinDialog) {
    const auto dialog = std::make_unique<CPinEntryDialog>(
        nullptr, "Card", kFourToEight, DescribeFailure(PinRetryCounter{3, 2, false}));
    ExpectPinPrompt(*dialog, "OK");
    ExpectStated({{"texts",
                   Texts{"To log in to \"Card\"", "PIN incorrect",
                         "WARNING: Repeated login failures may lock the token! "
                         "You have 2 tries remaining",
                         "Enter PIN:", "Minimum PIN length 4 bytes", "Maximum PIN length 8 bytes"},
                   Labels(*dialog)}});
}

TEST(StatedConstants, OfTheSignatureDialog) {
    const auto dialog = std::make_unique<CLegalSignatureDialog>(
        nullptr, "Card", kFourToEight, DescribeFailure(PinAttempts{true, true, false}));
    ExpectPinPrompt(*dialog, "&Sign");
    const wxStaticText& notice = Nth<wxStaticText>(*dialog, 0);
    ExpectStated(
        {{"notice", "You are about to create a legally binding digital signature!",
          Unwrapped(notice)},
         {"notice's weight", 700, WeightOf(notice)},
         {"Sign's weight", 700, WeightOf(WithId(*dialog, 5100))},
         {"Cancel's weight", 400, WeightOf(WithId(*dialog, 5101))},
         {"picture", wxSize(300, 248), Nth<wxStaticBitmap>(*dialog, 0).GetBitmap().GetSize()}});
}

// PIN pad

TEST(StatedConstants, OfThePinPad) {
    const auto pad = std::make_unique<CPinPadDialog>(
        PinPadLook{.allowAbort = true, .verification = false, .legal = true, .withPinRow = true});
    const wxStaticText& first = LabelReading(*pad, "Enter your PIN");
    const wxStaticText& second = LabelReading(*pad, "Enter the new PIN");
    const wxStaticText& third = LabelReading(*pad, "Confirm the new PIN");
    const wxStaticText& row = LabelReading(*pad, "_______________");
    const wxColour grey(143, 143, 143);
    const wxColour black(0, 0, 0);
    ExpectStated(
        {{"style", 0x20008020, StyleOf(*pad)},
         {"title", "PinPad", pad->GetTitle()},
         {"parent", true, pad->GetParent() == nullptr},
         {"notice's weight", 700, WeightOf(Nth<wxStaticText>(*pad, 0))},
         {"frame", "Action to perform", Nth<wxStaticBox>(*pad, 0).GetLabelText()},
         {"frame of the row", "", Nth<wxStaticBox>(*pad, 1).GetLabelText()},
         {"first step's size", 18, PointsOf(first)},
         {"second step's size", 18, PointsOf(second)},
         {"third step's size", 18, PointsOf(third)},
         {"row's size", 24, PointsOf(row)},
         {"row's family", wxFONTFAMILY_TELETYPE, row.GetFont().GetFamily()},
         {"row's slant", wxFONTSTYLE_NORMAL, row.GetFont().GetStyle()},
         {"row's weight", 700, WeightOf(row)},
         {"row's line", false, row.GetFont().GetUnderlined()},
         {"row is centred", wxALIGN_CENTRE_HORIZONTAL,
          row.GetWindowStyle() & wxALIGN_CENTRE_HORIZONTAL},
         {"row is drawn so", true, gtk_label_get_xalign(GTK_LABEL(row.GetHandle())) == 0.5F},
         {"Abort", "&Abort", LabelOf(*pad, 6228)}});
    const wxColour colours[][3] = {{grey, grey, grey},
                                   {black, grey, grey},
                                   {grey, black, grey},
                                   {grey, grey, black},
                                   {grey, grey, grey}};
    for (const auto& each : colours) {
        ExpectStated({{"first step", each[0], first.GetForegroundColour()},
                      {"second step", each[1], second.GetForegroundColour()},
                      {"third step", each[2], third.GetForegroundColour()}});
        pad->NextStep();
    }
    EXPECT_FALSE(pad->IsAbortRequested());
    wxCommandEvent press(wxEVT_BUTTON, 6228);
    WithId(*pad, 6228).GetEventHandler()->ProcessEvent(press);
    EXPECT_TRUE(pad->IsAbortRequested());
}

// The new digits have the same width as the mask: the row stands still.
TEST(StatedConstants, OfThePinPadsRow) {
    const auto pad = std::make_unique<CPinPadDialog>(
        PinPadLook{.allowAbort = false, .verification = true, .legal = false, .withPinRow = true});
    const wxStaticText& row = LabelReading(*pad, "_______________");
    EXPECT_EQ(row.GetTextExtent("***************"), row.GetTextExtent("_______________"));
    EXPECT_EQ(Labels(*pad), (Texts{"" /* the arrow */, "Enter your PIN", "_______________"}));
    pad->NextStep();
    EXPECT_EQ(Labels(*pad), (Texts{"\u25B8", "Enter your PIN", "_______________"}));
    for (int typed = 0; typed < 16; ++typed) {
        pad->AddChar();
    }
    EXPECT_EQ(row.GetLabelText(), "***************");
}

TEST(StatedConstants, OfThePinPadFromRightToLeft) {
    GetTestApp().direction = wxLayout_RightToLeft;
    const auto pad = std::make_unique<CPinPadDialog>(
        PinPadLook{.allowAbort = false, .verification = true, .legal = false, .withPinRow = false});
    GetTestApp().direction = wxLayout_Default;
    pad->NextStep();
    EXPECT_EQ(Labels(*pad), (Texts{"\u25C2", "Enter your PIN"}));
}

// Change dialogs

struct ModeRow {
    ChangePinMode mode;
    const char* title;
    Texts texts;  // heading, field labels, rules
};

Texts PinRules(const char* heading, const char* oldLabel, const char* secret) {
    const std::string old = std::string(secret) + " length between 3 and 5 bytes";
    return {heading,
            oldLabel,
            "Enter new PIN:",
            "Confirm new PIN:",
            old,
            "Minimum PIN length 4 bytes",
            "Maximum PIN length 8 bytes",
            "New PIN equal to confirmed new PIN"};
}

const ModeRow kModes[] = {
    {ChangePinMode::ChangePuk,
     "Change PUK",
     {"Changing the PUK for \"Card\":", "Enter old PUK:", "Enter new PUK:", "Confirm new PUK:",
      "PUK length between 3 and 5 bytes", "Minimum PUK length 4 bytes",
      "Maximum PUK length 8 bytes", "New PUK equal to confirmed new PUK"}},
    {ChangePinMode::UnlockPin, "Unlock PIN",
     PinRules("Unlocking the PIN for \"Card\":", "Enter PUK:", "PUK")},
    {ChangePinMode::ChangeTransportPin, "Change transport PIN",
     PinRules("Changing the PIN for \"Card\":", "Enter transport PIN:", "PIN")},
    {ChangePinMode::InitialisePin, "Initialise PIN",
     PinRules("Initialising the PIN for \"Card\":", "Enter PUK:", "PUK")},
    {ChangePinMode::ChangePin, "Change PIN",
     PinRules("Changing the PIN for \"Card\":", "Enter old PIN:", "PIN")}};

ChangePinPrompt PromptFor(ChangePinMode mode) {
    ChangePinPrompt prompt;
    prompt.tokenLabel = "Card";
    prompt.mode = mode;
    prompt.bounds = {.newValue = {4, 8}, .oldValue = {3, 5}};
    return prompt;
}

TEST(StatedConstants, OfTheChangeDialogs) {
    for (const ModeRow& row : kModes) {
        SCOPED_TRACE(row.title);
        const auto dialog = std::make_unique<CChangePinDialog>(nullptr, PromptFor(row.mode));
        Texts shown = Labels(*dialog);
        shown.pop_back();  // the summary
        for (const Indicator* const rule : AllOf<Indicator>(*dialog)) {
            shown.push_back(rule->GetLabelText().utf8_string());
        }
        ExpectStated({{"style", 0x20009800, StyleOf(*dialog)},
                      {"title", row.title, dialog->GetTitle()},
                      {"texts", row.texts, shown},
                      {"OK", "OK", LabelOf(*dialog, 5100)},
                      {"Cancel", "Cancel", LabelOf(*dialog, 5101)},
                      {"the default button", 5100, IdOfDefault(*dialog)},
                      {"OK at first", false, WithId(*dialog, 5100).IsEnabled()},
                      {"tool tips' delay in milliseconds", 257, TakeToolTipDelay()}});
        ASSERT_EQ(AllOf<PinField>(*dialog).size(), 3);
        for (PinField* const field : AllOf<PinField>(*dialog)) {
            ExpectPinField(*dialog, *field);
            const auto* const filter = dynamic_cast<const wxTextValidator*>(field->GetValidator());
            ASSERT_NE(filter, nullptr);
            ExpectStated({{"the fields' filter", wxFILTER_ASCII, filter->GetStyle()}});
        }
    }
}

TEST(StatedConstants, OfThePolicedChangeDialog) {
    ChangePinPrompt prompt = PromptFor(ChangePinMode::ChangeTransportPin);
    prompt.policed = true;
    prompt.attempts = {.noFailure = false, .finalTry = false, .triesLeft = 2};
    const auto dialog = std::make_unique<CChangePinDialog>(nullptr, prompt);
    const wxStaticText& summary = *AllOf<wxStaticText>(*dialog).back();
    const wxStaticText& warning = LabelReading(*dialog,
                                               "You have 2 tries remaining "
                                               "WARNING: Repeated login failures may lock the "
                                               "token!");
    Texts tips;
    for (const Indicator* const ball : AllOf<Indicator>(*dialog)) {
        tips.push_back(ball->GetToolTipText().utf8_string());
        EXPECT_EQ(ball->GetBitmap().GetSize(), wxSize(16, 16));
    }
    ExpectStated(
        {{"tool tips of the balls",
          Texts{"PIN length between 3 and 5 bytes", "Minimum PIN length 4 bytes",
                "Maximum PIN length 8 bytes", "New PIN equal to confirmed new PIN", "Length",
                "Equality", "Distance", "Diversification", "Similarity", "Restriction"},
          tips},
         {"header", "PIN incorrect", LabelReading(*dialog, "PIN incorrect").GetLabelText()},
         {"warning", kRed, warning.GetForegroundColour()},
         {"summary",
          "Warning ! Click on the red ball to check what are the password requirements missing !",
          Unwrapped(summary)},
         {"summary", kRed, summary.GetForegroundColour()}});
    Nth<PinField>(*dialog, 0).SetValue("1234");
    Nth<PinField>(*dialog, 1).SetValue("5678");
    Nth<PinField>(*dialog, 2).SetValue("5678");
    ExpectStated({{"summary when all is met",
                   "The informed password is correct and fullfilled all the password policy "
                   "requirements !",
                   Unwrapped(summary)},
                  {"summary when all is met", wxColour(34, 139, 34), summary.GetForegroundColour()},
                  {"OK when all is met", true, WithId(*dialog, 5100).IsEnabled()}});
}

// Message dialog

TEST(StatedConstants, OfTheMessageDialog) {
    struct {
        long style;
        Texts buttons;
        int buttonBorder;
        int rowBorder;
    } const rows[] = {{0x200, {"OK"}, 20, 20},
                      {0x400, {"&Yes", "&No"}, 5, 15},
                      {0x13ED, {"OK", "Cancel"}, 5, 15}};
    for (const auto& row : rows) {
        SCOPED_TRACE(row.style);
        TakeTimerIntervals();
        const auto dialog =
            std::make_unique<CMessageDialog>(nullptr, "Caption", "Text", row.style, 0);
        const auto& icon = Nth<wxStaticBitmap>(*dialog, 0);
        const auto& text = Nth<wxStaticText>(*dialog, 0);
        const auto& ok = WithId(*dialog, 5100);
        Texts buttons;
        for (const wxButton* const button : AllOf<wxButton>(*dialog)) {
            buttons.push_back(button->GetLabel().utf8_string());
        }
        ExpectStated(
            {{"style", 0x20001820, StyleOf(*dialog)},
             {"buttons", row.buttons, buttons},
             {"the default button", 5100, IdOfDefault(*dialog)},
             {"icon's border", 20, BorderOf(icon)},
             {"where the icon has it", wxTOP | wxBOTTOM | wxLEFT, FlagsOf(icon)},
             {"text's border", 20, BorderOf(text)},
             {"where the text has it", wxALL | wxALIGN_CENTRE_VERTICAL, FlagsOf(text)},
             {"buttons' border", row.buttonBorder, BorderOf(ok)},
             {"button row's border", row.rowBorder, dialog->GetSizer()->GetItem(1)->GetBorder()},
             {"a timer", std::vector<unsigned>{}, TakeTimerIntervals()}});
        if (buttons.size() == 2) {
            EXPECT_EQ(BorderOf(WithId(*dialog, 5101)), 5);
        }
    }
}

TEST(StatedConstants, OfTheMessageDialogsSigns) {
    const struct {
        long style;
        const char* name;
    } rows[] = {{0x100, "Warning"}, {0x200, "Error"}, {0x400, "Question"}, {0x800, "Information"}};
    for (const auto& row : rows) {
        const auto dialog =
            std::make_unique<CMessageDialog>(nullptr, "Caption", "Text", row.style, 0);
        AtkObject* const sign =
            gtk_widget_get_accessible(Nth<wxStaticBitmap>(*dialog, 0).GetHandle());
        ExpectStated({{"what a screen reader calls it", row.name, atk_object_get_name(sign)}});
    }
}

TEST(StatedConstants, OfTheRetryQuestion) {
    TakeTimerIntervals();
    const auto dialog = std::make_unique<CMessageDialog>(nullptr, "Caption", "Text", 0x600, 3);
    ExpectStated({{"the timer", std::vector<unsigned>{1000}, TakeTimerIntervals()},
                  {"Yes", "&Yes (3s)", LabelOf(*dialog, 5100)},
                  {"No", "&No", LabelOf(*dialog, 5101)},
                  {"seconds without a setting", 0, GetAutomaticRetryTimeout()}});
}

// Lists

TEST(StatedConstants, OfTheTokenDialog) {
    const auto dialog = std::make_unique<CTokenDialog>(nullptr);
    dialog->AddItem("Card A  ", "Reader 1 ", 7);
    dialog->AddItem("Card B  ", 8);
    dialog->FinishLayout();
    const wxStaticText& label = LabelReading(*dialog, "Please select a token:");
    const auto& list = Nth<wxListBox>(*dialog, 0);
    const wxWindow& ok = WithId(*dialog, 5100);
    ExpectStated({{"style", 0x20001820, StyleOf(*dialog)},
                  {"title", "Select a token", dialog->GetTitle()},
                  {"OK", "OK", ok.GetLabel()},
                  {"buttons", 1, static_cast<long>(AllOf<wxButton>(*dialog).size())},
                  {"list's style", 0x40000020,
                   list.GetWindowStyle() &
                       (wxLB_SINGLE | wxLB_MULTIPLE | wxLB_EXTENDED | wxLB_SORT | wxHSCROLL)},
                  {"the row", "Card A (Reader 1)", list.GetString(0)},
                  {"a row of one text", "Card B", list.GetString(1)},
                  {"the chosen row", 0, list.GetSelection()},
                  {"label's border", 5, BorderOf(label)},
                  {"list's border", 5, BorderOf(list)},
                  {"OK's border", 5, BorderOf(ok)},
                  {"label's place", wxALL | wxALIGN_CENTRE_HORIZONTAL, FlagsOf(label)},
                  {"list's place", wxALL | wxALIGN_CENTRE_HORIZONTAL, FlagsOf(list)},
                  {"OK's place", wxALL | wxALIGN_CENTRE_HORIZONTAL, FlagsOf(ok)},
                  {"label's share", 0, PlaceOf(label).GetProportion()},
                  {"list's share", 1, PlaceOf(list).GetProportion()},
                  {"OK's share", 0, PlaceOf(ok).GetProportion()},
                  {"least size", dialog->GetSize(), dialog->GetMinSize()}});
}

TEST(StatedConstants, OfTheDigitalIdDialog) {
    DigitalIdPrompt prompt;
    prompt.name = "Name";
    prompt.validFrom = "2024-01-01";
    prompt.validTo = "2025-01-01";
    prompt.count = 2;
    prompt.directory = "corvenna.example";
    prompt.timeout = GetDefaultSelectionTimeout();
    TakeTimerIntervals();
    const auto dialog = std::make_unique<CDigitalIDSelectionDialog>(prompt);
    const auto& list = Nth<wxListBox>(*dialog, 0);
    ExpectStated(
        {{"title", "Select Digital ID", dialog->GetTitle()},
         {"the timer", std::vector<unsigned>{1000}, TakeTimerIntervals()},
         {"OK, with the seconds that hold without a setting", "OK (5s)", LabelOf(*dialog, 5100)},
         {"Cancel", "Cancel", LabelOf(*dialog, 5101)},
         {"check box", "Always use this Digital ID (this dialog will not be displayed again)",
          Unwrapped(Nth<wxCheckBox>(*dialog, 0))},
         {"check box at first", false, Nth<wxCheckBox>(*dialog, 0).GetValue()},
         {"texts",
          Texts{"Multiple Digital IDs found; please select an appropriate Digital ID from the "
                "list below:",
                "Valid From: ", "2024-01-01", "Valid To: ", "2025-01-01",
                "This computer is a member of the following Active Directory:", "corvenna.example",
                "User Principal Name (UPN)", "Name"},
          Labels(*dialog)},
         {"list's border", 5, BorderOf(list)},
         {"list's place", wxALL | wxEXPAND, FlagsOf(list)}});
    const auto* const sized =
        new wxStaticText(dialog.get(), wxID_ANY, "XXXXXXXX-XXXX-XXXX XX:XX:XX");
    for (const char* const date : {"2024-01-01", "2025-01-01"}) {
        EXPECT_EQ(LabelReading(*dialog, date).GetMinSize(), sized->GetBestSize());
    }

    prompt.timeout = 0;
    const auto atOnce = std::make_unique<CDigitalIDSelectionDialog>(prompt);
    ExpectStated({{"the timer without a time", std::vector<unsigned>{1}, TakeTimerIntervals()},
                  {"OK without a time", "OK (1s)", LabelOf(*atOnce, 5100)}});
}

// Unblocking

TEST(StatedConstants, OfTheUnblockMethodDialog) {
    const auto dialog =
        std::make_unique<CSelectUnblockMethodDialog>(true, std::vector<uint32_t>{1, 0});
    const auto& list = Nth<wxComboBox>(*dialog, 0);
    Texts explanation = Labels(*dialog);
    wxString whole;
    for (const std::string& line : explanation) {
        whole += (whole.empty() ? "" : " ") + wxString::FromUTF8(line);
    }
    ExpectStated({{"style", 0x20009820, StyleOf(*dialog)},
                  {"title", "Unlock PIN", dialog->GetTitle()},
                  {"the PUK", "Unlock PIN using the PUK", LabelOf(*dialog, 6402)},
                  {"off-line", "Unlock PIN via off-line PIN unlock", LabelOf(*dialog, 6403)},
                  {"separator lines", 1, static_cast<long>(AllOf<wxStaticLine>(*dialog).size())},
                  {"explanation",
                   "Please select the unlocking algorithm from the drop-down box below. Your "
                   "helpdesk can tell you which algorithm you should select.",
                   whole},
                  {"explanation's style", wxTAB_TRAVERSAL | wxNO_BORDER,
                   Nth<CTextPanel>(*dialog, 0).GetWindowStyle()},
                  {"first algorithm", "3DES ECB Witness/Challenge/Response", list.GetString(0)},
                  {"second algorithm", "3DES ECB Challenge/Response", list.GetString(1)},
                  {"the algorithm at first", 0, list.GetSelection()},
                  {"list is read-only", wxCB_READONLY, list.GetWindowStyle() & wxCB_READONLY},
                  {"OK", "OK", LabelOf(*dialog, 5100)},
                  {"Cancel", "Cancel", LabelOf(*dialog, 5101)}});
    EXPECT_EQ(dialog->Method(), 1);
    dynamic_cast<wxRadioButton&>(WithId(*dialog, 6403)).SetValue(true);
    EXPECT_EQ(dialog->Method(), 2);
}

TEST(StatedConstants, OfTheChallengeResponseDialog) {
    const auto dialog = std::make_unique<CUnlockWithCRDialog>(
        UnlockWithCRPrompt{.tokenLabel = "Card",
                           .challenge = std::string("\x00\xab\x0f", 3),
                           .serialNumber = "S-1",
                           .responseLength = 8,
                           .newPinBounds = {.min = 4, .max = 9},
                           .askNewPin = true});
    ExpectStated({{"style", 0x20009820, StyleOf(*dialog)},
                  {"title", "Unlock PIN", dialog->GetTitle()},
                  {"texts",
                   Texts{"Unlocking the PIN for \"Card\":", "Challenge:", "Token serial number:",
                         "S-1", "Response:", "Response is 8 bytes long",
                         "Enter new PIN:", "Confirm new PIN:", "Minimum PIN length 4 bytes",
                         "Maximum PIN length 9 bytes", "PIN equal to Confirmed PIN"},
                   Labels(*dialog)},
                  {"challenge", "00AB0F", Nth<wxTextCtrl>(*dialog, 0).GetValue()},
                  {"OK", "OK", LabelOf(*dialog, 5100)},
                  {"Cancel", "Cancel", LabelOf(*dialog, 5101)},
                  {"OK at first", false, WithId(*dialog, 5100).IsEnabled()}});
    ASSERT_EQ(AllOf<PinField>(*dialog).size(), 2);
    for (const PinField* const field : AllOf<PinField>(*dialog)) {
        ExpectPinField(*dialog, *field);
    }
    ASSERT_EQ(AllOf<RuleIcon>(*dialog).size(), 4);
    for (RuleIcon* const icon : AllOf<RuleIcon>(*dialog)) {
        ExpectRuleIcon(*icon);
    }
}

// Key generation

TEST(StatedConstants, OfTheKeyGenerationWindow) {
    TakeTimerIntervals();
    const auto dialog = std::make_unique<CKeyGenProgressDialog>(nullptr);
    const auto& picture = Nth<wxStaticBitmap>(*dialog, 0);
    const wxStaticText& text = LabelReading(*dialog, "Generating key-pair, please wait...");
    ExpectStated({{"style", 0x20008020, StyleOf(*dialog)},
                  {"title", "Generating key-pair", dialog->GetTitle()},
                  {"the timer", std::vector<unsigned>{500}, TakeTimerIntervals()},
                  {"picture", wxSize(32, 32), picture.GetBitmap().GetSize()},
                  {"picture's border", 25, BorderOf(picture)},
                  {"text's border", 25, BorderOf(text)},
                  {"picture's place", wxALL | wxALIGN_CENTRE_VERTICAL, FlagsOf(picture)},
                  {"text's place", wxALL | wxALIGN_CENTRE_VERTICAL, FlagsOf(text)}});
}

// Biometric token

// Weight and size that a label's beginning has, and how many bytes that is.
struct Headline {
    int weight = 0;
    int points = 0;
    unsigned end = 0;
};

Headline HeadlineOf(const wxStaticText& label) {
    Headline headline;
    PangoAttrIterator* const at =
        pango_attr_list_get_iterator(gtk_label_get_attributes(GTK_LABEL(label.GetHandle())));
    if (const auto* const weight = pango_attr_iterator_get(at, PANGO_ATTR_WEIGHT)) {
        headline.weight = reinterpret_cast<const PangoAttrInt*>(weight)->value;
        headline.end = weight->end_index;
    }
    if (const auto* const size = pango_attr_iterator_get(at, PANGO_ATTR_SIZE)) {
        headline.points = reinterpret_cast<const PangoAttrSize*>(size)->size / PANGO_SCALE;
    }
    pango_attr_iterator_destroy(at);
    return headline;
}

TEST(StatedConstants, OfTheBiometricWindow) {
    const auto dialog =
        std::make_unique<CSuperTokenNotificationDialog>(NotificationMode::Enrolment);
    const auto& text = Nth<wxStaticText>(*dialog, 0);
    const auto& instruction = Nth<wxStaticText>(*dialog, 1);
    const Headline headline = HeadlineOf(text);
    ExpectStated(
        {{"style", 0x20008020, StyleOf(*dialog)},
         {"title", "Lumora Bio Token", dialog->GetTitle()},
         {"parent", true, dialog->GetParent() == nullptr},
         {"text is centred", wxALIGN_CENTRE, text.GetWindowStyle() & wxALIGN_CENTRE},
         {"instruction is centred", wxALIGN_CENTRE, instruction.GetWindowStyle() & wxALIGN_CENTRE},
         {"text's place", wxTOP | wxEXPAND, FlagsOf(text)},
         {"instruction's place", wxTOP | wxEXPAND, FlagsOf(instruction)},
         {"headline's weight", 700, headline.weight},
         {"headline's size", 12, headline.points},
         {"scan number", Texts{"Scan number:", "0"},
          Texts{Labels(*dialog)[2], Labels(*dialog)[3]}}});
    const std::string shown = text.GetLabelText().utf8_string();
    EXPECT_EQ(shown.find("\n\n"), headline.end) << shown;
    for (int scan = 1; scan <= 3; ++scan) {
        dialog->CountScan();
    }
    ExpectStated({{"title after three scans", "Lumora Bio Token - enrolling finger (scan 3)",
                   dialog->GetTitle()},
                  {"scan number after three scans", "3", Labels(*dialog)[3].c_str()}});
}

TEST(StatedConstants, OfTheEnrolmentHint) {
    const auto dialog = std::make_unique<CEnrolmentHintDialog>(nullptr);
    const wxWindow& ok = WithId(*dialog, 5100);
    ExpectStated({{"style", 0x20008000, StyleOf(*dialog)},
                  {"title", "Fingerprint enrolment information", dialog->GetTitle()},
                  {"texts",
                   Texts{"You are about to enrol a (new) finger on the Lumora Bio Token. This "
                         "enrolment process is carried out in 3 scans. The title bar of the window "
                         "prompting you to swipe your finger over the sensor and the number in the "
                         "window indicates which scan is being made. The process automatically "
                         "terminates when you have made the three scans. It is important that you "
                         "use exactly the same finger in all three scans."},
                   Labels(*dialog)},
                  {"check box", "Show this window during the next enrolment procedure",
                   Unwrapped(dynamic_cast<wxControl&>(WithId(*dialog, 13568)))},
                  {"check box at first", true, Nth<wxCheckBox>(*dialog, 0).GetValue()},
                  {"buttons", 1, static_cast<long>(AllOf<wxButton>(*dialog).size())},
                  {"OK", "OK", ok.GetLabel()},
                  {"OK's border", 5, BorderOf(ok)},
                  {"OK's place", wxALL | wxALIGN_CENTRE_HORIZONTAL, FlagsOf(ok)}});
}

}  // namespace

}  // namespace zeldlg::test
