// The corners of the three checks, and the run of all of them as the dialog makes it.
#include "policy/policy_checker.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "policy/change_pin_checks.h"
#include "policy/policy_messages.h"

namespace zeldlg {
namespace {

PinPolicy DistancePolicy(uint8_t threshold, uint8_t fullCheck, uint8_t caseSensitive = 1) {
    PinPolicy policy;
    policy.p1Threshold = threshold;
    policy.p1FullPinCheck = fullCheck;
    policy.p1CaseSensitive = caseSensitive;
    return policy;
}

PinPolicy ClassesPolicy(uint8_t classes, uint8_t population, uint8_t length, uint8_t mask) {
    PinPolicy policy;
    policy.p2NbClass = classes;
    policy.p2PopMin = population;
    policy.p2MinLen = length;
    policy.p2ClassMask = mask;
    return policy;
}

PinPolicy ListPolicy(std::string list, bool whiteList) {
    PinPolicy policy;
    policy.p4CharList = std::move(list);
    policy.p4IsWhiteList = whiteList ? 1 : 0;
    return policy;
}

TEST(ElementaryDistance, ThresholdZeroRefusesEqualNeighboursAndRisesAfterTheFirstPair) {
    const PinPolicy policy = DistancePolicy(0, 0);
    EXPECT_EQ(CheckElementaryDistance(policy, "aa"), 0x6440);
    EXPECT_EQ(CheckElementaryDistance(policy, "ab"), 0x9000);
    EXPECT_EQ(CheckElementaryDistance(policy, "abc"), 0x644F);
}

TEST(ElementaryDistance, FullCheckRefusesOneRunOfThreeAndMore) {
    const PinPolicy policy = DistancePolicy(1, 1);
    EXPECT_EQ(CheckElementaryDistance(policy, "1234"), 0x6441);
    EXPECT_EQ(CheckElementaryDistance(policy, "4321"), 0x6441);
    EXPECT_EQ(CheckElementaryDistance(policy, "1243"), 0x9000);
    EXPECT_EQ(CheckElementaryDistance(policy, "12"), 0x9000);
    EXPECT_EQ(CheckElementaryDistance(policy, "123"), 0x6441);
}

TEST(ElementaryDistance, CaseIsFoldedUnlessThePolicyMindsIt) {
    EXPECT_EQ(CheckElementaryDistance(DistancePolicy(0, 0, 0), "aA"), 0x6440);
    EXPECT_EQ(CheckElementaryDistance(DistancePolicy(0, 0, 1), "aA"), 0x9000);
}

TEST(ElementaryDistance, RisingStepIsTooCloseFromTheThirdCharacterOn) {
    EXPECT_EQ(CheckElementaryDistance(DistancePolicy(1, 0), "9724"), 0x644E);
}

TEST(CharacterClasses, DollarSignIsAMemberOfTheOtherClass) {
    EXPECT_EQ(CheckCharacterClasses(ClassesPolicy(2, 2, 0, 31), "abc$"), 0x9000);
    EXPECT_EQ(CheckCharacterClasses(ClassesPolicy(2, 2, 0, 15), "abc$"), 0x6491);
}

TEST(CharacterClasses, LengthIsLookedAtLast) {
    EXPECT_EQ(CheckCharacterClasses(ClassesPolicy(4, 1, 6, 31), "aB3!"), 0x64A6);
}

TEST(CharacterClasses, PinsOfMoreThan255BytesAreCountedInFull) {
    for (const size_t length : {255U, 256U, 257U, 511U, 512U, 65536U}) {
        const std::string pin(length, 'a');
        EXPECT_EQ(CheckCharacterClasses(ClassesPolicy(1, 255, 255, 1), pin), 0x9000) << length;
        EXPECT_EQ(CheckCharacterClasses(ClassesPolicy(2, 255, 255, 31), pin), 0x6491) << length;
        EXPECT_EQ(CheckCharacterClasses(ClassesPolicy(2, 255, 255, 31), pin + "B"), 0x64B1)
            << length;
    }
    EXPECT_EQ(CheckCharacterClasses(ClassesPolicy(1, 255, 255, 1), std::string(254, 'a')), 0x64BE);
}

TEST(CharacterRestriction, WhiteListNamesTheCharacterItLacks) {
    PinPolicy policy = ListPolicy("0123456789", true);
    const PolicyStatus status = CheckCharacterRestriction(policy, "12a4");
    EXPECT_EQ(status, 0x6402);
    EXPECT_EQ(policy.lastRefusedCharacter, 'a');
    EXPECT_EQ(DescribePolicyStatus(policy, status, ""),
              "Pin code contains at least a disallowed characters: \"a\"");
}

TEST(CharacterRestriction, BlackListReportsThePlaceOfTheFirstCharacterItHas) {
    PinPolicy policy = ListPolicy("0", false);
    EXPECT_EQ(CheckCharacterRestriction(policy, "1000"), 0x6401);
    EXPECT_EQ(policy.lastRefusedCharacter, '0');
}

TEST(CharacterRestriction, WritesTheRefusedCharacterAndNothingElse) {
    PinPolicy policy = ListPolicy("0123456789", true);
    policy.lastRefusedCharacter = 'q';
    PinPolicy expected = policy;
    EXPECT_EQ(CheckCharacterRestriction(policy, "1234"), 0x9000);
    EXPECT_EQ(CheckCharacterRestriction(policy, ""), 0x9000);
    EXPECT_EQ(policy, expected) << "an accepted PIN leaves what was refused before";
    EXPECT_EQ(CheckCharacterRestriction(policy, "12\xFF"), 0x6402);
    expected.lastRefusedCharacter = 0xFF;
    EXPECT_EQ(policy, expected);
}

/// Refuses "bb" in every local policy: 0x6440, 0x6491, 0x6400.
PinPolicy PolicyThatRefusesAll(uint8_t enabledMask) {
    PinPolicy policy = ClassesPolicy(2, 1, 1, 31);
    policy.p4CharList = "b";
    policy.enabledMask = enabledMask;
    return policy;
}

/// What P1 to P4 say to a PIN.
std::vector<PolicyStatus> Statuses(PinPolicy& policy, std::string_view pin) {
    std::vector<PolicyStatus> statuses;
    for (const Policy& each : Policies()) {
        statuses.push_back(each.StatusOf(policy, pin));
    }
    return statuses;
}

using Expected = std::vector<PolicyStatus>;

TEST(LocalPolicies, OnlyThoseThatAreEnabledAreRun) {
    for (unsigned mask = 0; mask <= 255; ++mask) {
        PinPolicy policy = PolicyThatRefusesAll(static_cast<uint8_t>(mask));
        const std::vector<PolicyStatus> statuses = Statuses(policy, "bb");
        EXPECT_EQ(statuses[0], (mask & 1) != 0 ? 0x6440 : 0x9000) << mask;
        EXPECT_EQ(statuses[1], (mask & 2) != 0 ? 0x6491 : 0x9000) << mask;
        EXPECT_EQ(statuses[2], 0x9000) << "history is for the token to check: " << mask;
        EXPECT_EQ(statuses[3], (mask & 8) != 0 ? 0x6400 : 0x9000) << mask;
        EXPECT_EQ(policy.lastRefusedCharacter, (mask & 8) != 0 ? 'b' : 0) << mask;
    }
}

TEST(LocalPolicies, RestrictionWithoutAListIsNotRun) {
    for (const bool whiteList : {false, true}) {
        PinPolicy policy;
        policy.enabledMask = kPolicyCharacterRestriction;
        policy.p4IsWhiteList = whiteList ? 1 : 0;
        EXPECT_EQ(Statuses(policy, "1234"), Expected(4, kPolicyAccepted));
        EXPECT_EQ(policy.lastRefusedCharacter, 0);
    }
}

TEST(LocalPolicies, FoldingForTheDistanceLeavesThePinToTheOthers) {
    PinPolicy policy = ClassesPolicy(2, 1, 2, kClassLower | kClassUpper);
    policy.enabledMask = 0xFF;
    policy.p4CharList = "a";
    std::string pin = "AaA";
    EXPECT_EQ(Statuses(policy, pin), (Expected{0x6440, 0x9000, 0x9000, 0x6401}));
    EXPECT_EQ(pin, "AaA");
}

TEST(LocalPolicies, EmptyPinIsRefusedOnlyForClassesAndLength) {
    PinPolicy policy = PolicyThatRefusesAll(0xFF);
    EXPECT_EQ(Statuses(policy, ""), (Expected{0x9000, 0x6490, 0x9000, 0x9000}));
    EXPECT_EQ(Statuses(policy, {}), (Expected{0x9000, 0x6490, 0x9000, 0x9000}));
}

}  // namespace
}  // namespace zeldlg
