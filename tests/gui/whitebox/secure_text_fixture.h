// A dialog with the control under test between two others, and what its owner hears of it.
#pragma once

#include <gtest/gtest.h>
#include <wx/button.h>
#include <wx/dialog.h>
#include <wx/textctrl.h>

#include <string>

#include "widgets/secure_text_control.h"

typedef struct _GtkEditable GtkEditable;
typedef struct _GtkEntry GtkEntry;

namespace zeldlg::test {

class SecureText : public testing::Test {
protected:
    static constexpr wxWindowID kFieldId = 4711;

    struct Options {
        int maxBytes = 0;
        bool allowNonAscii = false;
        long style = 0;
    };

    ~SecureText() override;

    /// Shows the dialog and gives the field the focus.
    void Open(const Options& options);
    void Open() { Open(Options()); }

    /// As Open(), with `text` in the field, the caret at its end and nothing counted yet.
    void OpenWith(const wxString& text, const Options& options);
    void OpenWith(const wxString& text) { OpenWith(text, Options()); }

    /// The two halves of Open(), for tests that derive from the control.
    void MakeDialog();
    void Show(CSecureTextControl* field);

    CSecureTextControl& Field() const { return *m_field; }
    GtkEntry* Entry() const;
    GtkEditable* Editable() const;

    /// What the toolkit's own widget holds.
    std::string Shown() const;
    std::string Secret() const { return m_field->GetValue().utf8_string(); }
    long Caret() const { return m_field->GetInsertionPoint(); }
    bool HasSelection() const;

    /// Fails unless the field holds `secret` and shows as many mask characters.
    void ExpectHolds(const std::string& secret) const;
    /// Fails unless the field holds `secret` and nothing is selected.
    void ExpectUntouched(const std::string& secret) const;

    /// wxEVT_TEXT that the control sent to its parent itself.
    int m_notifications = 0;
    /// wxEVT_TEXT of the toolkit that came up from the control.
    int m_toolkitEvents = 0;
    /// What the field held and showed at the last notification.
    wxString m_valueAtNotification;
    std::string m_shownAtNotification;

    wxDialog* m_dialog = nullptr;
    wxTextCtrl* m_plainField = nullptr;  ///< In front of the field in tab order.
    wxButton* m_okButton = nullptr;      ///< After the field; the default button.

private:
    void Listen();

    CSecureTextControl* m_field = nullptr;
};

}  // namespace zeldlg::test
