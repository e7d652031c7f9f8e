// Who serves requests: the process's own GUI thread, or a helper process of the library.
#pragma once

#include "runtime/message.h"

/// Opaque to hosts, who hold a pointer to it (InitApp).
struct GuiRunner {
public:
    GuiRunner() = default;
    GuiRunner(const GuiRunner&) = delete;
    GuiRunner& operator=(const GuiRunner&) = delete;
    virtual ~GuiRunner() = default;

    /// Has the message served and waits until it has been, without a time limit. Raises what the
    /// handler threw. Any number of threads may call: first come, first served.
    /// @return Whether it was carried out.
    virtual bool Send(zeldlg::CMessage& message) = 0;

    /// Ends what serves, waiting without a time limit for a request that is being served. Requests
    /// that are sent meanwhile are refused.
    /// @return Whether it has ended.
    virtual bool Stop() = 0;
};

namespace zeldlg {

// Nothing of these takes a lock that another thread of this process, or of the one that it was
// forked from, may have left locked; and nothing waits once the process exits.

/// Who serves requests in this process; made by the first call. Throws std::bad_alloc, and
/// std::runtime_error when nobody can any more.
GuiRunner* GetGuiRunner();

/// Whether it is a helper process: what is translated here has no catalogue then.
bool IsServedByHelper();

/// As GuiRunner::Send; false for a runner that was destroyed meanwhile.
bool SendRequest(GuiRunner* runner, CMessage* message);

/// Ends and destroys it, if there is one.
void DestroyGuiRunner();

}  // namespace zeldlg
