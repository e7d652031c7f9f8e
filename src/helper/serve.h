// The helper's end of the connection: takes the requests of a host's library and has them served by
// this process.
#pragma once

#include "runtime/remote/frames.h"
#include "runtime/remote/wire.h"

namespace zeldlg {
class CMessage;
}

namespace zeldlg::helper {

/// Serves one request. @param send Has a message served by the GUI thread, as SendRequest does.
/// Throws WireError for bytes that are no request.
remote::Frame Answer(const remote::WireBytes& request, remote::Handles& handles,
                     bool (*send)(CMessage& message));

/// Serves until the host wants it to end, or is gone, or the display is lost. Throws WireError for
/// what cannot be read.
/// @return Whether the host wanted it, and the GUI thread has ended.
bool Serve(int socket);

}  // namespace zeldlg::helper
