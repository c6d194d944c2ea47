#include "http/TimeOut.h"

#include <Pegasus/Common/Exception.h>

namespace Pegasus::http {

std::string timeOutText(std::string_view what, const Deadline& deadline) {
    const std::string text = std::string(what) + " within " + std::to_string(deadline.limit().count()) + " ms";
    return deadline.isOfStep() ? text + ", the limit of each step of connecting" : text;
}

void throwTimeOut(const Endpoint& endpoint, const Deadline& deadline, std::string_view what) {
    throw ConnectionTimeoutException(String(endpoint.text() + ": " + timeOutText(what, deadline)));
}

} // namespace Pegasus::http
