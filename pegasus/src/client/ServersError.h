#pragma once

#include "http/Endpoint.h"

#include <Pegasus/Common/ContentLanguageList.h>
#include <Pegasus/Common/Exception.h>

namespace Pegasus::client {

/// Throws the error that a server answered an operation with, as a RefusedByServer whose message names both.
[[noreturn]] void throwServersError(const CIMException& error, const http::Endpoint& endpoint, const char* method,
                                    const ContentLanguageList& languages);

} // namespace Pegasus::client
