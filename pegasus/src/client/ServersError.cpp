#include "client/ServersError.h"

#include <Pegasus/Common/CIMInstance.h>

#include <string>

namespace Pegasus::client {

namespace {

String named(const String& message, const std::string& server, const char* method) {
    return String(std::string(message.view()) + " (" + server + ": " + method + ")");
}

} // namespace

ServersError::ServersError(const CIMException& error, const http::Endpoint& endpoint, const char* method)
    : CIMException(error.getCode(), WholeMessage{named(error.getMessage(), endpoint.text(), method)}),
      RefusedByServer(String(endpoint.text()), error.getMessage()) {
    for (Uint32 i = 0; i < error.getErrorCount(); ++i) {
        addError(error.getError(i));
    }
}

} // namespace Pegasus::client
