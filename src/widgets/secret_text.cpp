#include "widgets/secret_text.h"

#include <algorithm>

#include "platform/secret.h"

namespace zeldlg {

namespace {

constexpr wchar_t kFirstPrintable = 32;
constexpr wchar_t kFirstNonAscii = 127;

constexpr wxUint32 kLastCodePoint = 0x10FFFF;
constexpr size_t kLeastRoom = 64;

// A text that grows by itself leaves a copy behind.
void MakeRoom(wxString& text, size_t length) {
    if (length <= text.capacity()) {
        return;
    }
    wxString roomy;
    roomy.reserve(std::max(length * 2, kLeastRoom));
    roomy += text;
    text.swap(roomy);
    Forget(roomy);
}

size_t Index(long position) { return position < 0 ? 0 : static_cast<size_t>(position); }

}  // namespace

wxString MakeMask(size_t length) { return {kMaskCharacter, length}; }

bool IsAcceptedCharacter(wchar_t character, bool allowNonAscii) {
    return character >= kFirstPrintable && (character < kFirstNonAscii || allowNonAscii);
}

// Without a conversion: that would be one more copy of the secret.
size_t Utf8Length(const wxString& text) {
    size_t length = 0;
    for (const wxUniChar character : text) {
        const wxUint32 code = character.GetValue();
        if (code > kLastCodePoint) {
            return 0;
        }
        length += code < 0x80 ? 1U : code < 0x800 ? 2U : code < 0x10000 ? 3U : 4U;
    }
    return length;
}

void Forget(wxString& text) {
    // What was erased may still stand behind the end.
    platform::ForgetSecret(const_cast<wchar_t*>(text.wc_str()), text.capacity() * sizeof(wchar_t));
    text.clear();
}

void Assign(wxString& text, const wxString& value) {
    if (&text != &value) {
        Forget(text);
        Append(text, value);
    }
}

void Append(wxString& text, const wxString& value) {
    MakeRoom(text, text.length() + value.length());
    text += value;
}

bool IsLimitReached(const wxString& text, int maxBytes) {
    return maxBytes != 0 && static_cast<long long>(Utf8Length(text)) >= maxBytes;
}

DeleteOutcome DeleteAtCaret(wxString& text, const TextCaret& caret, DeleteKey key) {
    if (caret.position == 0 && key == DeleteKey::Back) {
        return DeleteOutcome::Ignored;
    }
    const size_t position = Index(caret.position);
    if (caret.to > caret.from) {
        // kept: the removal starts at the caret, not at the start of the selection. A caret at
        // the far end of a selection would remove the wrong characters or run past the end.
        const size_t count = Index(caret.to - caret.from);
        if (position + count > text.length()) {
            return DeleteOutcome::PastEnd;
        }
        text.erase(position, count);
        return DeleteOutcome::Done;
    }
    const size_t doomed = key == DeleteKey::Back ? position - 1 : position;
    if (doomed > text.length()) {
        return DeleteOutcome::PastEnd;
    }
    text.erase(doomed, 1);
    return DeleteOutcome::Done;
}

void DeleteSelection(wxString& text, const TextCaret& caret) {
    const size_t from = std::min(Index(caret.from), text.length());
    text.erase(from, Index(caret.to) - from);
}

void InsertCharacter(wxString& text, long position, wchar_t character) {
    MakeRoom(text, text.length() + 1);
    text.insert(std::min(Index(position), text.length()), 1, character);
}

void DropWhatIsNotShown(wxString& text, size_t shownLength, long caret) {
    const size_t length = text.length();
    if (shownLength >= length) {
        return;
    }
    text.erase(std::min(Index(caret), length), length - shownLength);
}

}  // namespace zeldlg
