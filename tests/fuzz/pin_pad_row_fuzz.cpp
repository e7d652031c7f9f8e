// Any sequence of a PIN pad's reports; the row is compared with one of 15 places that are filled
// one by one. The bytes: a report each; status words come with a length and that many characters.
#include "pin/pin_pad.h"

#include <string>

#include "fuzz_target.h"

namespace zeldlg::fuzz {

namespace {

constexpr int kPlaces = 15;

struct PlainRow {
    wchar_t places[kPlaces];

    int LastMask() const {
        int last = -1;
        for (int i = 0; i < kPlaces; ++i) {
            last = places[i] == L'*' ? i : last;
        }
        return last;
    }

    void Show(std::wstring words) {
        while (!words.empty() && words.front() == L' ') {
            words.erase(0, 1);
        }
        while (!words.empty() && words.back() == L' ') {
            words.pop_back();
        }
        const int length = words.size() > kPlaces ? kPlaces : static_cast<int>(words.size());
        const int left = (kPlaces - length) / 2;
        for (int i = 0; i < kPlaces; ++i) {
            const bool inside = i >= left && i < left + length;
            places[i] = inside ? words[static_cast<size_t>(i - left)] : L'_';
            places[i] = places[i] == L' ' ? L'_' : places[i];
        }
    }
};

std::wstring Words(FuzzInput& input) {
    constexpr wchar_t kLetters[] = L"  *_aZ\u00e9\U0001F511";
    std::wstring words;
    for (unsigned left = input.Below(40); left > 0; --left) {
        words += kLetters[input.Below(std::size(kLetters) - 1)];
    }
    return words;
}

/// @return whether the library says that the text changed
bool Report(FuzzInput& input, PinPadRow& row, PlainRow& plain) {
    switch (input.Below(5)) {
        case 0: {
            const std::wstring words = Words(input);
            plain.Show(words);
            return row.ShowStatus(words);
        }
        case 1:
            plain.Show(L"");
            return row.Clear();
        case 2:
            if (plain.LastMask() >= 0) {
                plain.places[plain.LastMask()] = L'_';
            }
            return row.DeleteChar();
        default:
            if (plain.LastMask() + 1 < kPlaces) {
                plain.places[plain.LastMask() + 1] = L'*';
            }
            return row.AddChar();
    }
}

}  // namespace

FUZZ_TARGET(pin_pad_row) {
    FuzzInput input(bytes);
    PinPadRow row;
    PlainRow plain{};
    plain.Show(L"");
    while (!input.IsEmpty()) {
        const std::wstring before = row.Text();
        const bool changed = Report(input, row, plain);
        REQUIRE_EQ(row.Text(), std::wstring(plain.places, kPlaces));
        REQUIRE_EQ(changed, row.Text() != before);
    }
}

}  // namespace zeldlg::fuzz
