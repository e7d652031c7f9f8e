// A single-line text control for secrets: the toolkit's field holds only mask characters, the
// secret itself a private string. Also the width that every PIN field of the library has.
#pragma once

#include <wx/event.h>
#include <wx/string.h>
#include <wx/textctrl.h>

#include "widgets/secret_text.h"

namespace zeldlg {

/// Masked entry of a secret, on the GUI thread only. No dialog makes one, they have PinField and
/// take from here the width of a field; kept, and tested.
///
/// Typing is the only way in and `GetValue()` the only way out: clipboard, drag and drop, menu
/// commands and selecting with mouse or keyboard do nothing. After each character that a key
/// inserts or removes the parent's event handler gets a wxEVT_TEXT with this control's id,
/// synchronously; the toolkit's own wxEVT_TEXT of the same change propagates to it besides.
/// The secret is overwritten when the control dies only in a library built for that.
class CSecureTextControl : public wxTextCtrl {
public:
    /// @param minLength      kept for the owner, never read here.
    /// @param maxBytes       bytes of UTF-8 from which on each typed character rings the bell;
    ///                       it is inserted all the same. 0 = no limit.
    /// @param allowNonAscii  whether more than printable ASCII can be typed.
    /// @param style          wxTextCtrl styles on top of the control's own.
    CSecureTextControl(wxWindow* parent, wxWindowID id, int minLength, int maxBytes,
                       const wxSize& size, bool allowNonAscii, long style);
    ~CSecureTextControl() override;

    /// A copy of the secret; give it to Forget() afterwards.
    wxString GetValue() const override;
    /// Replaces the secret; sends wxEVT_TEXT.
    void SetValue(const wxString& value) override;
    /// Replaces the secret without an event.
    void ChangeValue(const wxString& value) override;
    /// The secret for line 0, nothing for any other line.
    wxString GetLineText(long line) const override;
    void AppendText(const wxString& text) override;
    void Clear() override;
    /// For code only: what the user selects is unselected at once.
    void SetSelection(long from, long to) override;

    /// The lower bound that the owner set; the owner is the one to enforce it.
    int GetMinLength() const { return m_minLength; }

    /// Measures the width of 18 mask characters in the default GUI font on `window`.
    static void MeasureFieldWidth(wxWindow* window);
    /// Width of a PIN field in pixels: 130 until it has been measured.
    static int GetFieldWidth();

private:
    void BlockNativeEditing();
    void ShowMask(int setValueFlag);
    void RestoreMask(long caret);
    void ShortenMask();
    void DeleteAtCaret(wxKeyEvent& event);
    void InsertTyped(wchar_t character);
    void RefuseTyped();
    void NotifyParent();
    TextCaret GetCaret() const;

    void OnText(wxCommandEvent& event);
    void OnConsumedCommand(wxCommandEvent& event);
    void OnConsumedClipboard(wxClipboardTextEvent& event);
    void OnConsumedUpdate(wxUpdateUIEvent& event);
    void OnSetFocus(wxFocusEvent& event);
    void OnKillFocus(wxFocusEvent& event);
    void OnContextMenu(wxContextMenuEvent& event);
    void OnChar(wxKeyEvent& event);
    void OnKeyDown(wxKeyEvent& event);
    void OnMouse(wxMouseEvent& event);

    wxString m_realText;
    int m_minLength;
    int m_maxBytes;
    bool m_allowNonAscii;

    wxDECLARE_EVENT_TABLE();
};

}  // namespace zeldlg
