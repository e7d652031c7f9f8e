// The primitives under the request queue.
#include <benchmark/benchmark.h>

#include "platform/event.h"
#include "runtime/message.h"

namespace {

using namespace zeldlg;

void PollUnsetEvent(benchmark::State& state) {
    platform::ManualResetEvent event;
    for (auto _ : state) {
        benchmark::DoNotOptimize(platform::WaitForEvent(event, 0));
    }
}

void SetAndResetEvent(benchmark::State& state) {
    platform::ManualResetEvent event;
    for (auto _ : state) {
        event.Set();
        event.Reset();
    }
}

// A request's record from its making to its end, without another thread.
void MessageLife(benchmark::State& state) {
    for (auto _ : state) {
        CMessage message(1, 2, 3);
        message.Complete();
        message.WaitDone();
    }
}

BENCHMARK(PollUnsetEvent);
BENCHMARK(SetAndResetEvent);
BENCHMARK(MessageLife);

}  // namespace
