// What happens to a secret while it is edited behind its mask: plain operations on the text,
// without a window, so that every rule of the secure text control can be tested by itself.
// Like that control it has no caller in the dialogs; it is kept, and tested.
#pragma once

#include <wx/string.h>

#include <cstddef>

namespace zeldlg {

/// Stands on the screen for each character of a secret.
constexpr wchar_t kMaskCharacter = L'*';

/// Where the caret of a field is and what is selected, in characters. `from == to`: nothing is.
struct TextCaret {
    long position = 0;
    long from = 0;
    long to = 0;
};

enum class DeleteKey { Back, Delete };

enum class DeleteOutcome {
    Ignored,  ///< Back at the start of the text: the key is to have no effect at all.
    Done,     ///< The secret is up to date (Delete at its very end has nothing to remove).
    PastEnd,  ///< The caret does not belong to this text; nothing was removed.
};

/// `length` mask characters.
wxString MakeMask(size_t length);

/// Printable ASCII always may be typed; from U+007F on only with `allowNonAscii`.
bool IsAcceptedCharacter(wchar_t character, bool allowNonAscii);

/// Empties a text that is given up.
void Forget(wxString& text);

/// Makes `text` a copy of `value`, which may be `text` itself.
void Assign(wxString& text, const wxString& value);

/// Adds `value`, which may be `text` itself, at the end.
void Append(wxString& text, const wxString& value);

/// Length of `text` in UTF-8, in bytes; 0 when it cannot be converted.
size_t Utf8Length(const wxString& text);

/// True when `text` already has `maxBytes` bytes of UTF-8 or more. 0 means no limit.
bool IsLimitReached(const wxString& text, int maxBytes);

/// What one press of Back or Delete does to `text`.
DeleteOutcome DeleteAtCaret(wxString& text, const TextCaret& caret, DeleteKey key);

/// Takes the selection of `caret` out of `text`.
void DeleteSelection(wxString& text, const TextCaret& caret);

/// Puts `character` in front of position `position`; positions past the end mean the end.
void InsertCharacter(wxString& text, long position, wchar_t character);

/// Follows a deletion that only the field knows of: when the field shows fewer characters than
/// `text` has, the difference is taken out of `text` from the caret onwards.
void DropWhatIsNotShown(wxString& text, size_t shownLength, long caret);

}  // namespace zeldlg
