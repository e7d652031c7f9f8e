/// The library's exports as the test host calls them: each one's name with what reads its
/// arguments from a command, calls it, and reports its outputs.
#pragma once

#include <functional>
#include <span>

#include "arguments.h"
#include "json_line.h"

namespace testhost {

/// A call that is ready to be made, with all its records; returns after the export has returned
/// and adds `result`, `elapsed_us` and the outputs to the line.
using PreparedCall = std::function<void(JsonLine&)>;

struct Export {
    const char* name;
    /// Reads the arguments; `function` is the export's address.
    PreparedCall (*prepare)(void* function, Arguments& arguments);
};

/// The 49 functions of the function table in its order, then the three that are not in it.
std::span<const Export> Exports();
constexpr size_t kTableSize = 49;

}  // namespace testhost
