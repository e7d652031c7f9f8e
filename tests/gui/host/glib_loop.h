/// A host that runs a GLib main loop of its own: a thread that serves the default context and
/// counts every 10 milliseconds. GLib is loaded at run time, as the host links nothing.
#pragma once

#include <cstdint>

namespace testhost {

/// Returns once the loop runs. Raises ProtocolError when it runs already.
void StartGlibLoop();
/// Ends the loop and joins its thread.
void StopGlibLoop();
/// How often the loop has ticked; 0 before the first start.
uint64_t GlibLoopTicks();

}  // namespace testhost
