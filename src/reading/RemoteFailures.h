#pragma once

#include "cimhttp/RemoteFailure.h"

#include <Pegasus/Client/CIMClient.h>

#include <cstdint>

namespace NQORVYX20 {

/// What an exception of the client library means. The one place where its types are told apart.
RemoteFailure RemoteFailureOf(const Pegasus::Exception& exception);

/// The status code with which a faithful namespace reports a failure: 15 for what the server does not have, otherwise
/// 42.
std::uint32_t StatusCodeOf(const RemoteFailure& failure);

/// True when the server could not be asked at all, so that asking for something else is in vain for now; false when it
/// gave an answer, whatever that was.
bool IsConnectionAtFault(const RemoteFailure& failure);

/// True when the server says that it does not know the operation.
bool IsOperationUnsupported(const RemoteFailure& failure);

} // namespace NQORVYX20
