// The text for each error of the biometric token, and whether the user is asked to try again.
#include "biometric/errors.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <cstdio>
#include <string>

namespace zeldlg {
namespace {

struct Expected {
    std::string text;
    bool retry;
};

/// The texts of the token's own codes; empty for a code that has none.
std::string OwnText(uint64_t code) {
    switch (code) {
        case 0xA700:
            return "General ARM7 error";
        case 0xA701:
            return "Unknown instruction";
        case 0xA710:
            return "General error during fingerprint enrolment";
        case 0xA711:
            return "A timeout occurred";
        case 0xA712:
            return "The sweep was too slow";
        case 0xA713:
            return "The sweep was too fast";
        case 0xA714:
            return "The sweep was not straight";
        case 0xA715:
            return "The sweep was too short";
        case 0xA716:
            return "The sensor is broken: too many defect lines on sensor";
        case 0xA717:
            return "The scanned image quality is insufficient";
        case 0xA718:
            return "Not enough features could be extracted";
        case 0xA719:
            return "Merge failed";
        case 0xA71A:
            return "Indeterminate error, please try again";
        case 0xA71B:
            return "Resynchronisation error";
        case 0xA71D:
            return "The sweep was not smooth enough";
        case 0xA720:
            return "General fingerprint verification error";
        case 0xA730:
            return "General image scan error";
        case 0xA740:
            return "General error while reading a single image line";
        case 0xA741:
            return "Line index out of range";
        case 0xA742:
            return "Image data not available";
        case 0xA780:
            return "General diagnostic error";
        case 0xA781:
            return "Invalid parameter";
        case 0xA782:
            return "General error while changing mode";
        case 0xA783:
            return "Authentication failed";
        case 0xA784:
            return "Failed to retrieve a challenge";
        case 0xA785:
            return "Invalid value";
        case 0xA786:
            return "Failed to set a parameter";
        case 0xA787:
            return "Conditions of use not satisfied";
        case 0xA788:
            return "Failed to get a parameter";
        case 0xA78A:
            return "Failed to retrieve version information";
        default:
            return "";
    }
}

/// The rules in the order in which a person would tell them, without the question.
Expected PlainError(uint64_t code) {
    if (code >= 0xA700 && code <= 0xA78A && !OwnText(code).empty()) {
        return {OwnText(code), code != 0xA716};
    }
    if (code == 0x6983) {
        return {"The authentication method is blocked", false};
    }
    if (code == 0x6A82) {
        return {"Cannot verify, no fingerprint enrolled (0x6A82)", false};
    }
    bool hasTries = true;
    for (const int bit : {14, 13, 9, 8, 7, 6}) {  // those of 0x63C0
        hasTries = hasTries && (code >> bit) % 2 == 1;
    }
    if (!hasTries) {
        char text[40];
        snprintf(text, sizeof text, "Device error (0x%04X)", static_cast<unsigned>(code));
        return {text, true};
    }
    switch (code % 16) {
        case 0:
            return {"Verification failed!\nThe authentication method is now blocked!", false};
        case 1:
            return {"Verification failed!\nYou have only 1 final try remaining!", true};
        default:
            return {
                "Verification failed!\nYou have " + std::to_string(code % 16) + " tries remaining",
                true};
    }
}

void ExpectPlainError(uint64_t code) {
    Expected expected = PlainError(code);
    if (expected.retry) {
        expected.text += "\n\nWould you like to try again?";
    }
    const BiometricError error = DescribeBiometricError(code);
    ASSERT_EQ(error.text.utf8_string(), expected.text) << std::hex << code;
    ASSERT_EQ(error.retry, expected.retry) << std::hex << code;
}

TEST(BiometricErrors, EveryShortCodeHasTheTextOfItsRule) {
    for (uint64_t code = 0; code <= 0xFFFF; ++code) {
        ASSERT_NO_FATAL_FAILURE(ExpectPlainError(code));
    }
}

TEST(BiometricErrors, LongCodesFollowTheSameRules) {
    for (const uint64_t high : {uint64_t{0x10000}, uint64_t{1} << 32, ~uint64_t{0xFFFF}}) {
        for (const uint64_t low : {0x0000U, 0x6983U, 0x6A82U, 0x6400U, 0x63C0U, 0x63C1U, 0x63C5U,
                                   0xA700U, 0xA716U, 0xA71CU, 0xFFFFU}) {
            ASSERT_NO_FATAL_FAILURE(ExpectPlainError(high | low));
        }
    }
}

struct Row {
    uint64_t code;
    const char* text;
    bool retry;
};

class Named : public testing::TestWithParam<Row> {};

TEST_P(Named, ErrorsReadAsTheyShould) {
    const BiometricError error = DescribeBiometricError(GetParam().code);
    EXPECT_EQ(error.text, GetParam().text);
    EXPECT_EQ(error.retry, GetParam().retry);
}

INSTANTIATE_TEST_SUITE_P(
    BiometricErrors, Named,
    testing::Values(
        Row{0x63C0, "Verification failed!\nThe authentication method is now blocked!", false},
        Row{0x63C1,
            "Verification failed!\nYou have only 1 final try remaining!\n\n"
            "Would you like to try again?",
            true},
        Row{0x63C5,
            "Verification failed!\nYou have 5 tries remaining\n\nWould you like to try again?",
            true},
        Row{0x63DF,
            "Verification failed!\nYou have 15 tries remaining\n\nWould you like to try again?",
            true},
        Row{0x6400, "Device error (0x6400)\n\nWould you like to try again?", true},
        Row{0xA71C, "Device error (0xA71C)\n\nWould you like to try again?", true},
        Row{0xA78B, "Device error (0xA78B)\n\nWould you like to try again?", true},
        Row{0x0007, "Device error (0x0007)\n\nWould you like to try again?", true},
        Row{0x6A82, "Cannot verify, no fingerprint enrolled (0x6A82)", false}));

}  // namespace
}  // namespace zeldlg
