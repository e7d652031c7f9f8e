// What a change dialog decides without a window.
#include <gtest/gtest.h>

#include <algorithm>
#include <optional>
#include <utility>
#include <vector>

#include "policy/change_pin_checks.h"
#include "policy/change_pin_mode.h"
#include "policy/policy_descriptions.h"
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

// Which of the four rules are met: old length, minimum, maximum, equal.
std::vector<bool> Rules(const char* oldValue, const char* newValue, const char* confirmation) {
    ChangePinChecks checks(kTransport, {.newValue = {4, 8}, .oldValue = {3, 5}});
    checks.Update({.oldValue = oldValue, .newValue = newValue, .confirmation = confirmation});
    std::vector<bool> met;
    for (const ChangePinCheck& rule : checks.List()) {
        met.push_back(rule.met);
    }
    EXPECT_EQ(checks.AllMet(), met == std::vector(4, true));
    return met;
}

using Met = std::vector<bool>;

TEST(ChangeRules, OldAndNewValueHaveTheirOwnBounds) {
    EXPECT_EQ(Rules("123", "1234", "1234"), (Met{true, true, true, true}));
    EXPECT_EQ(Rules("12", "1234", "1234"), (Met{false, true, true, true}));
    EXPECT_EQ(Rules("123456", "1234", "1234"), (Met{false, true, true, true}));
    EXPECT_EQ(Rules("123", "123", "123"), (Met{true, false, true, true}));
    EXPECT_EQ(Rules("123", "123456789", "123456789"), (Met{true, true, false, true}));
}

TEST(ChangeRules, ConfirmationMustBeEqualInLengthAndContent) {
    EXPECT_FALSE(Rules("123", "1234", "12345")[3]);
    EXPECT_FALSE(Rules("123", "1234", "1235")[3]);
    EXPECT_TRUE(Rules("123", "", "")[3]);
}

TEST(ChangeRules, LengthsAreBytes) {
    EXPECT_TRUE(Rules("123", "\xC3\xA9\xC3\xA9", "\xC3\xA9\xC3\xA9")[1]);
    EXPECT_FALSE(Rules("123", "\xC3\xA9\xC3\xA9\xC3\xA9\xC3\xA9\xC3\xA9", "")[2]);
}

std::vector<wxString> Titles(const ChangePinChecks& checks) {
    std::vector<wxString> titles;
    for (const ChangePinCheck& each : checks.List()) {
        titles.push_back(each.title);
    }
    return titles;
}

