#include "plain_policy.h"

#include <cctype>
#include <cwchar>
#include <vector>

namespace zeldlg::plain {

namespace {

int Mod16(int number) { return ((number % 16) + 16) % 16; }

bool IsPlainPunctuation(int value) {
    return (value >= 33 && value <= 35) || (value >= 37 && value <= 47) ||
           (value >= 58 && value <= 64) || (value >= 91 && value <= 96) ||
           (value >= 123 && value <= 126);
}

struct NamedClass {
    int bit;
    const wchar_t* name;
    const char* members;
};

const NamedClass kNamedClasses[] = {
    {1, L"downcase letters", "abcdefghijklmnopqrstuvwxyz"},
    {2, L"upcase letters", "ABCDEFGHIJKLMNOPQRSTUVWXYZ"},
    {4, L"numbers", "0123456789"},
    {8, L"punctuation characters", "!\"#$%&'()*+,-./:;<=>?@[\\]^_`{|}~"},
};

std::wstring Number(int number) { return std::to_wstring(number); }

std::wstring Hex(int number) {
    wchar_t digits[8];
    std::swprintf(digits, 8, L"%04X", static_cast<unsigned>(number));
    return digits;
}

std::wstring Listed(const std::vector<std::wstring>& names) {
    if (names.empty()) {
        return L"nothing";
    }
    std::wstring list;
    for (std::size_t i = 0; i < names.size(); i++) {
        if (i > 0) {
            list += i == names.size() - 1 ? L" and " : L", ";
        }
        list += names[i];
    }
    return list;
}

std::wstring DisallowedCharacter(const PinPolicy& policy, int status, const std::string& pin) {
    const auto index = static_cast<std::size_t>(status % 16);
    int code = policy.lastRefusedCharacter;
    if (!pin.empty()) {
        code = index < pin.size() ? static_cast<unsigned char>(pin[index]) : 0;
    }
    std::wstring text = L"Pin code contains at least a disallowed characters: \"";
    if (code != 0) {  // which would end the text
        text += static_cast<wchar_t>(code);
        text += L"\"";
    }
    return text;
}

std::wstring UsedAndMissing(const PinPolicy& policy, const std::string& pin) {
    std::vector<std::wstring> used;
    std::vector<std::wstring> missing;
    for (const NamedClass& each : kNamedClasses) {
        if ((policy.p2ClassMask & each.bit) == 0) {
            continue;
        }
        bool found = false;
        for (const char c : pin) {
            found = found || std::string(each.members).find(c) != std::string::npos;
        }
        (found ? used : missing).emplace_back(each.name);
    }
    return L"PIN code invalid:\nThis PIN uses " + Listed(used) + L".\nIt is missing " +
           Listed(missing) + L".";
}

std::wstring ClassificationMessage(const PinPolicy& policy, int status, const std::string& pin) {
    switch (status & 0x30) {
        case 0x10:
            return UsedAndMissing(policy, pin);
        case 0x20:
            return L"PIN code too short:\nThe policy expects a length of " + Number(status % 16) +
                   L" characters minimum";
        case 0x30:
            return L"Class not enough populated:\nThis PIN only use a sufficient number of class,\n"
                   L"but one of them only count " +
                   Number(status % 16) + L" members\n It has to be at least " +
                   Number(policy.p2PopMin) + L".";
        default:
            return L"Unrecognized error code : " + Hex(status);
    }
}

std::wstring HistoryMessage(const PinPolicy& policy, int status) {
    if (policy.p3StrictOnly != 0) {
        return L"PIN code already known:\nThe PIN you entered is the same as one of the last " +
               Number(policy.p3HistorySize) + L" PIN that was previously set on this token.";
    }
    return L"PIN code too similar to an old one:\nThe similarity is too high for the choosen "
           L"tolerance level (" +
           Number(status % 64) + L").\nThe internal threshold is set to " +
           Number(policy.p3Threshold) + L".";
}

std::wstring DistanceBlock(const PinPolicy& policy) {
    std::wstring text =
        L"The distance between each character has to be more than " + Number(policy.p1Threshold);
    if (policy.p1Threshold == 0) {
        text += L" for example: \"aaaa\" would not be correct ";
    } else if (policy.p1Threshold == 1) {
        text += L" for example: \"7654321\" or \"abcd\" would not be correct ";
    } else if (policy.p1Threshold == 2) {
        text += L" for example: \"02468\" would not be correct";
    }
    if (policy.p1CaseSensitive == 0) {
        text += L" without consideration of the case";
    }
    return text + L".";
}

std::wstring ClassificationBlock(const PinPolicy& policy) {
    const wchar_t* const items[] = {L"downcase letters, ", L"upcase letters, ", L"numbers, ",
                                    L"punctuation characters, ", L"and accentuated characters, "};
    std::wstring list = L"chosen between ";
    for (int i = 0; i < 5; i++) {
        if ((policy.p2ClassMask >> i & 1) == 1) {
            list += items[i];
        }
    }
    return L"The length of the PIN code has to be at least " + Number(policy.p2MinLen) +
           L" characters.\nThe PIN code has to use a minimum number of " +
           Number(policy.p2NbClass) + (policy.p2NbClass == 1 ? L" classe " : L" classes ") + list +
           L"and each class has to be composed of a minimum of " + Number(policy.p2PopMin) +
           (policy.p2PopMin == 1 ? L" character." : L" characters.");
}

std::wstring Tolerance(const PinPolicy& policy) {
    int t = policy.p3Threshold;
    if (policy.p3LengthNormalize != 0) {
        t = t * t;
    }
    if (t >= 1 && t <= 5) {
        return L"low, the two compared PIN code shouldn't share any common letters, or at least "
               L"at the same place.";
    }
    if (t >= 6 && t <= 12) {
        return L"medium, the two compared PIN code don't have to share too much common letters at "
               L"the same place.";
    }
    return L"high, the two compared PIN code cannot be the same, or really similar.";
}

std::wstring HistoryBlock(const PinPolicy& policy) {
    std::wstring text = L"The size of the history memory is ";
    text += policy.p3HistorySize == 255 ? L"the maximum available on the card"
                                        : Number(policy.p3HistorySize);
    text += policy.p3StrictOnly != 0 ? L". All PINs present in the history will be refused."
                                     : L", and the level of tolerance is " + Tolerance(policy);
    return text + (policy.p3CaseInsensitive != 0
                       ? L" The similarity is calculated without regarding the case."
                       : L" This similarity is calculated regarding the case.");
}

std::wstring RestrictionBlock(const PinPolicy& policy) {
    if (policy.p4CharList.empty()) {
        return L"All the characters are allowed.";
    }
    std::wstring listed = L"Those one are: \"";
    for (const char c : policy.p4CharList) {
        if (c == 0) {
            break;  // ends the list that is shown
        }
        listed += static_cast<unsigned char>(c);
    }
    listed += L"\" (without the surrounding `\"`)";
    return (policy.p4IsWhiteList != 0 ? L"Only some characters are allowed for usage in the PIN."
                                      : L"Some characters are disallowed for usage in the PIN.") +
           listed.substr(0, 499);
}

std::wstring Block(const PinPolicy& policy, int bit, const wchar_t* title,
                   std::wstring (*text)(const PinPolicy&)) {
    return title + ((policy.enabledMask & bit) != 0 ? text(policy) : L"This policy is disabled") +
           L"\n\n";
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
    std::uint8_t lower = 0;
    std::uint8_t upper = 0;
    std::uint8_t digits = 0;
    std::uint8_t punctuation = 0;
    std::uint8_t other = 0;
    for (std::uint8_t i = 0; i < pin.length(); i++) {
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
    const std::uint8_t count[] = {lower, upper, digits, punctuation};
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

std::wstring PlainMessage(const PinPolicy& policy, int status, const std::string& pin) {
    switch (status & 0xFFC0) {
        case 0x6400:
            return DisallowedCharacter(policy, status, pin);
        case 0x6440:
            return L"PIN too weak:\ndistance between consecutive characters is equal to " +
                   Number(status % 64) + L"\n It has to be greater than " +
                   Number(policy.p1Threshold) + L".";
        case 0x6480:
            return ClassificationMessage(policy, status, pin);
        case 0x64C0:
            return HistoryMessage(policy, status);
        case 0x9000:
            return L"Congratulation,\n This seems to be a valid PIN code";
        default:
            return L"Communication problem : " + Hex(status);
    }
}

std::wstring PlainDescription(const PinPolicy& policy) {
    std::wstring text = Block(policy, 1, L"Elementary distance:\n", DistanceBlock) +
                        Block(policy, 2, L"Character classification:\n", ClassificationBlock) +
                        Block(policy, 4, L"History checking:\n", HistoryBlock) +
                        Block(policy, 8, L"Character restriction:\n", RestrictionBlock);
    switch (static_cast<int>(policy.source)) {
        case -4:
            return text + L"This is the current policy present on the card.";
        case -3:
            return text + L"This description is extracted from the registry setting.";
        case -2:
            return text + L"The source of this policy is unknown ...";
        default:
            return text + L" /!\\ No clear source specified. /!\\";
    }
}

}  // namespace zeldlg::plain
