#include "pin/secret_text.h"

#include <algorithm>

namespace zeldlg {

namespace {

constexpr wchar_t kFirstPrintable = 32;
constexpr wchar_t kFirstNonAscii = 127;

std::size_t Index(long position) { return position < 0 ? 0 : static_cast<std::size_t>(position); }

}  // namespace

wxString MakeMask(std::size_t length) { return {kMaskCharacter, length}; }

bool IsAcceptedCharacter(wchar_t character, bool allowNonAscii) {
    return character >= kFirstPrintable && (character < kFirstNonAscii || allowNonAscii);
}

std::size_t Utf8Length(const wxString& text) { return text.utf8_str().length(); }

bool IsLimitReached(const wxString& text, int maxBytes) {
    return maxBytes != 0 && static_cast<long long>(Utf8Length(text)) >= maxBytes;
}

DeleteOutcome DeleteAtCaret(wxString& text, const TextCaret& caret, DeleteKey key) {
    if (caret.position == 0 && key == DeleteKey::kBack) {
        return DeleteOutcome::kIgnored;
    }
    const std::size_t position = Index(caret.position);
    if (caret.to > caret.from) {
        // kept: the removal starts at the caret, not at the start of the selection. A caret at
        // the far end of a selection would remove the wrong characters or run past the end.
        const std::size_t count = Index(caret.to - caret.from);
        if (position + count > text.length()) {
            return DeleteOutcome::kPastEnd;
        }
        text.erase(position, count);
        return DeleteOutcome::kDone;
    }
    const std::size_t doomed = key == DeleteKey::kBack ? position - 1 : position;
    if (doomed > text.length()) {
        return DeleteOutcome::kPastEnd;
    }
    text.erase(doomed, 1);
    return DeleteOutcome::kDone;
}

void DeleteSelection(wxString& text, const TextCaret& caret) {
    text = text.Left(Index(caret.from)) + text.Mid(Index(caret.to));
}

void InsertCharacter(wxString& text, long position, wchar_t character) {
    text.insert(std::min(Index(position), text.length()), 1, character);
}

void DropWhatIsNotShown(wxString& text, std::size_t shownLength, long caret) {
    const std::size_t length = text.length();
    if (shownLength >= length) {
        return;
    }
    text.erase(std::min(Index(caret), length), length - shownLength);
}

}  // namespace zeldlg
