#include "arguments.h"
#include "host_toolkit.h"

namespace testhost {

bool StartToolkit() { throw ProtocolError("this host has no toolkit: use zeldlg_test_host_wx"); }
void StopToolkit() { throw ProtocolError("this host has no toolkit: use zeldlg_test_host_wx"); }

}  // namespace testhost
