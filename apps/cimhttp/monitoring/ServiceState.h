#pragma once

namespace cimhttp {

/// What a check says of a service, with the exit status that monitoring systems expect.
enum class ServiceState { kOk = 0, kWarning = 1, kCritical = 2, kUnknown = 3 };

/// `WARNING`
const char* NameOf(ServiceState state);

/// The worse of two: critical, then warning, unknown and OK. What is known to be wrong is told before what is not
/// known.
ServiceState Worse(ServiceState one, ServiceState other);

} // namespace cimhttp
