#pragma once

namespace cimhttp {

// Status codes of CIM (DSP0200), of which a RemoteFailure tells.
constexpr unsigned kCimAccessDenied = 2;
constexpr unsigned kCimInvalidNamespace = 3;
constexpr unsigned kCimInvalidParameter = 4;
constexpr unsigned kCimInvalidClass = 5;
constexpr unsigned kCimNotFound = 6;
constexpr unsigned kCimNotSupported = 7;

} // namespace cimhttp
