#pragma once

#include "host/TCIMContext.h"

namespace cimhttp {

struct Connection;

/// What the plug-in is told about a connection when a namespace is made for it, see cimhttp/ContextKeys.h.
NQORVYX20::TCIMContext ContextOf(const Connection& connection);

} // namespace cimhttp
