#include "pin/pin_pad.h"

#include <algorithm>
#include <utility>

namespace zeldlg {

namespace {

std::wstring_view TrimSpaces(std::wstring_view text) {
    const size_t first = std::min(text.find_first_not_of(L' '), text.size());
    const size_t last = text.find_last_not_of(L' ') + 1;  // 0 when there is nothing but spaces
    return text.substr(first, std::max(first, last) - first);
}

}  // namespace

size_t PinPadRow::Digits() const {
    return static_cast<size_t>(std::count(m_text.begin(), m_text.end(), kMask));
}

bool PinPadRow::AddChar() {
    const size_t last = m_text.rfind(kMask);
    const size_t next = last == std::wstring::npos ? 0 : last + 1;
    if (next == kWidth) {
        return false;
    }
    m_text[next] = kMask;
    return true;
}

bool PinPadRow::DeleteChar() {
    const size_t last = m_text.rfind(kMask);
    if (last == std::wstring::npos) {
        return false;
    }
    m_text[last] = kBlank;
    return true;
}

bool PinPadRow::Clear() { return Replace(std::wstring(kWidth, kBlank)); }

bool PinPadRow::ShowStatus(std::wstring_view words) {
    const std::wstring_view shown = TrimSpaces(words).substr(0, kWidth);
    std::wstring text((kWidth - shown.size()) / 2, kBlank);
    text += shown;
    text.resize(kWidth, kBlank);
    std::replace(text.begin(), text.end(), L' ', kBlank);
    return Replace(std::move(text));
}

bool PinPadRow::Replace(std::wstring text) {
    if (text == m_text) {
        return false;
    }
    m_text = std::move(text);
    return true;
}

namespace {

// One direction of the work area: how far the first place is from its edge, and how many places
// there are.
struct Row {
    Row(int first, int length, int areaStart, int areaLength)
        : start(areaStart),
          room(std::max(areaLength - length, 0)),
          offset(std::clamp(first - areaStart, 0, room)),
          count((room - offset % kPinPadStep) / kPinPadStep + 1) {}

    int At(int step) const {
        const int place = (offset / kPinPadStep + step) % count;
        return start + offset % kPinPadStep + place * kPinPadStep;
    }

    int start;
    int room;
    int offset;
    int count;
};

bool Covers(wxRect upper, const wxRect& lower) {
    return upper.Inflate(kPinPadStep / 2 - 1).Contains(lower);
}

}  // namespace

wxPoint FirstFreePinPadPlace(const wxRect& pad, const wxRect& workArea,
                             const std::vector<wxRect>& others) {
    const Row across(pad.x, pad.width, workArea.x, workArea.width);
    const Row down(pad.y, pad.height, workArea.y, workArea.height);
    for (int shift = 0; shift < across.count; ++shift) {
        for (int step = 0; step < down.count; ++step) {
            const wxPoint place(across.At(step + shift), down.At(step));
            const wxRect stands(place, pad.GetSize());
            if (std::none_of(others.begin(), others.end(), [&stands](const wxRect& other) {
                    return Covers(stands, other) || Covers(other, stands);
                })) {
                return place;
            }
        }
    }
    return {across.At(0), down.At(0)};
}

}  // namespace zeldlg
