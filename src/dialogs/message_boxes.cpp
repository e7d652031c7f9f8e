#include "dialogs/message_boxes.h"

#include "dialogs/message_dialog.h"
#include "dialogs/token_error.h"
#include "resources/catalogue_key.h"
#include "resources/texts.h"
#include "widgets/window_ptr.h"

namespace zeldlg {

namespace {

bool ShowBox(wxWindow* parent, const char* caption, const wxString& text, long style) {
    return MakeWindow<CMessageDialog>(parent, Translate(caption), text, style, 0)->ShowModal() ==
           wxID_OK;
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

bool ShowQuestionBox(wxWindow* parent, const wxString& text) {
    return ShowBox(parent, CATALOGUE_KEY("Question"), text, wxICON_QUESTION);
}

void ShowTokenLockedBox(wxWindow* parent, const wxString& label) {
    ShowBox(parent, CATALOGUE_KEY("Token locked"),
            FormatHostTexts(CATALOGUE_KEY("The token \"%s\" is locked.\n"
                                          "Please use the token manager to unlock it,\n"
                                          "or contact your system administrator."),
                            label),
            wxICON_ERROR);
}

void ShowTokenErrorBox(wxWindow* parent, uint64_t code) {
    ShowErrorBox(parent, TokenErrorText(code));
}

void ShowUnknownErrorBox(wxWindow* parent, uint64_t code) {
    ShowErrorBox(parent, UnknownErrorText(code));
}

}  // namespace zeldlg
