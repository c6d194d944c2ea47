#pragma once

#include <Pegasus/Common/CIMOperationType.h>
#include <Pegasus/Common/Config.h>

namespace Pegasus {
inline namespace bundled {

/// What one operation took. Times are in microseconds, sizes are bytes of the CIM-XML in request and answer.
struct ClientOpPerformanceData {
    CIMOperationType operationType;
    /// Whether the server says how long it took, in the field WBEMServerResponseTime.
    Boolean serverTimeKnown;
    Uint64 serverTime;
    /// From before the request is sent until the answer is complete, including a login and a new connection.
    Uint64 roundTripTime;
    Uint64 requestSize;
    Uint64 responseSize;
};

/// Is told of each operation whose answer was complete, even where the answer is an error.
class ClientOpPerformanceDataHandler {
  public:
    virtual ~ClientOpPerformanceDataHandler() = default;
    /// Called on the thread of the operation, before it returns.
    virtual void handleClientOpPerformanceData(const ClientOpPerformanceData& data) = 0;
};

} // namespace bundled
} // namespace Pegasus
