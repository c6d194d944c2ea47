#pragma once

#include "http/Endpoint.h"

#include <Pegasus/Client/FailureMarks.h>
#include <Pegasus/Common/Exception.h>

namespace Pegasus::client {

/// The error that a server answered an operation with. Its message names both.
class ServersError final : public CIMException, public RefusedByServer {
  public:
    ServersError(const CIMException& error, const http::Endpoint& endpoint, const char* method);
};

} // namespace Pegasus::client
