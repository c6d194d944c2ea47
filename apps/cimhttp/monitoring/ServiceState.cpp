#include "monitoring/ServiceState.h"

namespace cimhttp {

namespace {

int RankOf(ServiceState state) {
    switch (state) {
    case ServiceState::kOk:
        return 0;
    case ServiceState::kUnknown:
        return 1;
    case ServiceState::kWarning:
        return 2;
    case ServiceState::kCritical:
        break;
    }
    return 3;
}

} // namespace

const char* NameOf(ServiceState state) {
    switch (state) {
    case ServiceState::kOk:
        return "OK";
    case ServiceState::kWarning:
        return "WARNING";
    case ServiceState::kCritical:
        return "CRITICAL";
    case ServiceState::kUnknown:
        break;
    }
    return "UNKNOWN";
}

ServiceState Worse(ServiceState one, ServiceState other) { return RankOf(one) < RankOf(other) ? other : one; }

} // namespace cimhttp
