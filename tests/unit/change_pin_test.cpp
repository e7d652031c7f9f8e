// What a change dialog decides without a window.
#include <gtest/gtest.h>

#include <string>

#include "policy/change_pin_mode.h"
#include "policy/change_pin_rules.h"
#include "policy/policy_descriptions.h"
#include "policy/policy_pages.h"
#include "support/attempt_warnings.h"

namespace zeldlg {
namespace {

struct ModeRow {
    ChangePinFlags flags;
    const char* title;
};

class Mode : public testing::TestWithParam<ModeRow> {};

TEST_P(Mode, IsTheFirstWhoseFlagIsSet) {
    EXPECT_STREQ(TextsOf(SelectMode(GetParam().flags)).title, GetParam().title);
}

// {changePuk, unlock, transport, initialise}
INSTANTIATE_TEST_SUITE_P(Precedence, Mode,
                         testing::Values(ModeRow{{true, true, true, true}, "Change PUK"},
                                         ModeRow{{true, false, false, false}, "Change PUK"},
                                         ModeRow{{false, true, true, true}, "Unlock PIN"},
                                         ModeRow{{false, false, true, true},
                                                 "Change transport PIN"},
                                         ModeRow{{false, false, false, true}, "Initialise PIN"},
                                         ModeRow{{false, false, false, false}, "Change PIN"}));

struct TextsRow {
    ChangePinMode mode;
    const char* heading;
    const char* oldLabel;
    const char* newLabel;
    const char* confirmLabel;
};

class Texts : public testing::TestWithParam<TextsRow> {};

TEST_P(Texts, BelongToTheMode) {
    const TextsRow& row = GetParam();
    const ChangePinTexts& texts = TextsOf(row.mode);
    EXPECT_STREQ(texts.heading, row.heading);
    EXPECT_STREQ(texts.oldLabel, row.oldLabel);
    EXPECT_STREQ(texts.newLabel, row.newLabel);
    EXPECT_STREQ(texts.confirmLabel, row.confirmLabel);
}

INSTANTIATE_TEST_SUITE_P(
    AllModes, Texts,
    testing::Values(TextsRow{ChangePinMode::UnlockPin, "Unlocking the PIN for \"%s\":",
                             "Enter PUK:", "Enter new PIN:", "Confirm new PIN:"},
                    TextsRow{ChangePinMode::InitialisePin, "Initialising the PIN for \"%s\":",
                             "Enter PUK:", "Enter new PIN:", "Confirm new PIN:"},
                    TextsRow{ChangePinMode::ChangePin, "Changing the PIN for \"%s\":",
                             "Enter old PIN:", "Enter new PIN:", "Confirm new PIN:"},
                    TextsRow{ChangePinMode::ChangeTransportPin, "Changing the PIN for \"%s\":",
                             "Enter transport PIN:", "Enter new PIN:", "Confirm new PIN:"},
                    TextsRow{ChangePinMode::ChangePuk, "Changing the PUK for \"%s\":",
                             "Enter old PUK:", "Enter new PUK:", "Confirm new PUK:"}));

struct FailureRow {
    ChangePinMode mode;
    ChangePinAttempts attempts;
    const char* header;
    const char* warning;
    std::optional<uint32_t> triesLeft;
};

class ChangeFailure : public testing::TestWithParam<FailureRow> {};

TEST_P(ChangeFailure, IsDescribed) {
    const FailureRow& row = GetParam();
    const ChangePinFailure failure = DescribeFailure(row.mode, row.attempts);
    EXPECT_STREQ(failure.header, row.header);
    EXPECT_STREQ(failure.warning, row.warning);
    EXPECT_EQ(failure.triesLeft, row.triesLeft);
}

using test::kLastAttempt;
using test::kMayLock;
constexpr auto kTransport = ChangePinMode::ChangeTransportPin;

// {noFailure, finalTry, triesLeft}
INSTANTIATE_TEST_SUITE_P(
    AllCombinations, ChangeFailure,
    testing::Values(
        FailureRow{kTransport, {true, false, {}}, nullptr, nullptr, {}},
        FailureRow{kTransport, {true, false, 2}, nullptr, nullptr, {}},
        FailureRow{kTransport, {false, false, {}}, "PIN incorrect", kMayLock, {}},
        FailureRow{kTransport, {false, false, 2}, "PIN incorrect", kMayLock, 2},
        FailureRow{kTransport, {false, true, 1}, "PIN incorrect", kLastAttempt, {}},
        FailureRow{kTransport,
                   {true, true, {}},
                   "The PIN has previously been entered incorrectly",
                   kLastAttempt,
                   {}},
        FailureRow{ChangePinMode::UnlockPin, {false, false, {}}, "PUK incorrect", kMayLock, {}},
        FailureRow{ChangePinMode::ChangePuk,
                   {true, true, {}},
                   "The PUK has previously been entered incorrectly",
                   kLastAttempt,
                   {}},
        FailureRow{
            ChangePinMode::InitialisePin, {false, false, {}}, "PIN incorrect", kMayLock, {}}));

ChangePinRules Rules(const char* oldValue, const char* newValue, const char* confirmation) {
    return CheckRules({.newValue = {4, 8}, .oldValue = {3, 5}},
                      {.oldValue = oldValue, .newValue = newValue, .confirmation = confirmation});
}

TEST(ChangeRules, OldAndNewValueHaveTheirOwnBounds) {
    EXPECT_EQ(Rules("123", "1234", "1234"), (ChangePinRules{true, true, true, true}));
    EXPECT_EQ(Rules("12", "1234", "1234"), (ChangePinRules{false, true, true, true}));
    EXPECT_EQ(Rules("123456", "1234", "1234"), (ChangePinRules{false, true, true, true}));
    EXPECT_EQ(Rules("123", "123", "123"), (ChangePinRules{true, false, true, true}));
    EXPECT_EQ(Rules("123", "123456789", "123456789"), (ChangePinRules{true, true, false, true}));
}

TEST(ChangeRules, AConfirmedValueOneByteTooShortIsRefused) {
    const ChangePinRules rules = Rules("123", "123", "123");
    EXPECT_FALSE(rules.minOk);
    EXPECT_TRUE(rules.equal);
    EXPECT_FALSE(rules.AllMet());
}

TEST(ChangeRules, ConfirmationMustBeEqualInLengthAndContent) {
    EXPECT_FALSE(Rules("123", "1234", "12345").equal);
    EXPECT_FALSE(Rules("123", "1234", "1235").equal);
    EXPECT_TRUE(Rules("123", "", "").equal);
}

TEST(ChangeRules, LengthsAreBytes) {
    EXPECT_TRUE(Rules("123", "\xC3\xA9\xC3\xA9", "\xC3\xA9\xC3\xA9").minOk);
    EXPECT_FALSE(Rules("123", "\xC3\xA9\xC3\xA9\xC3\xA9\xC3\xA9\xC3\xA9", "").maxOk);
}

PinPolicy SomePolicy() {
    PinPolicy policy;
    policy.enabledMask = 15;
    policy.p1Threshold = 1;
    policy.p2NbClass = 1;
    policy.p2PopMin = 1;
    policy.p2MinLen = 6;
    policy.p2ClassMask = 31;
    policy.p3HistorySize = 5;
    policy.p4CharList = "0";
    return policy;
}

TEST(PolicyPages, DescribeThePolicyFirst) {
    const PinPolicy policy = SomePolicy();
    const PolicyPages pages(policy);
    EXPECT_EQ(pages.TextOf(PolicyPage::Distance), DescribeElementaryDistance(policy));
    EXPECT_EQ(pages.TextOf(PolicyPage::Diversification), DescribeCharacterClassification(policy));
    EXPECT_EQ(pages.TextOf(PolicyPage::Similarity), DescribeHistoryChecking(policy));
    EXPECT_EQ(pages.TextOf(PolicyPage::Restriction), DescribeCharacterRestriction(policy));
    EXPECT_TRUE(pages.AllMet());
}

TEST(PolicyPages, AddWhatIsWrongAndTakeItBack) {
    const PinPolicy policy = SomePolicy();
    PolicyPages pages(policy);
    pages.Update("9800");
    EXPECT_FALSE(pages.AllMet());
    EXPECT_FALSE(pages.IsMet(PolicyPage::Distance));
    EXPECT_FALSE(pages.IsMet(PolicyPage::Diversification));
    EXPECT_TRUE(pages.IsMet(PolicyPage::Similarity));
    EXPECT_FALSE(pages.IsMet(PolicyPage::Restriction));
    EXPECT_TRUE(pages.TextOf(PolicyPage::Diversification)
                    .EndsWith("The policy expects a length of 6 characters minimum"));
    EXPECT_TRUE(pages.TextOf(PolicyPage::Restriction).EndsWith("\"0\""));
    pages.Update("975318642");
    pages.Update("974");
    pages.Update("97531a");
    EXPECT_EQ(pages.TextOf(PolicyPage::Restriction), DescribeCharacterRestriction(policy));
    EXPECT_TRUE(pages.IsMet(PolicyPage::Restriction));
}

TEST(PolicyPages, AStatusThatStaysTheSameKeepsItsText) {
    PinPolicy policy = SomePolicy();
    policy.enabledMask = kPolicyCharacterRestriction;
    policy.p4CharList = "0a";
    PolicyPages pages(policy);
    pages.Update("0");
    const wxString text = pages.TextOf(PolicyPage::Restriction);
    EXPECT_TRUE(text.EndsWith("\"0\""));
    pages.Update("a");
    EXPECT_EQ(pages.TextOf(PolicyPage::Restriction), text);
}

TEST(PolicyPages, OfSwitchedOffPoliciesSaySo) {
    for (const auto& policy : {std::optional<PinPolicy>(), std::optional(PinPolicy())}) {
        PolicyPages pages(policy);
        pages.Update("aaaa");
        EXPECT_TRUE(pages.AllMet());
        EXPECT_EQ(pages.TextOf(PolicyPage::Distance),
                  "Elementary distance:\nThis policy is disabled");
        EXPECT_EQ(pages.TextOf(PolicyPage::Diversification),
                  "Character classification:\nThis policy is disabled");
        EXPECT_EQ(pages.TextOf(PolicyPage::Similarity), "Pin History checking policy is disabled.");
        EXPECT_EQ(pages.TextOf(PolicyPage::Restriction),
                  "Character restriction policy is disabled.");
    }
}

TEST(PolicyPages, AHistoryOfNoneIsEmpty) {
    PinPolicy policy = SomePolicy();
    policy.p3HistorySize = 0;
    EXPECT_EQ(PolicyPages(policy).TextOf(PolicyPage::Similarity),
              "History checking policy log is empty.");
}

}  // namespace
}  // namespace zeldlg
