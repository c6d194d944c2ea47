#include "http/TimeOut.h"

#include <Pegasus/Common/Exception.h>
#include <string>

namespace Pegasus::http {

void throwTimeOut(const Endpoint& endpoint, const Deadline& deadline, std::string_view what) {
    throw ConnectionTimeoutException(String(endpoint.text() + ": " + std::string(what) + " within " +
                                            std::to_string(deadline.limit().count()) + " ms"));
}

} // namespace Pegasus::http
