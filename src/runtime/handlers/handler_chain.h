// The request handlers in the order in which they are offered a request.
#pragma once

#include <span>

#include "runtime/wx_runner.h"

namespace zeldlg {

std::span<const RequestHandler> HandlerChain();

}  // namespace zeldlg
