// The checks against a second version of each, written as plainly as the rules are told: over a
// million random PINs and policies both must say the same.
#include <gtest/gtest.h>

#include <map>
#include <random>
#include <string>

#include "plain/plain_policy.h"
#include "policy/change_pin_checks.h"
#include "policy/policy_checker.h"

namespace zeldlg {
namespace {

using plain::PlainClasses;
using plain::PlainDistance;
using plain::PlainRestriction;

/// Random PINs and policies, of kinds for which the checks take all their ways.
class Generator {
public:
    std::string Pin() {
        switch (Below(6)) {
            case 0:
                return Text(Below(65), 0, 256);
            case 1:
                return Text(Below(65), '0', 10);
            case 2:
                return Text(Below(65), 'a', 1 + Below(4));
            case 3:
                return Text(Below(8), 32, 96);
            case 4:
                return Text(1 + Below(10), 'a', 26) + Text(Below(10), 'A', 26) +
                       Text(Below(10), '0', 10) + Text(Below(10), 33, 15) + Text(Below(3), 0, 256);
            default:
                return Run();
        }
    }

    PinPolicy Policy() {
        PinPolicy policy;
        policy.enabledMask = Byte();
        policy.p1Threshold = Chance(8) ? Byte() : Small(6);
        policy.p1CaseSensitive = Small(2);
        policy.p1FullPinCheck = Small(2);
        policy.p2NbClass = Chance(16) ? Byte() : Small(7);
        policy.p2PopMin = Chance(16) ? Byte() : Small(12);
        policy.p2MinLen = Chance(4) ? Byte() : Small(20);
        policy.p2ClassMask = Chance(2) ? Byte() : 31;
        policy.p4IsWhiteList = Small(2);
        policy.p4CharList = Chance(4) ? Pin() : Text(Below(65), 0, 256);
        if (policy.p4IsWhiteList != 0 && Chance(2)) {
            policy.p4CharList = Chance(2) ? "0123456789" : "abcdefghijklmnopqrstuvwxyz";
        }
        policy.lastRefusedCharacter = Byte();
        return policy;
    }

private:
    unsigned Below(unsigned end) { return static_cast<unsigned>(m_random() % end); }
    bool Chance(unsigned oneIn) { return Below(oneIn) == 0; }
    uint8_t Byte() { return Small(256); }
    uint8_t Small(unsigned end) { return static_cast<uint8_t>(Below(end)); }

    std::string Text(unsigned length, unsigned first, unsigned count) {
        std::string text;
        for (unsigned i = 0; i < length; ++i) {
            text += static_cast<char>(first + Below(count));
        }
        return text;
    }

    /// An arithmetic run, now and then with a flaw or with changed case.
    std::string Run() {
        const unsigned step = 251 + Below(10);
        std::string text;
        unsigned value = Byte();
        for (unsigned left = Below(65); left > 0; --left) {
            text += static_cast<char>(value & 0xFF);
            value += step;
        }
        if (!text.empty() && Chance(4)) {
            char& flaw = text[Below(static_cast<unsigned>(text.length()))];
            flaw = static_cast<char>(flaw ^ (Chance(2) ? 1 : 32));
        }
        return text;
    }

    std::mt19937_64 m_random{20240229};
};

TEST(PolicyOracle, AgreesOnAMillionRandomPinsAndPolicies) {
    constexpr int kPairs = 1000000;
    Generator generator;
    std::map<int, int> reached;
    for (int i = 0; i < kPairs; ++i) {
        const std::string pin = generator.Pin();
        PinPolicy policy = generator.Policy();
        PinPolicy plain = policy;
        const bool full = policy.p1FullPinCheck != 0;
        const bool white = policy.p4IsWhiteList != 0;
        const int distance = PlainDistance(policy, pin);
        const int classes = PlainClasses(policy, pin);
        const int restriction = PlainRestriction(plain, pin);
        ASSERT_EQ(CheckElementaryDistance(policy, pin), distance) << "pair " << i;
        ASSERT_EQ(CheckCharacterClasses(policy, pin), classes) << "pair " << i;
        ASSERT_EQ(CheckCharacterRestriction(policy, pin), restriction) << "pair " << i;
        ASSERT_EQ(policy, plain) << "pair " << i;
        ++reached[distance * 4 + (full ? 1 : 0)];
        ++reached[(classes & 0xFFF0) * 4 + 2];
        ++reached[(restriction & 0xFFF0) * 4 + (white ? 1 : 3)];

        const auto status = [&](size_t place) { return Policies()[place].StatusOf(policy, pin); };
        ASSERT_EQ(status(0), (policy.enabledMask & 1) != 0 ? distance : 0x9000);
        ASSERT_EQ(status(1), (policy.enabledMask & 2) != 0 ? classes : 0x9000);
        ASSERT_EQ(status(3), (policy.enabledMask & 8) != 0 && !policy.p4CharList.empty()
                                 ? restriction
                                 : 0x9000);
    }
    // The pairs are worth something only when every outcome came up often.
    for (int digit = 0; digit < 16; ++digit) {
        EXPECT_GT(reached[(0x6440 + digit) * 4], 100) << "pairs, digit " << digit;
    }
    for (int digit = 0; digit < 5; ++digit) {
        EXPECT_GT(reached[(0x6440 + digit) * 4 + 1], 100) << "runs, digit " << digit;
    }
    EXPECT_GT(reached[0x9000 * 4], 10000);
    EXPECT_GT(reached[0x9000 * 4 + 1], 10000);
    for (const int status : {0x9000, 0x6490, 0x64A0, 0x64B0}) {
        EXPECT_GT(reached[status * 4 + 2], 10000) << std::hex << status;
    }
    for (const int way : {1, 3}) {
        EXPECT_GT(reached[0x6400 * 4 + way], 10000);
        EXPECT_GT(reached[0x9000 * 4 + way], 10000);
    }
}

}  // namespace
}  // namespace zeldlg
