// What every typed character costs beside its drawing: the local policies, and the pages that
// explain them.
#include <benchmark/benchmark.h>

#include <stdexcept>
#include <string>

#include "policy/policy_checker.h"
#include "policy/policy_pages.h"

namespace {

using namespace zeldlg;

// All local policies, as expensive as they get: case folded, and a list of 64 characters.
PinPolicy FullPolicy() {
    PinPolicy policy;
    policy.enabledMask = kPolicyElementaryDistance | kPolicyCharacterClassification |
                         kPolicyHistoryChecking | kPolicyCharacterRestriction;
    policy.p1Threshold = 1;
    policy.p1FullPinCheck = 1;
    policy.p2NbClass = 1;
    policy.p2PopMin = 2;
    policy.p2MinLen = 8;
    policy.p2ClassMask = kClassLower | kClassUpper | kClassDigit | kClassPunctuation | kClassOther;
    for (char c = '0'; c < '0' + 64; ++c) {
        policy.p4CharList.push_back(c);
    }
    return policy;
}

// One arithmetic run but for its last byte, and of no listed character: no check ends early, and
// all accept it.
std::string Pin(int64_t length) {
    std::string pin;
    for (int64_t i = 0; i + 1 < length; ++i) {
        pin.push_back(static_cast<char>(0xFF - i));
    }
    pin.push_back(pin.back());
    return pin;
}

void CheckPolicies(benchmark::State& state) {
    PinPolicy policy = FullPolicy();
    const std::string pin = Pin(state.range(0));
    if (!CheckLocalPolicies(policy, pin).AllAccepted()) {
        throw std::runtime_error("the PIN is refused");
    }
    for (auto _ : state) {
        benchmark::DoNotOptimize(CheckLocalPolicies(policy, pin));
    }
    state.SetComplexityN(state.range(0));
}

// Checks, and the pages that explain them while nothing changes.
void UpdatePagesUnchanged(benchmark::State& state) {
    PolicyPages pages(FullPolicy());
    const std::string pin = Pin(state.range(0));
    for (auto _ : state) {
        pages.Update(pin);
        benchmark::DoNotOptimize(pages.AllMet());
    }
    state.SetComplexityN(state.range(0));
}

// The same with a status that changes every time: a page is composed anew.
void UpdatePagesChanging(benchmark::State& state) {
    PolicyPages pages(FullPolicy());
    const std::string pins[] = {Pin(state.range(0)), Pin(state.range(0)) + '0'};
    for (bool refused = false; auto _ : state) {
        pages.Update(pins[refused ? 1 : 0]);
        refused = !refused;
        benchmark::DoNotOptimize(pages.AllMet());
    }
    state.SetComplexityN(state.range(0));
}

BENCHMARK(CheckPolicies)->RangeMultiplier(2)->Range(8, 128)->Complexity(benchmark::oN);
BENCHMARK(UpdatePagesUnchanged)->RangeMultiplier(2)->Range(8, 128)->Complexity(benchmark::oN);
BENCHMARK(UpdatePagesChanging)->RangeMultiplier(2)->Range(8, 128)->Complexity(benchmark::oN);

}  // namespace
