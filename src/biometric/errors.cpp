#include "biometric/errors.h"

#include <algorithm>
#include <iterator>

#include "resources/texts.h"

namespace zeldlg {

namespace {

enum class Retry { No, Yes };

// What stands for the conversion in a text.
enum class Shown { Nothing, Code, Tries };

// Applies to the codes whose bits under `mask` are `value`.
struct Rule {
    uint64_t mask;
    uint64_t value;
    const char* text;
    Retry retry = Retry::Yes;
    Shown shown = Shown::Nothing;
};

constexpr uint64_t kWholeCode = ~uint64_t{0};
constexpr uint64_t kTriesMask = 0xF;
// kept: a code that has all these bits counts as one with tries, whatever other bits it has
// (0x73C5 as 0x63C5).
constexpr uint64_t kWithTries = 0x63C0;

// The first rule that applies decides.
constexpr Rule kRules[] = {
    {kWholeCode, 0xA700, CATALOGUE_KEY("General ARM7 error")},
    {kWholeCode, 0xA701, CATALOGUE_KEY("Unknown instruction")},
    {kWholeCode, 0xA710, CATALOGUE_KEY("General error during fingerprint enrolment")},
    {kWholeCode, 0xA711, CATALOGUE_KEY("A timeout occurred")},
    {kWholeCode, 0xA712, CATALOGUE_KEY("The sweep was too slow")},
    {kWholeCode, 0xA713, CATALOGUE_KEY("The sweep was too fast")},
    {kWholeCode, 0xA714, CATALOGUE_KEY("The sweep was not straight")},
    {kWholeCode, 0xA715, CATALOGUE_KEY("The sweep was too short")},
    {kWholeCode, 0xA716, CATALOGUE_KEY("The sensor is broken: too many defect lines on sensor"),
     Retry::No},
    {kWholeCode, 0xA717, CATALOGUE_KEY("The scanned image quality is insufficient")},
    {kWholeCode, 0xA718, CATALOGUE_KEY("Not enough features could be extracted")},
    {kWholeCode, 0xA719, CATALOGUE_KEY("Merge failed")},
    {kWholeCode, 0xA71A, CATALOGUE_KEY("Indeterminate error, please try again")},
    {kWholeCode, 0xA71B, CATALOGUE_KEY("Resynchronisation error")},
    {kWholeCode, 0xA71D, CATALOGUE_KEY("The sweep was not smooth enough")},
    {kWholeCode, 0xA720, CATALOGUE_KEY("General fingerprint verification error")},
    {kWholeCode, 0xA730, CATALOGUE_KEY("General image scan error")},
    {kWholeCode, 0xA740, CATALOGUE_KEY("General error while reading a single image line")},
    {kWholeCode, 0xA741, CATALOGUE_KEY("Line index out of range")},
    {kWholeCode, 0xA742, CATALOGUE_KEY("Image data not available")},
    {kWholeCode, 0xA780, CATALOGUE_KEY("General diagnostic error")},
    {kWholeCode, 0xA781, CATALOGUE_KEY("Invalid parameter")},
    {kWholeCode, 0xA782, CATALOGUE_KEY("General error while changing mode")},
    {kWholeCode, 0xA783, CATALOGUE_KEY("Authentication failed")},
    {kWholeCode, 0xA784, CATALOGUE_KEY("Failed to retrieve a challenge")},
    {kWholeCode, 0xA785, CATALOGUE_KEY("Invalid value")},
    {kWholeCode, 0xA786, CATALOGUE_KEY("Failed to set a parameter")},
    {kWholeCode, 0xA787, CATALOGUE_KEY("Conditions of use not satisfied")},
    {kWholeCode, 0xA788, CATALOGUE_KEY("Failed to get a parameter")},
    {kWholeCode, 0xA78A, CATALOGUE_KEY("Failed to retrieve version information")},
    {kWholeCode, 0x6983, CATALOGUE_KEY("The authentication method is blocked"), Retry::No},
    {kWholeCode, 0x6A82, CATALOGUE_KEY("Cannot verify, no fingerprint enrolled (0x%04X)"),
     Retry::No, Shown::Code},
    {kWithTries | kTriesMask, kWithTries,
     CATALOGUE_KEY("Verification failed!\nThe authentication method is now blocked!"), Retry::No},
    {kWithTries | kTriesMask, kWithTries | 1,
     CATALOGUE_KEY("Verification failed!\nYou have only 1 final try remaining!")},
    {kWithTries, kWithTries, CATALOGUE_KEY("Verification failed!\nYou have %d tries remaining"),
     Retry::Yes, Shown::Tries},
    {0, 0, CATALOGUE_KEY("Device error (0x%04X)"), Retry::Yes, Shown::Code},
};

wxString TextOf(const Rule& rule, uint64_t code) {
    switch (rule.shown) {
        case Shown::Code:
            // Of a code that is longer, the lower 32 bits are shown.
            return FormatTranslated(rule.text, static_cast<unsigned>(code));
        case Shown::Tries:
            return FormatTranslated(rule.text, static_cast<int>(code & kTriesMask));
        case Shown::Nothing:
            break;
    }
    return Translate(rule.text);
}

}  // namespace

BiometricError DescribeBiometricError(uint64_t code) {
    const Rule& rule =
        *std::find_if(std::begin(kRules), std::end(kRules),
                      [code](const Rule& each) { return (code & each.mask) == each.value; });
    BiometricError error{.text = TextOf(rule, code), .retry = rule.retry == Retry::Yes};
    if (error.retry) {
        error.text += Translate("\n\nWould you like to try again?");
    }
    return error;
}

}  // namespace zeldlg
