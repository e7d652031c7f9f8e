// Owns a top-level window for as long as a request needs it.
#pragma once

#include <wx/toplevel.h>

#include <memory>

namespace zeldlg {

struct DestroyWindow {
    void operator()(wxTopLevelWindow* window) const { window->Destroy(); }
};

template <typename Window>
using WindowPtr = std::unique_ptr<Window, DestroyWindow>;

template <typename Window, typename... Arguments>
WindowPtr<Window> MakeWindow(const Arguments&... arguments) {
    return WindowPtr<Window>(new Window(arguments...));
}

}  // namespace zeldlg
