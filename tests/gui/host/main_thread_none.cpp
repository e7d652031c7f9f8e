#include "arguments.h"
#include "main_thread.h"

namespace testhost {

namespace {

[[noreturn]] void Refuse() { throw ProtocolError("this host has no toolkit: use one that has"); }

}  // namespace

int RunMainThread(const std::function<int()>& obey) { return obey(); }
bool StartToolkit() { Refuse(); }
void StopToolkit() { Refuse(); }
uint64_t PaintedFrames() { Refuse(); }

}  // namespace testhost
