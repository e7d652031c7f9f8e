#include "resources/text_direction.h"

#include <glib.h>

#include <algorithm>
#include <iterator>

namespace zeldlg {

namespace {

constexpr wchar_t kFirstStrongIsolate = L'\u2068';
constexpr wchar_t kPopIsolate = L'\u2069';
constexpr wchar_t kLeftToRightMark = L'\u200E';
constexpr wchar_t kRightToLeftMark = L'\u200F';

// The characters that end a paragraph for the bidirectional algorithm.
constexpr wchar_t kParagraphEndList[] = {L'\n', L'\r', 0x1C, 0x1D, 0x1E, 0x85, 0x2029};
constexpr std::wstring_view kParagraphEnds{kParagraphEndList, std::size(kParagraphEndList)};

bool IsIn(wchar_t character, wchar_t first, wchar_t last) {
    return first <= character && character <= last;
}

bool IsControl(wchar_t character) {
    return IsIn(character, L'\u202A', L'\u202E') || IsIn(character, L'\u2066', kPopIsolate) ||
           character == kLeftToRightMark || character == kRightToLeftMark || character == L'\u061C';
}

bool OpensIsolate(wchar_t character) { return IsIn(character, L'\u2066', kFirstStrongIsolate); }

bool EndsParagraph(wchar_t character) {
    return kParagraphEnds.find(character) != std::wstring_view::npos;
}

// The blocks that Unicode keeps for what is written from right to left, letters to come included.
// Their digits are not, and their marks are written as the letter before is.
bool IsRightToLeft(wchar_t character) {
    const auto code = static_cast<gunichar>(character);
    return (IsIn(character, 0x0590, 0x08FF) || IsIn(character, 0xFB1D, 0xFDFF) ||
            IsIn(character, 0xFE70, 0xFEFE) || IsIn(character, 0x10800, 0x10FFF) ||
            IsIn(character, 0x1E800, 0x1EFFF)) &&
           !g_unichar_isdigit(code) && !g_unichar_ismark(code);
}

bool IsLetter(wchar_t character) {
    return g_unichar_isalpha(static_cast<gunichar>(character)) || IsRightToLeft(character);
}

TextDirection DirectionOfLetter(wchar_t letter) {
    return IsRightToLeft(letter) ? TextDirection::RightToLeft : TextDirection::LeftToRight;
}

wchar_t MarkOf(TextDirection direction) {
    return direction == TextDirection::RightToLeft ? kRightToLeftMark : kLeftToRightMark;
}

// What a text has opened so far and not closed, and how much it has closed without having opened
// it.
struct Isolates {
    std::wstring open;
    size_t unopened = 0;

    void Take(wchar_t character) {
        if (OpensIsolate(character)) {
            open += character;
        } else if (character == kPopIsolate && open.empty()) {
            ++unopened;
        } else if (character == kPopIsolate) {
            open.pop_back();
        }
    }
};

std::wstring Enclosed(std::wstring_view paragraph) {
    Isolates isolates;
    for (const wchar_t character : paragraph) {
        isolates.Take(character);
    }
    std::wstring enclosed(isolates.unopened + 1, kFirstStrongIsolate);
    enclosed += paragraph;
    return enclosed + Closing(isolates.open) + kPopIsolate;
}

}  // namespace

std::optional<TextDirection> DirectionOf(std::wstring_view text) {
    const auto* const letter = std::find_if(text.begin(), text.end(), IsLetter);
    return letter != text.end() ? std::optional(DirectionOfLetter(*letter)) : std::nullopt;
}

std::wstring Isolated(const std::wstring& text, TextDirection surroundings) {
    if (std::none_of(text.begin(), text.end(), [surroundings](wchar_t character) {
            return IsControl(character) ||
                   (IsLetter(character) && DirectionOfLetter(character) != surroundings);
        })) {
        return text;
    }
    std::wstring isolated;
    for (std::wstring_view rest = text; !rest.empty();) {
        const size_t end = std::min(rest.find_first_of(kParagraphEnds), rest.size());
        if (end > 0) {
            // A paragraph begins here, which is to go on as the sentence began.
            isolated += isolated.empty() ? std::wstring() : std::wstring(1, MarkOf(surroundings));
            isolated += Enclosed(rest.substr(0, end));
        }
        isolated += rest.substr(end, 1);
        rest.remove_prefix(std::min(end + 1, rest.size()));
    }
    return isolated;
}

std::wstring WithOwnDirection(const std::wstring& sentence, TextDirection direction) {
    const auto first = std::find_if(sentence.begin(), sentence.end(), [](wchar_t character) {
        return IsLetter(character) || character == kFirstStrongIsolate;
    });
    const bool isEnclosed = first != sentence.end() && *first == kFirstStrongIsolate;
    return isEnclosed ? MarkOf(direction) + sentence : sentence;
}

std::wstring OpenIsolates(std::wstring_view text) {
    Isolates isolates;
    for (const wchar_t character : text) {
        if (EndsParagraph(character)) {
            isolates = {};
        } else {
            isolates.Take(character);
        }
    }
    return isolates.open;
}

std::wstring Closing(std::wstring_view open) { return std::wstring(open.size(), kPopIsolate); }

std::wstring CutTo(const std::wstring& text, size_t limit) {
    for (size_t length = std::min(limit, text.size());; --length) {
        const std::wstring kept = text.substr(0, length);
        const std::wstring closing =
            length < text.size() ? Closing(OpenIsolates(kept)) : std::wstring();
        if (length + closing.size() <= limit) {
            return kept + closing;
        }
    }
}

}  // namespace zeldlg
