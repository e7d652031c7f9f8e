/// How an export is called through its address: timed, its result reported, its records alive.
#pragma once

#include <chrono>
#include <cstdint>
#include <memory>
#include <type_traits>

#include "arguments.h"
#include "export_calls.h"
#include "json_line.h"

namespace testhost {

template <typename Result, typename... Parameters, typename... Values>
void CallExport(JsonLine& line, Result (*function)(Parameters...), Values... values) {
    const auto start = std::chrono::steady_clock::now();
    const auto report = [&line, start] {
        const auto elapsed = std::chrono::steady_clock::now() - start;
        line.Number("elapsed_us",
                    std::chrono::duration_cast<std::chrono::microseconds>(elapsed).count());
    };
    if constexpr (std::is_void_v<Result>) {
        function(values...);
        report();
        line.Null("result");
    } else if constexpr (std::is_pointer_v<Result>) {
        const auto result = reinterpret_cast<uintptr_t>(function(values...));
        report();
        line.Unsigned("result", result);
    } else {
        const Result result = function(values...);
        report();
        line.Unsigned("result", result);
    }
}

template <typename Function>
Function As(void* function) {
    return reinterpret_cast<Function>(function);
}

/// Keeps a call's records alive while it runs; `Call(void* function, JsonLine&)` makes it.
template <typename Records>
PreparedCall Prepare(void* function, Arguments& arguments) {
    const auto records = std::make_shared<Records>(arguments);
    return [function, records](JsonLine& line) { records->Call(function, line); };
}

}  // namespace testhost
