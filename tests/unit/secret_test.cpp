#include "platform/secret.h"

#include <gtest/gtest.h>

#include <utility>

#include "widgets/secret_text.h"

namespace zeldlg {
namespace {

using platform::SecretBytes;

TEST(SecretBytes, HoldsACopy) {
    std::string typed = "1234";
    const SecretBytes secret(typed);
    typed[0] = 'x';
    EXPECT_EQ(std::string_view(secret), "1234");
    EXPECT_EQ(secret.Size(), 4U);
    EXPECT_STREQ(secret.CString(), "1234");
    EXPECT_EQ(std::string_view(SecretBytes()), "");
    EXPECT_STREQ(SecretBytes().CString(), "");
}

TEST(SecretBytes, KeepsWhatIsAskedFor) {
    const SecretBytes digits("a1b2", [](char byte) { return byte < 'a'; });
    EXPECT_EQ(std::string_view(digits), "12");
    EXPECT_STREQ(digits.CString(), "12");
}

TEST(SecretBytes, IsHandedOnWhole) {
    SecretBytes first("1234");
    const SecretBytes second(std::move(first));
    EXPECT_EQ(std::string_view(second), "1234");
    EXPECT_EQ(first.Size(), 0U);  // NOLINT(bugprone-use-after-move)
}

TEST(SecretText, IsAssignedAndAppendedLikeAnyOther) {
    wxString text = "12";
    Assign(text, "345");
    EXPECT_EQ(text, "345");
    Assign(text, text);
    EXPECT_EQ(text, "345");
    Append(text, "6");
    Append(text, text);
    EXPECT_EQ(text, "34563456");
    Assign(text, wxString());
    EXPECT_EQ(text, "");
}

TEST(SecretText, GrowsWithoutLosingAnything) {
    wxString text;
    wxString expected;
    for (int i = 0; i < 1000; ++i) {
        const auto digit = static_cast<wchar_t>(L'0' + i % 10);
        InsertCharacter(text, i / 2, digit);
        expected.insert(static_cast<size_t>(i / 2), 1, digit);
    }
    EXPECT_EQ(text, expected);
    Forget(text);
    EXPECT_EQ(text, "");
}

}  // namespace
}  // namespace zeldlg
