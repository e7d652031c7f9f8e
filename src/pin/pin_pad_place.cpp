#include "pin/pin_pad_place.h"

#include <algorithm>

namespace zeldlg {

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
