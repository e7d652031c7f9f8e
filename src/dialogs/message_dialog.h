// The library's own message box: an icon, a text, and OK or Yes and No; Yes may carry a visible
// count-down of seconds. Its style flags are the toolkit's: which icon, which buttons.
#pragma once

#include <wx/button.h>
#include <wx/dialog.h>
#include <wx/sizer.h>
#include <wx/timer.h>

#include <cstdint>
#include <memory>

#include "widgets/accessible.h"

#include "widgets/button.h"

namespace zeldlg {

// What the toolkit's message-box flags stand for.
enum class MessageIcon { Information, Warning, Error, Question };
enum class MessageButtons { Ok, OkCancel, YesNo };

MessageIcon MessageIconOf(long style);
MessageButtons MessageButtonsOf(long style);

/// ShowModal() returns wxID_OK for OK and Yes; wxID_CANCEL for No, Cancel, Escape and the close
/// box, also where OK is the only button.
class CMessageDialog : public wxDialog {
public:
    /// @param parent May be null: the box then belongs to no other window.
    /// @param message Shown literally, wrapped where the screen ends; scrolls when that is too
    /// small
    ///        for it.
    /// @param style The toolkit's message-box flags.
    /// @param countDownSeconds 0 for none; ignored without Yes and No.
    /// @param emphasis How the default button stands out.
    CMessageDialog(wxWindow* parent, const wxString& caption, const wxString& message, long style,
                   int64_t countDownSeconds, Emphasis emphasis = Emphasis::Suggested);

private:
    wxSizer* NewMessageRow(const wxString& message, long style);
    void AddButtons(wxSizer& rows, long style);
    void AddButtonPair(wxSizer& rows, wxButton* confirm, const wxString& cancelLabel);
    wxButton* NewYesButton();
    void MakeDefault(wxButton* button);

    void FinishLayout(wxSizer* rows);

    void StartCountDown();
    void ShowSecondsLeft();

    wxTimer m_timer;
    int64_t m_remainingSeconds;
    Emphasis m_emphasis;
    const char* m_windowIcon = nullptr;
    SpokenCountDown m_spokenCountDown;
    std::unique_ptr<LiveDescription> m_description;  // of the button that counts down
    wxStaticText* m_message = nullptr;
    wxButton* m_defaultButton = nullptr;
};

}  // namespace zeldlg
