#include "dialogs/message_boxes.h"

#include "dialogs/message_dialog.h"
#include "resources/texts.h"

namespace zeldlg {

namespace {

bool ShowBox(wxWindow* parent, const char* caption, const wxString& text, long style,
             Emphasis emphasis = Emphasis::Suggested) {
    return CMessageDialog(parent, Translate(caption), text, style, 0, emphasis).ShowModal() ==
           wxID_OK;
}

struct Row {
    uint64_t code;
    const char* text;
};

constexpr Row kRows[] = {
    {6, CATALOGUE_KEY("Device error")},
    {16, CATALOGUE_KEY("Token is read-only")},
    {49, CATALOGUE_KEY("Token out of memory")},
    {50, CATALOGUE_KEY("Token removed before the operation could complete")},
    {164, CATALOGUE_KEY("PIN locked")},
    {224, CATALOGUE_KEY("Token not present")},
    {226, CATALOGUE_KEY("Token is read-only")},
};

wxString WithCode(const char* text, uint64_t code) {
    return Translate(text) + FormatTranslated(" (0x%02X)", static_cast<unsigned>(code));
}

}  // namespace

void ShowWarningBox(wxWindow* parent, const wxString& text) {
    ShowBox(parent, CATALOGUE_KEY("Warning"), text, wxICON_WARNING);
}

void ShowErrorBox(wxWindow* parent, const wxString& text) {
    ShowBox(parent, CATALOGUE_KEY("Error"), text, wxICON_ERROR);
}

void ShowInformationBox(wxWindow* parent, const wxString& text) {
    ShowBox(parent, CATALOGUE_KEY("Information"), text, wxICON_INFORMATION);
}

bool ShowQuestionBox(wxWindow* parent, const wxString& text, Emphasis emphasis) {
    return ShowBox(parent, CATALOGUE_KEY("Question"), text, wxICON_QUESTION, emphasis);
}

void ShowTokenLockedBox(wxWindow* parent, const wxString& label) {
    ShowBox(parent, CATALOGUE_KEY("Token locked"),
            FormatHostTexts("The token \"%s\" is locked.\n"
                            "Please use the token manager to unlock it,\n"
                            "or contact your system administrator.",
                            label),
            wxICON_ERROR);
}

wxString TokenErrorText(uint64_t code) {
    for (const Row& row : kRows) {
        if (row.code == code) {
            return Translate(row.text);
        }
    }
    return WithCode(CATALOGUE_KEY("Device error"), code);
}

wxString UnknownErrorText(uint64_t code) { return WithCode(CATALOGUE_KEY("Unknown error"), code); }

void ShowTokenErrorBox(wxWindow* parent, uint64_t code) {
    ShowErrorBox(parent, TokenErrorText(code));
}

void ShowUnknownErrorBox(wxWindow* parent, uint64_t code) {
    ShowErrorBox(parent, UnknownErrorText(code));
}

}  // namespace zeldlg
