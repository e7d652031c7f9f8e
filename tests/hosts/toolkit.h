/// A host with a window of its own: one file for each toolkit, behind the commands of the test
/// host (tests/gui/host).
#pragma once

#include <functional>

namespace testhost {

constexpr const char* kWindowTitle = "Host window";
constexpr const char* kWindowText = "A window of the host's own";
constexpr int kWindowWidth = 460;
constexpr int kWindowHeight = 320;
constexpr int kMargin = 8;
constexpr int kFrameMilliseconds = 20;

/// On the main thread: starts the toolkit, shows a window with a text, a field, and an area that is
/// painted in another colour with every frame, calls `running` from its loop, and returns once it
/// was told to quit. May be called again then. False, without a call of `running`, when the toolkit
/// could not start.
bool RunToolkit(const std::function<void()>& running);

/// From any thread, while it runs.
void QuitToolkit();

/// The red of the next frame, 255 at most; counts it.
int NextFrame();

}  // namespace testhost
