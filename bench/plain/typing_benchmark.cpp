// What every typed character costs beside its drawing: the local policies, and the pages that
// explain them.
#include <benchmark/benchmark.h>

#include <stdexcept>
#include <string>

#include "full_policy.h"
#include "policy/change_pin_checks.h"

namespace {

using namespace zeldlg;
using bench::FullPolicy;
using bench::Pin;

void CheckPolicies(benchmark::State& state) {
    PinPolicy policy = FullPolicy();
    const std::string pin = Pin(state.range(0));
    if (!bench::Accepts(policy, pin)) {
        throw std::runtime_error("the PIN is refused");
    }
    for (auto _ : state) {
        benchmark::DoNotOptimize(bench::Accepts(policy, pin));
    }
    state.SetComplexityN(state.range(0));
}

// Checks, and the pages that explain them while nothing changes.
void UpdatePagesUnchanged(benchmark::State& state) {
    ChangePinChecks checks(ChangePinMode::ChangePin, {}, true, FullPolicy());
    const std::string pin = Pin(state.range(0));
    for (auto _ : state) {
        checks.Update({.oldValue = {}, .newValue = pin, .confirmation = {}});
        benchmark::DoNotOptimize(checks.AllMet());
    }
    state.SetComplexityN(state.range(0));
}

// The same with a status that changes every time: a page is composed anew.
void UpdatePagesChanging(benchmark::State& state) {
    ChangePinChecks checks(ChangePinMode::ChangePin, {}, true, FullPolicy());
    const std::string pins[] = {Pin(state.range(0)), Pin(state.range(0)) + '0'};
    for (bool refused = false; auto _ : state) {
        checks.Update({.oldValue = {}, .newValue = pins[refused ? 1 : 0], .confirmation = {}});
        refused = !refused;
        benchmark::DoNotOptimize(checks.AllMet());
    }
    state.SetComplexityN(state.range(0));
}

BENCHMARK(CheckPolicies)->RangeMultiplier(2)->Range(8, 128)->Complexity(benchmark::oN);
BENCHMARK(UpdatePagesUnchanged)->RangeMultiplier(2)->Range(8, 128)->Complexity(benchmark::oN);
BENCHMARK(UpdatePagesChanging)->RangeMultiplier(2)->Range(8, 128)->Complexity(benchmark::oN);

}  // namespace
