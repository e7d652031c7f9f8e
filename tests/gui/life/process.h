// What a host tells whoever started it, and what it can see of itself.
#pragma once

#include <cstddef>
#include <cstdint>

namespace life {

/// One line on standard output. May be called in a signal handler, and while memory is allocated.
void Say(const char* word, uint64_t number);

/// Whether there is a thread of the library's, in a process that has so many of its own. (Those of
/// the toolkit's libraries have names.)
bool HasLibraryThread(size_t own);

}  // namespace life
