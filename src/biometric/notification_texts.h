// What the user of a fingerprint token is told while the token waits for a finger.
#pragma once

#include <wx/string.h>

namespace zeldlg {

enum class NotificationMode { Authentication, Enrolment };

/// Translated.
struct NotificationTexts {
    wxString headline;     ///< What it is about: the main text's first paragraph.
    wxString explanation;  ///< The rest of the main text, with the empty line before it.
    wxString instruction;
};

NotificationTexts TextsOf(NotificationMode mode);

}  // namespace zeldlg
