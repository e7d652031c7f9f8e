// Editing of a secret behind its mask, with carets and selections from anywhere, as a broken input
// method might report them: compared with the same edits on a list of characters.
#include "widgets/secret_text.h"

#include <algorithm>
#include <clocale>

#include "fuzz_target.h"
#include "plain/plain_text.h"

namespace zeldlg::fuzz {

namespace {

using Characters = std::u32string;

constexpr char32_t kLetters[] = U"aZ0 *\u007f\u00e9\u20ac\U0001F511";

/// Mostly near the text, now and then far from it.
long Position(FuzzInput& input, size_t length) {
    const auto end = static_cast<long>(length);
    switch (input.Below(8)) {
        case 0:
            return static_cast<int32_t>(input.Word());
        case 1:
            return end + static_cast<long>(input.Below(4));
        default:
            return static_cast<long>(input.Below(256)) % (end + 1);
    }
}

TextCaret Caret(FuzzInput& input, size_t length) {
    TextCaret caret;
    caret.position = Position(input, length);
    caret.from = Position(input, length);
    caret.to = input.Flag() ? caret.from : Position(input, length);
    return caret;
}

size_t Clamped(long position, size_t length) {
    return position < 0 ? 0 : std::min(static_cast<size_t>(position), length);
}

class Game {
public:
    explicit Game(FuzzInput input) : m_input(std::move(input)) {}

    void Play() {
        while (!m_input.IsEmpty()) {
            Step();
            REQUIRE_EQ(m_text.ToStdWstring(), plain::AsWide(m_plain));
            const size_t bytes = plain::PlainEncode(m_plain).size();
            REQUIRE_EQ(Utf8Length(m_text), bytes);
            const auto limit = static_cast<int>(m_input.Below(40));
            REQUIRE_EQ(IsLimitReached(m_text, limit),
                       limit != 0 && bytes >= static_cast<size_t>(limit));
            REQUIRE_EQ(MakeMask(m_plain.size()).ToStdWstring(), std::wstring(m_plain.size(), L'*'));
        }
    }

private:
    void Step() {
        switch (m_input.Below(6)) {
            case 0:
                return Delete(m_input.Flag() ? DeleteKey::Back : DeleteKey::Delete);
            case 1:
                return DeleteMarked();
            case 2:
                return DropHidden();
            default:
                return Insert();
        }
    }

    void Insert() {
        const char32_t letter = kLetters[m_input.Below(std::size(kLetters) - 1)];
        const bool allowAll = m_input.Flag();
        const bool accepted = letter >= 32 && (letter < 127 || allowAll);
        REQUIRE_EQ(IsAcceptedCharacter(static_cast<wchar_t>(letter), allowAll), accepted);
        const long position = Position(m_input, m_plain.size());
        m_plain.insert(Clamped(position, m_plain.size()), 1, letter);
        InsertCharacter(m_text, position, static_cast<wchar_t>(letter));
    }

    void Delete(DeleteKey key) {
        const TextCaret caret = Caret(m_input, m_plain.size());
        const Characters before = m_plain;
        const DeleteOutcome outcome = DeleteAtCaret(m_text, caret, key);
        if (key == DeleteKey::Back && caret.position == 0) {
            REQUIRE(outcome == DeleteOutcome::Ignored);
            return;
        }
        const bool marked = caret.to > caret.from;
        const long count = marked ? caret.to - caret.from : 1;
        const long from = std::max(caret.position, 0L) - (!marked && key == DeleteKey::Back);
        const auto length = static_cast<long>(m_plain.size());
        // One past the end is where Delete has nothing to remove.
        const bool outside = from < 0 || from > length || (marked && from + count > length);
        REQUIRE_EQ(outcome == DeleteOutcome::PastEnd, outside);
        if (!outside) {
            m_plain.erase(static_cast<size_t>(from), static_cast<size_t>(count));
        }
    }

    void DeleteMarked() {
        TextCaret caret = Caret(m_input, m_plain.size());
        caret.to = std::max(caret.to, caret.from);
        const size_t from = Clamped(caret.from, m_plain.size());
        const size_t to = Clamped(caret.to, m_plain.size());
        m_plain.erase(from, to - from);
        DeleteSelection(m_text, caret);
    }

    void DropHidden() {
        const size_t shown = m_input.Byte();
        const long caret = Position(m_input, m_plain.size());
        if (shown < m_plain.size()) {
            const size_t from = Clamped(caret, m_plain.size());
            m_plain.erase(from, m_plain.size() - shown);
        }
        DropWhatIsNotShown(m_text, shown, caret);
    }

    FuzzInput m_input;
    wxString m_text;
    Characters m_plain;
};

}  // namespace

FUZZ_TARGET(secret_text) {
    static const bool localeSet = std::setlocale(LC_ALL, "C.UTF-8") != nullptr;
    REQUIRE(localeSet);
    Game{FuzzInput(bytes)}.Play();
}

}  // namespace zeldlg::fuzz