TEST(ChangeRules, AreTitledAfterTheMode) {
    const ChangePinBounds bounds{.newValue = {4, 8}, .oldValue = {3, 5}};
    EXPECT_EQ(Titles({kTransport, bounds}),
              (std::vector<wxString>{"PIN length between 3 and 5 bytes",
                                     "Minimum PIN length 4 bytes", "Maximum PIN length 8 bytes",
                                     "New PIN equal to confirmed new PIN"}));
    EXPECT_EQ(Titles({ChangePinMode::ChangePuk, bounds}),
              (std::vector<wxString>{"PUK length between 3 and 5 bytes",
                                     "Minimum PUK length 4 bytes", "Maximum PUK length 8 bytes",
                                     "New PUK equal to confirmed new PUK"}));
    const ChangePinChecks checks(kTransport, bounds);
    for (const ChangePinCheck& rule : checks.List()) {
        EXPECT_EQ(rule.text, rule.title);
    }
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

// The pages of a policed dialog, by their titles.
class Pages {
public:
    explicit Pages(std::optional<PinPolicy> policy)
        : m_checks(kTransport, {.newValue = {4, 8}, .oldValue = {0, 5}}, true, std::move(policy)) {}

    const ChangePinCheck& operator[](const wxString& title) const {
        const auto page = std::find_if(m_checks.List().begin() + ChangePinChecks::kRuleCount,
                                       m_checks.List().end(),
                                       [&title](const auto& each) { return each.title == title; });
        EXPECT_NE(page, m_checks.List().end()) << title;
        return *page;
    }
    void Type(const char* pin, const char* confirmation = "") {
        m_checks.Update({.oldValue = {}, .newValue = pin, .confirmation = confirmation});
    }
    const ChangePinChecks& Checks() const { return m_checks; }

private:
    ChangePinChecks m_checks;
};

TEST(PolicyPages, StandBehindTheRulesInTheirOrder) {
    const std::vector<wxString> titles = Titles(Pages(SomePolicy()).Checks());
    EXPECT_EQ(std::vector(titles.begin() + ChangePinChecks::kRuleCount, titles.end()),
              (std::vector<wxString>{"Length", "Equality", "Distance", "Diversification",
                                     "Similarity", "Restriction"}));
}

TEST(PolicyPages, TheFirstThatIsNotMetShowsByItself) {
    Pages pages(SomePolicy());
    const auto shown = [&pages] {
        return pages.Checks().List()[pages.Checks().PageToShow()].title;
    };
    EXPECT_EQ("Length", shown()) << "the new value is too short";
}

TEST(PolicyPages, WithoutOneThatIsNotMetTheFirstShows) {
    const ChangePinChecks checks(kTransport, {}, true, PinPolicy());
    EXPECT_TRUE(checks.AllMet());
    EXPECT_EQ("Length", checks.List()[checks.PageToShow()].title);
}

TEST(PolicyPages, TheOneThatShowsIsTheFirstThatIsNotMet) {
    ChangePinChecks checks(kTransport, {.newValue = {0, 8}, .oldValue = {0, 8}}, true, PinPolicy());
    checks.Update({.oldValue = {}, .newValue = "1234", .confirmation = "12"});
    EXPECT_EQ("Equality", checks.List()[checks.PageToShow()].title);
}

TEST(ChangePinChecks, EachFieldIsToldWhatItLacksOnce) {
    using Entry = ChangePinChecks::Entry;
    Pages pages(SomePolicy());
    std::vector<wxString> told;
    for (const Entry entry : {Entry::OldValue, Entry::NewValue, Entry::Confirmation}) {
        for (const ChangePinCheck& check : pages.Checks().Of(entry)) {
            told.push_back(check.title);
        }
    }
    const std::vector<wxString> titles = Titles(pages.Checks());
    EXPECT_EQ(told,
              (std::vector<wxString>{titles[0], titles[1], titles[2], "Distance", "Diversification",
                                     "Similarity", "Restriction", titles[3]}));
}

TEST(PolicyPages, WhatIsSpokenHasNoCharacterOfTheNewValue) {
    PinPolicy policy;
    policy.enabledMask = kPolicyCharacterRestriction;
    policy.p4CharList = "#";
    Pages pages(policy);
    pages.Type("12#4");
    const ChangePinCheck& page = pages["Restriction"];
    EXPECT_FALSE(page.met);
    EXPECT_NE(page.text, page.spoken);
    EXPECT_EQ(page.spoken, DescribeCharacterRestriction(policy));
}

TEST(PolicyPages, OfLengthAndEqualityRepeatTheRules) {
    Pages pages(SomePolicy());
    EXPECT_EQ(pages["Length"].text,
              "PIN length between 0 and 5 bytes\nMinimum PIN length 4 bytes\n"
              "Maximum PIN length 8 bytes");
    EXPECT_EQ(pages["Equality"].text, "New PIN equal to confirmed new PIN");
    EXPECT_FALSE(pages["Length"].met);
    EXPECT_TRUE(pages["Equality"].met);
    pages.Type("97531!", "97531");
    EXPECT_TRUE(pages["Length"].met);
    EXPECT_FALSE(pages["Equality"].met);
    EXPECT_FALSE(pages.Checks().AllMet());
    pages.Type("97531!", "97531!");
    EXPECT_TRUE(pages.Checks().AllMet());
    pages.Type("97531!ceg", "97531!ceg");
    EXPECT_FALSE(pages["Length"].met);
}

TEST(PolicyPages, DescribeThePolicyFirst) {
    const PinPolicy policy = SomePolicy();
    Pages pages(policy);
    EXPECT_EQ(pages["Distance"].text, DescribeElementaryDistance(policy));
    EXPECT_TRUE(pages["Diversification"].text.StartsWith(DescribeCharacterClassification(policy)));
    EXPECT_EQ(pages["Similarity"].text, DescribeHistoryChecking(policy));
    EXPECT_EQ(pages["Restriction"].text, DescribeCharacterRestriction(policy));
    pages.Type("97531a");
    EXPECT_EQ(pages["Diversification"].text, DescribeCharacterClassification(policy));
}

TEST(PolicyPages, AddWhatIsWrongAndTakeItBack) {
    const PinPolicy policy = SomePolicy();
    Pages pages(policy);
    pages.Type("9800");
    EXPECT_FALSE(pages["Distance"].met);
    EXPECT_FALSE(pages["Diversification"].met);
    EXPECT_TRUE(pages["Similarity"].met);
    EXPECT_FALSE(pages["Restriction"].met);
    EXPECT_EQ(pages["Diversification"].text,
              DescribeCharacterClassification(policy) +
                  "\n\nPIN code too short:\nThe policy expects a length of 6 characters minimum");
    EXPECT_TRUE(pages["Restriction"].text.EndsWith("\"0\""));
    pages.Type("975318642");
    pages.Type("974");
    pages.Type("97531a");
    EXPECT_EQ(pages["Restriction"].text, DescribeCharacterRestriction(policy));
    EXPECT_TRUE(pages["Restriction"].met);
}

TEST(PolicyPages, AStatusThatStaysTheSameKeepsItsText) {
    PinPolicy policy = SomePolicy();
    policy.enabledMask = kPolicyCharacterRestriction;
    policy.p4CharList = "0a";
    Pages pages(policy);
    pages.Type("0");
    const wxString text = pages["Restriction"].text;
    EXPECT_TRUE(text.EndsWith("\"0\""));
    pages.Type("a");
    EXPECT_EQ(pages["Restriction"].text, text);
}

TEST(PolicyPages, OfSwitchedOffPoliciesSaySo) {
    for (const auto& policy : {std::optional<PinPolicy>(), std::optional(PinPolicy())}) {
        Pages pages(policy);
        pages.Type("aaaa", "aaaa");
        EXPECT_TRUE(pages.Checks().AllMet());
        EXPECT_EQ(pages["Distance"].text, "Elementary distance:\nThis policy is disabled");
        EXPECT_EQ(pages["Diversification"].text,
                  "Character classification:\nThis policy is disabled");
        EXPECT_EQ(pages["Similarity"].text, "Pin History checking policy is disabled.");
        EXPECT_EQ(pages["Restriction"].text, "Character restriction policy is disabled.");
    }
}

TEST(PolicyPages, AHistoryOfNoneIsEmpty) {
    PinPolicy policy = SomePolicy();
    policy.p3HistorySize = 0;
    EXPECT_EQ(Pages(policy)["Similarity"].text, "History checking policy log is empty.");
}

}  // namespace
}  // namespace zeldlg
