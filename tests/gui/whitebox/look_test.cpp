// What stands out, what looks alike and how large it is to point at.
#include <gtest/gtest.h>
#include <gtk/gtk.h>
#include <wx/frame.h>
#include <wx/image.h>
#include <wx/panel.h>
#include <wx/statbmp.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <memory>
#include <string>

#include "controls.h"
#include "dialogs/key_gen_progress_dialog.h"
#include "dialogs/message_dialog.h"
#include "dialogs/token_dialog.h"
#include "dialogs/unlock_with_cr_dialog.h"
#include "pin/pin_prompt_dialog.h"
#include "policy/change_pin_dialog.h"
#include "resources/pictures.h"
#include "test_app.h"
#include "widgets/banner.h"
#include "widgets/rule_marks.h"

namespace zeldlg::test {

namespace {

// How the text of a label is drawn at its beginning.
struct Drawn {
    int weight = PANGO_WEIGHT_NORMAL;
    double points = 0;
    unsigned end = 0;
};

Drawn DrawnBeginning(const wxStaticText& label) {
    Drawn drawn{.points = label.GetFont().GetFractionalPointSize()};
    PangoAttrList* const all = gtk_label_get_attributes(GTK_LABEL(label.GetHandle()));
    if (all == nullptr) {
        return drawn;
    }
    PangoAttrIterator* const at = pango_attr_list_get_iterator(all);
    if (const auto* const weight = pango_attr_iterator_get(at, PANGO_ATTR_WEIGHT)) {
        drawn.weight = reinterpret_cast<const PangoAttrInt*>(weight)->value;
        drawn.end = weight->end_index;
    }
    if (const auto* const size = pango_attr_iterator_get(at, PANGO_ATTR_SIZE)) {
        drawn.points = 1.0 * reinterpret_cast<const PangoAttrSize*>(size)->size / PANGO_SCALE;
    }
    if (const auto* const scale = pango_attr_iterator_get(at, PANGO_ATTR_SCALE)) {
        drawn.points *= reinterpret_cast<const PangoAttrFloat*>(scale)->value;
    }
    pango_attr_iterator_destroy(at);
    return drawn;
}

// The colour that all of a label is drawn in, whatever the toolkit takes its colour to be.
wxColour DrawnColour(const wxStaticText& label) {
    PangoAttrIterator* const at =
        pango_attr_list_get_iterator(gtk_label_get_attributes(GTK_LABEL(label.GetHandle())));
    const auto* const drawn =
        reinterpret_cast<const PangoAttrColor*>(pango_attr_iterator_get(at, PANGO_ATTR_FOREGROUND));
    const PangoColor& colour = drawn->color;
    for (const guint16 part : {colour.red, colour.green, colour.blue}) {
        EXPECT_EQ(part & 0xFF, part >> 8) << "a part of 8 bits, twice";
    }
    const auto byte = [](guint16 part) { return static_cast<unsigned char>(part >> 8); };
    const wxColour bytes(byte(colour.red), byte(colour.green), byte(colour.blue));
    pango_attr_iterator_destroy(at);
    return bytes;
}

// What is on the screen at a place of a control without a window of its own.
wxColour ColourAt(const wxWindow& window, wxPoint place) {
    GtkAllocation at;
    gtk_widget_get_allocation(window.GetHandle(), &at);
    GdkPixbuf* const pixel = gdk_pixbuf_get_from_window(gtk_widget_get_window(window.GetHandle()),
                                                        at.x + place.x, at.y + place.y, 1, 1);
    const guint8* const parts = gdk_pixbuf_read_pixels(pixel);
    const wxColour colour(parts[0], parts[1], parts[2]);
    g_object_unref(pixel);
    return colour;
}

std::unique_ptr<CPinEntryDialog> FailedPrompt() {
    return std::make_unique<CPinEntryDialog>(nullptr, "Card", PinLengthRule(4, 8),
                                             DescribeFailure(PinRetryCounter{3, 2, false}));
}

ChangePinPrompt FailedChange(bool policed) {
    ChangePinPrompt prompt;
    prompt.bounds = {.newValue = {4, 8}, .oldValue = {4, 8}};
    prompt.attempts = {.noFailure = false, .finalTry = false, .triesLeft = 2};
    prompt.policed = policed;
    return prompt;
}

TEST(Look, TheHeadingIsTheMostProminentText) {
    const auto dialog = FailedPrompt();
    const Drawn heading = DrawnBeginning(LabelReading(*dialog, "To log in to \"Card\""));
    EXPECT_EQ(heading.weight, PANGO_WEIGHT_BOLD);
    for (const wxStaticText* const label : AllOf<wxStaticText>(*dialog)) {
        if (label->GetLabelText() != "To log in to \"Card\"") {
            EXPECT_LT(DrawnBeginning(*label).points, heading.points) << label->GetLabelText();
        }
    }
}

TEST(Look, AllOfAnEarlierFailureStandsInOneBannerInEveryDialog) {
    const auto expectInBanner = [](const wxDialog& dialog, const char* warning) {
        const wxStaticText& header = LabelReading(dialog, "PIN incorrect");
        EXPECT_NE(dynamic_cast<const Banner*>(header.GetParent()), nullptr);
        EXPECT_EQ(LabelReading(dialog, warning).GetParent(), header.GetParent());
    };
    expectInBanner(*FailedPrompt(),
                   "WARNING: Repeated login failures may lock the token! You have 2 tries "
                   "remaining");
    for (const bool policed : {false, true}) {
        expectInBanner(*std::make_unique<CChangePinDialog>(nullptr, FailedChange(policed)),
                       "You have 2 tries remaining WARNING: Repeated login failures may lock the "
                       "token!");
    }
}

TEST(Look, ABannerIsDrawnInAShadeOfItsColourThatCanBeRead) {
    auto* const frame = new wxFrame(nullptr, wxID_ANY, "Frame");
    auto* const banner = new Banner(frame);
    wxStaticText* const text = banner->AddText("Warning");
    frame->Show();
    ASSERT_TRUE(PumpUntil([&] { return gtk_widget_get_mapped(banner->GetHandle()) != FALSE; }));
    const auto expectDrawnIn = [&](const wxColour& shade, const wxBitmapBundle& icon) {
        EXPECT_EQ(DrawnColour(*text), shade);
        const auto hasEdge = [&] {
            const int middle = banner->GetSize().y / 2;
            return ColourAt(*banner, {2, middle}) == shade &&
                   ColourAt(*banner, {Card::kEdge + 2, middle}) == *wxWHITE;
        };
        EXPECT_TRUE(PumpUntil(hasEdge));
        EXPECT_TRUE(SamePicture(Nth<wxStaticBitmap>(*banner, 0).GetBitmap(),
                                icon.GetBitmap(wxSize(32, 32))));
    };
    const wxColour darkRed(224, 0, 0);
    expectDrawnIn(darkRed, ThemeIcon("dialog-warning", 32, darkRed));
    banner->ChangeText(*text, "Well done", Banner::Mood::Reassurance);
    expectDrawnIn({31, 127, 31}, BundleOf(Picture::Done));
    frame->Destroy();
}

TEST(Look, ABannerHasRoomForWhatMayTakeThePlaceOfItsText) {
    const auto dialog = std::make_unique<CChangePinDialog>(nullptr, FailedChange(false));
    const wxSize before = dialog->GetSize();
    wxStaticText& summary = *AllOf<wxStaticText>(*dialog).back();
    const wxString missing = summary.GetLabelText();
    for (size_t field = 0; field < 3; ++field) {
        Nth<PinField>(*dialog, field).SetValue("2468");
    }
    EXPECT_NE(summary.GetLabelText(), missing);
    dialog->Fit();
    EXPECT_EQ(dialog->GetSize(), before);
    EXPECT_LE(summary.GetBestSize().x, summary.GetSize().x);
}

TEST(Look, TheFirstLineOfAMessageIsBoldAndItsTextUnchanged) {
    const auto box =
        std::make_unique<CMessageDialog>(nullptr, "Caption", "First\nSecond", 0x400, 0);
    const wxStaticText& text = Nth<wxStaticText>(*box, 0);
    EXPECT_EQ(text.GetLabelText(), "First\nSecond");
    EXPECT_EQ(DrawnBeginning(text).weight, PANGO_WEIGHT_BOLD);
    EXPECT_EQ(DrawnBeginning(text).end, 5);
}

TEST(Look, AMessageBoxHasAtLeastItsWidthAndALargeIcon) {
    const auto box = std::make_unique<CMessageDialog>(nullptr, "Caption", "No", 0x200, 0);
    EXPECT_GE(box->GetClientSize().x, 320);
    EXPECT_EQ(Nth<wxStaticBitmap>(*box, 0).GetSize(), wxSize(48, 48));
}

TEST(Look, TheDefaultButtonStandsOutAndThatOfADeletionWarns) {
    const auto prompt = FailedPrompt();
    EXPECT_TRUE(HasStyle(*prompt->FindWindow(wxID_OK), "suggested-action"));
    EXPECT_FALSE(HasStyle(*prompt->FindWindow(wxID_CANCEL), "suggested-action"));
    const auto deletion = std::make_unique<CMessageDialog>(nullptr, "Caption", "Text", 0x400, 0,
                                                           Emphasis::Destructive);
    EXPECT_TRUE(HasStyle(*deletion->FindWindow(wxID_OK), "destructive-action"));
    EXPECT_FALSE(HasStyle(*deletion->FindWindow(wxID_OK), "suggested-action"));
}

TEST(Look, ABallAndItsTextAreOneButtonThatIsLargeEnough) {
    const auto dialog = std::make_unique<CChangePinDialog>(nullptr, FailedChange(false));
    ASSERT_EQ(AllOf<Indicator>(*dialog).size(), 4);
    for (const Indicator* const ball : AllOf<Indicator>(*dialog)) {
        EXPECT_EQ(ball->GetLabelText(), ball->GetToolTipText());
        EXPECT_GE(ball->GetSize().y, 24);
        EXPECT_GT(ball->GetSize().x, ball->GetTextExtent(ball->GetLabelText()).x + 16);
    }
}

TEST(Look, TheChosenBallIsDrawnOnADarkerGround) {
    auto* const frame = new wxFrame(nullptr, wxID_ANY, "Frame");
    auto* const ball = new Indicator(new wxPanel(frame), "Rule", true);
    frame->Show();
    ASSERT_TRUE(PumpUntil([&] { return gtk_widget_get_mapped(ball->GetHandle()) != FALSE; }));
    const auto luminance = [&] {
        const auto middle = ball->GetSize().y / 2;
        return ColourAt(*ball, {ball->GetSize().x - 4, middle}).GetLuminance();
    };
    double plain = 0;
    ASSERT_TRUE(PumpUntil([&] { return (plain = luminance()) > 0.8; }));
    ball->MarkChosen(true);
    EXPECT_TRUE(PumpUntil([&] { return luminance() < plain - 0.05; }));
    ball->MarkChosen(false);
    EXPECT_TRUE(PumpUntil([&] { return luminance() == plain; }));
    frame->Destroy();
}

TEST(Look, TheExplanationOfARuleDoesNotLookLikeAnInput) {
    const auto dialog = std::make_unique<CChangePinDialog>(nullptr, FailedChange(false));
    const auto& explanation = *AllOf<wxTextCtrl>(*dialog).back();
    ASSERT_FALSE(explanation.IsEditable());
    EXPECT_EQ(explanation.GetBackgroundColour(), dialog->GetBackgroundColour());
    EXPECT_EQ(gtk_scrolled_window_get_shadow_type(GTK_SCROLLED_WINDOW(explanation.GetHandle())),
              GTK_SHADOW_NONE);
}

// As themes have the signs of messages since GNOME 47.
TEST(Look, ASignThatAThemeHasPlainOnlyIsLargeAndColoured) {
    const std::filesystem::path theme = std::filesystem::path(getenv("ZELDLG_STAGE")) / "Plain";
    std::filesystem::create_directories(theme / "small");
    std::ofstream(theme / "index.theme") << "[Icon Theme]\nName=Plain\nDirectories=small,plain\n"
                                            "[small]\nSize=16\nType=Fixed\n"
                                            "[plain]\nSize=16\nMaxSize=512\nType=Scalable\n";
    ASSERT_TRUE(wxImage(16, 16).SaveFile((theme / "small/sign.png").string(), wxBITMAP_TYPE_PNG));
    std::filesystem::create_directories(theme / "plain");
    std::ofstream(theme / "plain/sign-symbolic.svg")
        << R"(<svg xmlns="http://www.w3.org/2000/svg" width="16" height="16">)"
           R"(<path d="M0 0h16v16H0z" fill="#2e3436"/></svg>)";
    gtk_icon_theme_prepend_search_path(gtk_icon_theme_get_default(), theme.parent_path().c_str());
    g_object_set(gtk_settings_get_default(), "gtk-icon-theme-name", "Plain", nullptr);
    const wxImage sign = ThemeIcon("sign", 48, *wxRED).GetBitmap(wxSize(48, 48)).ConvertToImage();
    gtk_settings_reset_property(gtk_settings_get_default(), "gtk-icon-theme-name");
    ASSERT_EQ(sign.GetSize(), wxSize(48, 48));
    for (const int place : {0, 24, 47}) {
        EXPECT_EQ(sign.GetRed(place, place), 255);
        EXPECT_EQ(sign.GetGreen(place, place), 0);
    }
}

TEST(Look, WindowsHaveAnIconOfTheThemeSoonAfterTheirFirstPicture) {
    const auto expectIcon = [](wxDialog& dialog, const std::string& name) {
        const auto icon = [&] { return gtk_window_get_icon_name(GTK_WINDOW(dialog.GetHandle())); };
        EXPECT_EQ(icon(), nullptr) << "with the first picture";
        dialog.Show();
        EXPECT_TRUE(PumpUntil([&] { return icon() != nullptr && name == icon(); })) << name;
    };
    expectIcon(*FailedPrompt(), "dialog-password");
    expectIcon(*std::make_unique<CMessageDialog>(nullptr, "Caption", "Text", 0x200, 0),
               "dialog-error");
    expectIcon(*std::make_unique<CKeyGenProgressDialog>(nullptr), "dialog-password");
    const auto list = std::make_unique<CTokenDialog>(nullptr);
    list->FinishLayout();
    expectIcon(*list, "dialog-password");
}

TEST(Look, TheResponseFieldIsOneLineAsWideAsTheResponse) {
    const auto widthFor = [](int32_t bytes) {
        const auto dialog =
            std::make_unique<CUnlockWithCRDialog>(UnlockWithCRPrompt{.tokenLabel = "Card",
                                                                     .challenge = {},
                                                                     .serialNumber = {},
                                                                     .responseLength = bytes,
                                                                     .newPinBounds = {}});
        const ResponseField& field = Nth<ResponseField>(*dialog, 0);
        EXPECT_LT(field.GetSize().y, 2 * field.GetCharHeight());
        return field.GetSize().x;
    };
    EXPECT_LT(widthFor(8), widthFor(12));
    EXPECT_EQ(widthFor(64), widthFor(128));
}

}  // namespace

}  // namespace zeldlg::test
