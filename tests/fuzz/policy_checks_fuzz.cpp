// Policies and PINs of any bytes: the three checks against plain versions of themselves, and what
// is told about them, whose words are up to the unit tests. The bytes: the fields of a policy, its
// character list, then the PIN.
#include <iterator>

#include "fuzz_target.h"
#include "plain/plain_policy.h"
#include "policy/change_pin_checks.h"
#include "policy/policy_checker.h"
#include "policy/policy_descriptions.h"
#include "policy/policy_messages.h"

namespace zeldlg::fuzz {

namespace {

using namespace plain;  // NOLINT(google-build-using-namespace): written for this

// The plain check counts in 8 bits.
constexpr size_t kLongestPin = 255;

PinPolicy MakePolicy(FuzzInput& input) {
    PinPolicy policy;
    uint8_t* const fields[] = {&policy.enabledMask,       &policy.p1Threshold,
                               &policy.p1CaseSensitive,   &policy.p1FullPinCheck,
                               &policy.p2NbClass,         &policy.p2PopMin,
                               &policy.p2MinLen,          &policy.p2ClassMask,
                               &policy.p3Threshold,       &policy.p3HistorySize,
                               &policy.p3CaseInsensitive, &policy.p3LengthNormalize,
                               &policy.p3StrictOnly,      &policy.lastRefusedCharacter,
                               &policy.p4IsWhiteList};
    for (uint8_t* field : fields) {
        *field = input.Byte();
    }
    policy.source = static_cast<PolicySource>(input.Flag() ? -static_cast<int>(input.Below(6))
                                                           : static_cast<int>(input.Word()));
    policy.p4CharList = input.Text(80);
    return policy;
}

void RequireChecks(PinPolicy policy, const std::string& pin) {
    PinPolicy plain = policy;
    const int distance = PlainDistance(policy, pin);
    const int classes = PlainClasses(policy, pin);
    const int restriction = PlainRestriction(plain, pin);
    REQUIRE_EQ(int{CheckElementaryDistance(policy, pin)}, distance);
    REQUIRE_EQ(int{CheckCharacterClasses(policy, pin)}, classes);
    PinPolicy together = policy;
    REQUIRE_EQ(int{CheckCharacterRestriction(policy, pin)}, restriction);
    REQUIRE(policy == plain);
    const auto status = [&](size_t place) {
        return int{Policies()[place].StatusOf(together, pin)};
    };
    REQUIRE_EQ(status(0), (policy.enabledMask & 1) != 0 ? distance : 0x9000);
    REQUIRE_EQ(status(1), (policy.enabledMask & 2) != 0 ? classes : 0x9000);
    const bool restricted = (policy.enabledMask & 8) != 0 && !policy.p4CharList.empty();
    REQUIRE_EQ(status(3), restricted ? restriction : 0x9000);
}

void RequireTexts(const PinPolicy& policy, PolicyStatus status, const std::string& pin) {
    REQUIRE(!DescribePolicyStatus(policy, status, pin).empty());
    REQUIRE(!DescribePolicyStatus(policy, status, {}).empty());
    REQUIRE(!DescribePinPolicy(policy).empty());
}

}  // namespace

FUZZ_TARGET(policy_checks) {
    FuzzInput input(bytes);
    const PinPolicy policy = MakePolicy(input);
    const auto status =
        static_cast<PolicyStatus>(input.Flag() ? 0x6400 + input.Byte() : input.Word());
    const std::string pin = input.Rest().substr(0, kLongestPin);
    RequireChecks(policy, pin);
    RequireTexts(policy, status, pin);
    RequireTexts(policy, CheckCharacterClasses(policy, pin), pin);
}

}  // namespace zeldlg::fuzz
