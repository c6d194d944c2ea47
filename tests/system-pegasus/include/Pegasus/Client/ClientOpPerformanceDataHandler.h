#pragma once

#include <Pegasus/Common/Config.h>

namespace Pegasus {

/// Its names and numbers are those of each library.
enum CIMOperationType {};

struct ClientOpPerformanceData {
    CIMOperationType operationType;
    Boolean serverTimeKnown;
    Uint64 serverTime;
    Uint64 roundTripTime;
    Uint64 requestSize;
    Uint64 responseSize;
};

class ClientOpPerformanceDataHandler {
  public:
    virtual ~ClientOpPerformanceDataHandler();
    virtual void handleClientOpPerformanceData(const ClientOpPerformanceData& data) = 0;
};

} // namespace Pegasus
