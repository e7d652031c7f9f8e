/// What the host's main thread does: it obeys commands; or, in the hosts of tests/hosts, it runs a
/// toolkit with a window of the host's own, and another thread obeys.
#pragma once

#include <cstdint>
#include <functional>

namespace testhost {

/// The host's exit code, once `obey` has given it. Called once, by the main thread.
int RunMainThread(const std::function<int()>& obey);

// For the thread that obeys; they raise ProtocolError in a host without a toolkit.

/// Returns once the toolkit's loop runs; false when it could not start.
bool StartToolkit();
/// Returns once the loop has ended and the window is gone.
void StopToolkit();
/// How often the host's own window has been painted so far.
uint64_t PaintedFrames();

}  // namespace testhost
