// What the GUI thread needs of a GUI toolkit. One implementation runs the real one; tests put a
// scripted one in its place.
#pragma once

#include <functional>

namespace zeldlg {

/// All operations are called on the GUI thread.
class Toolkit {
public:
    Toolkit() = default;
    Toolkit(const Toolkit&) = delete;
    Toolkit& operator=(const Toolkit&) = delete;
    virtual ~Toolkit() = default;

    /// @param leave Called, on this thread, when the toolkit has lost its display and nothing of
    ///        it can be used or ended any more; at any time until Stop has returned. Does not
    ///        return. Outlives the toolkit's use.
    /// @return Whether the toolkit is up. After a failure, or an exception, only destruction
    ///         follows.
    virtual bool Start(const std::function<void()>& leave) = 0;
    /// Serves pending events and timers without blocking. @return Whether there were any.
    virtual bool Iterate() = 0;
    /// Called around a request. @return Whether windows may be used now.
    virtual bool Enter() = 0;
    virtual void Leave() = 0;
    /// Ends what Start began and destroys all windows.
    virtual void Stop() = 0;
};

}  // namespace zeldlg
