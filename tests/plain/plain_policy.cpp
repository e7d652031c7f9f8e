#include "plain_policy.h"

#include <cctype>
#include <vector>

namespace zeldlg::plain {

namespace {

int Mod16(int number) { return ((number % 16) + 16) % 16; }

bool IsPlainPunctuation(int value) {
    return (value >= 33 && value <= 35) || (value >= 37 && value <= 47) ||
           (value >= 58 && value <= 64) || (value >= 91 && value <= 96) ||
           (value >= 123 && value <= 126);
}

}  // namespace

int PlainDistance(const PinPolicy& policy, std::string pin) {
    const bool full = policy.p1FullPinCheck != 0;
    if (full && pin.length() < 3) {
        return 0x9000;
    }
    if (!full && pin.length() < 2) {
        return 0x9000;
    }
    if (policy.p1CaseSensitive == 0) {
        for (char& c : pin) {
            c = static_cast<char>(tolower(static_cast<unsigned char>(c)));
        }
    }
    std::vector<int> value;
    for (const char c : pin) {
        value.push_back(static_cast<unsigned char>(c));
    }
    const int d0 = value[0] - value[1];
    const int a0 = d0 < 0 ? -d0 : d0;
    if (full) {
        if (a0 > policy.p1Threshold) {
            return 0x9000;
        }
        for (size_t i = 2; i <= pin.length() - 1; i++) {
            if (value[i - 1] - value[i] != d0) {
                return 0x9000;
            }
        }
        return 0x6440 + a0 % 16;
    }
    if (a0 <= policy.p1Threshold) {
        return 0x6440 + Mod16(d0);
    }
    for (size_t i = 2; i <= pin.length() - 1; i++) {
        const int di = value[i - 1] - value[i];
        if (di <= policy.p1Threshold) {
            return 0x6440 + Mod16(di);
        }
    }
    return 0x9000;
}

int PlainClasses(const PinPolicy& policy, const std::string& pin) {
    uint8_t lower = 0;
    uint8_t upper = 0;
    uint8_t digits = 0;
    uint8_t punctuation = 0;
    uint8_t other = 0;
    for (uint8_t i = 0; i < pin.length(); i++) {
        const int value = static_cast<unsigned char>(pin[i]);
        if (value >= 97 && value <= 122) {
            lower++;
        } else if (value >= 65 && value <= 90) {
            upper++;
        } else if (value >= 48 && value <= 57) {
            digits++;
        } else if (IsPlainPunctuation(value)) {
            punctuation++;
        } else {
            other++;
        }
    }
    int used = 0;
    int populated = 0;
    const uint8_t count[] = {lower, upper, digits, punctuation};
    const int bit[] = {1, 2, 4, 8};
    for (int i = 0; i < 4; i++) {
        if (count[i] != 0 && (policy.p2ClassMask & bit[i]) != 0) {
            used++;
            if (count[i] >= policy.p2PopMin) {
                populated++;
            }
        }
    }
    if (other != 0 && (policy.p2ClassMask & 16) != 0) {
        used++;
        populated++;
        if (used < policy.p2NbClass) {
            return 0x6490 + used;
        }
    } else if (used < policy.p2NbClass) {
        return 0x6490 + used;
    }
    if (populated < policy.p2NbClass) {
        for (int i = 0; i < 4; i++) {
            if (count[i] != 0 && count[i] < policy.p2PopMin) {
                return 0x64B0 + count[i] % 16;
            }
        }
    }
    if (pin.length() >= policy.p2MinLen) {
        return 0x9000;
    }
    return 0x64A0 + policy.p2MinLen % 16;
}

int PlainRestriction(PinPolicy& policy, const std::string& pin) {
    if (pin.empty()) {
        return 0x9000;
    }
    for (size_t i = 0; i < pin.length(); i++) {
        bool found = false;
        for (const char c : policy.p4CharList) {
            if (c == pin[i]) {
                found = true;
            }
        }
        if ((policy.p4IsWhiteList != 0 && !found) || (policy.p4IsWhiteList == 0 && found)) {
            policy.lastRefusedCharacter = static_cast<unsigned char>(pin[i]);
            return 0x6400 + static_cast<int>(i % 16);
        }
    }
    return 0x9000;
}

}  // namespace zeldlg::plain
