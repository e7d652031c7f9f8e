#include "widgets/secret_text.h"

#include <gtest/gtest.h>
#include <wx/debug.h>

namespace zeldlg {
namespace {

TextCaret At(long position) { return {position, position, position}; }

TextCaret Selected(long from, long to, long position) { return {position, from, to}; }

struct Deleted {
    DeleteOutcome outcome;
    wxString text;

    bool operator==(const Deleted&) const = default;
};

void PrintTo(const Deleted& deleted, std::ostream* out) {
    *out << static_cast<int>(deleted.outcome) << " \"" << deleted.text << '"';
}

Deleted Delete(const wxString& text, const TextCaret& caret, DeleteKey key) {
    Deleted result{DeleteOutcome::Ignored, text};
    result.outcome = DeleteAtCaret(result.text, caret, key);
    return result;
}

Deleted Back(const wxString& text, const TextCaret& caret) {
    return Delete(text, caret, DeleteKey::Back);
}

Deleted Del(const wxString& text, const TextCaret& caret) {
    return Delete(text, caret, DeleteKey::Delete);
}

Deleted Done(const wxString& text) { return {DeleteOutcome::Done, text}; }

TEST(SecretTextMask, HasOneAsteriskPerCharacter) {
    EXPECT_EQ(MakeMask(0), "");
    EXPECT_EQ(MakeMask(18), "******************");
}

TEST(SecretTextFilter, AcceptsPrintableAsciiAlways) {
    for (wchar_t character = 32; character < 127; ++character) {
        EXPECT_TRUE(IsAcceptedCharacter(character, false)) << static_cast<int>(character);
        EXPECT_TRUE(IsAcceptedCharacter(character, true)) << static_cast<int>(character);
    }
}

TEST(SecretTextFilter, RefusesControlCharactersAlways) {
    for (wchar_t character = 0; character < 32; ++character) {
        EXPECT_FALSE(IsAcceptedCharacter(character, false)) << static_cast<int>(character);
        EXPECT_FALSE(IsAcceptedCharacter(character, true)) << static_cast<int>(character);
    }
}

TEST(SecretTextFilter, AcceptsTheRestWhereAllowed) {
    for (const wchar_t character : {L'\x7f', L'\x80', L'\u00e9', L'\u20ac', L'\U0001f511'}) {
        EXPECT_FALSE(IsAcceptedCharacter(character, false)) << static_cast<int>(character);
        EXPECT_TRUE(IsAcceptedCharacter(character, true)) << static_cast<int>(character);
    }
}

TEST(SecretTextLength, CountsBytesOfUtf8) {
    EXPECT_EQ(Utf8Length(""), 0U);
    EXPECT_EQ(Utf8Length("1234"), 4U);
    EXPECT_EQ(Utf8Length(L"\u00e9"), 2U);
    EXPECT_EQ(Utf8Length(L"\u20ac"), 3U);
    EXPECT_EQ(Utf8Length(L"\U0001f511"), 4U);
}

TEST(SecretTextLength, GrowsWhereUtf8Does) {
    const struct {
        wchar_t character;
        size_t bytes;
    } rows[] = {{0x7F, 1},   {0x80, 2},    {0x7FF, 2},   {0x800, 3},
                {0xFFFF, 3}, {0x10000, 4}, {0x10FFFF, 4}};
    for (const auto& row : rows) {
        EXPECT_EQ(Utf8Length(wxString(row.character)), row.bytes)
            << std::hex << static_cast<long>(row.character);
    }
}

TEST(SecretTextLength, OfWhatCannotBeConvertedIsZero) {
    const wxAssertHandler_t handler = wxSetAssertHandler(nullptr);  // The toolkit would complain.
    const wxString beyondUnicode = wxString("1234") + static_cast<wchar_t>(0x110000);
    EXPECT_EQ(Utf8Length(beyondUnicode), 0U);
    EXPECT_FALSE(IsLimitReached(beyondUnicode, 1));
    wxSetAssertHandler(handler);
}

TEST(SecretTextLimit, IsReachedAtTheLimitItself) {
    EXPECT_FALSE(IsLimitReached("123", 4));
    EXPECT_TRUE(IsLimitReached("1234", 4));
    EXPECT_TRUE(IsLimitReached("12345", 4));
    EXPECT_TRUE(IsLimitReached(L"\u00e9\u00e9", 4));
}

TEST(SecretTextLimit, OfZeroIsNone) {
    EXPECT_FALSE(IsLimitReached("", 0));
    EXPECT_FALSE(IsLimitReached(wxString('1', 10'000), 0));
}

TEST(SecretTextDelete, BackTakesTheCharacterBeforeTheCaret) {
    EXPECT_EQ(Back("1234", At(4)), Done("123"));
    EXPECT_EQ(Back("1234", At(1)), Done("234"));
}

TEST(SecretTextDelete, DeleteTakesTheCharacterAtTheCaret) {
    EXPECT_EQ(Del("1234", At(0)), Done("234"));
    EXPECT_EQ(Del("1234", At(3)), Done("123"));
}

TEST(SecretTextDelete, BackAtTheStartIsIgnored) {
    const Deleted untouched{DeleteOutcome::Ignored, "1234"};
    EXPECT_EQ(Back("1234", At(0)), untouched);
    EXPECT_EQ(Back("1234", Selected(0, 2, 0)), untouched);
}

TEST(SecretTextDelete, DeleteAtTheEndRemovesNothing) {
    EXPECT_EQ(Del("1234", At(4)), Done("1234"));
    EXPECT_EQ(Del("", At(0)), Done(""));
}

TEST(SecretTextDelete, SelectionIsTakenFromTheCaretOnwards) {
    EXPECT_EQ(Del("123456", Selected(1, 3, 1)), Done("1456"));
    EXPECT_EQ(Back("123456", Selected(1, 3, 1)), Done("1456"));
    EXPECT_EQ(Del("123456", Selected(1, 3, 3)), Done("1236"));
    EXPECT_EQ(Del("123456", Selected(0, 6, 0)), Done(""));
}

TEST(SecretTextDelete, SelectionThatEndsPastTheTextIsLeftAlone) {
    const Deleted untouched{DeleteOutcome::PastEnd, "1234"};
    EXPECT_EQ(Del("1234", Selected(0, 4, 4)), untouched);
    EXPECT_EQ(Back("1234", Selected(0, 4, 4)), untouched);
    EXPECT_EQ(Del("1234", Selected(2, 4, 3)), untouched);
}

TEST(SecretTextDelete, CaretPastTheTextIsFoundOut) {
    const Deleted untouched{DeleteOutcome::PastEnd, "12"};
    EXPECT_EQ(Del("12", At(3)), untouched);
    EXPECT_EQ(Back("12", At(4)), untouched);
}

TEST(SecretTextInsert, PutsTheCharacterBeforeThePosition) {
    wxString text = "12";
    InsertCharacter(text, 1, L'x');
    EXPECT_EQ(text, "1x2");
    InsertCharacter(text, 3, L'y');
    EXPECT_EQ(text, "1x2y");
    InsertCharacter(text, 99, L'z');
    EXPECT_EQ(text, "1x2yz");
}

TEST(SecretTextSelection, IsTakenOut) {
    wxString text = "123456";
    DeleteSelection(text, Selected(1, 4, 1));
    EXPECT_EQ(text, "156");
    DeleteSelection(text, At(2));
    EXPECT_EQ(text, "156");
    DeleteSelection(text, Selected(0, 3, 3));
    EXPECT_EQ(text, "");
}

TEST(SecretTextReconcile, DropsTheDifferenceFromTheCaretOnwards) {
    wxString text = "123456";
    DropWhatIsNotShown(text, 4, 1);
    EXPECT_EQ(text, "1456");
    DropWhatIsNotShown(text, 0, 0);
    EXPECT_EQ(text, "");
}

TEST(SecretTextReconcile, LeavesTextAloneThatIsShownWhole) {
    wxString text = "1234";
    DropWhatIsNotShown(text, 4, 0);
    DropWhatIsNotShown(text, 9, 0);
    EXPECT_EQ(text, "1234");
}

}  // namespace
}  // namespace zeldlg
