// Runs wxWidgets on the GUI thread without its own main loop, and gives the process back the
// state that the toolkit's start changes.
#pragma once

#include <glib.h>

#include <memory>

#include "runtime/toolkit.h"

namespace zeldlg {

class WxToolkit : public Toolkit {
public:
    /// Somebody else in this process has what Start needs, or will come to have it: another toolkit
    /// that is loaded, an instance of ours, a display that GTK has opened, GLib's default main
    /// context. Any thread, while no WxToolkit is up.
    static bool IsTaken();

    /// Fails when there is no display, when the process already runs an instance of the toolkit,
    /// or when another thread owns GLib's default main context. Can be tried again later.
    bool Start(const std::function<void()>& leave) override;
    bool Iterate() override;
    /// A host that runs GLib's default main context meanwhile keeps it: its thread would serve
    /// our windows.
    bool Enter() override;
    void Leave() override;
    void Stop() override;

private:
    struct SourceDestroyer {
        void operator()(GSource* source) const;
    };

    bool m_sawOtherLoop = false;  // a host's, which runs the context's events
    // What sees an exit of the process from within a dialog's own loop.
    std::unique_ptr<GSource, SourceDestroyer> m_watch;
};

}  // namespace zeldlg
