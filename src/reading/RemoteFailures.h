#pragma once

#include "cimhttp/RemoteFailure.h"
#include "host/TVYXStatusCode.h"

#include <Pegasus/Client/CIMClient.h>

#include <string>

namespace NQORVYX20 {

/// What an exception of the client library means. The one place where its types are told apart.
RemoteFailure RemoteFailureOf(const Pegasus::Exception& exception);

/// What it says, in the server's words where these are the server's; it does not name the server then. As long as the
/// exception.
const Pegasus::String& StatementOf(const Pegasus::Exception& exception);
std::string MessageOf(const Pegasus::Exception& exception);

/// The status code with which a faithful namespace reports a failure: eNotFound for what the server does not have,
/// otherwise eRemoteConnectionFailed.
TVYXStatusCode::EStatusCode StatusCodeOf(const RemoteFailure& failure);

/// True when the server could not be asked at all, so that asking for something else is in vain for now; false when it
/// gave an answer, whatever that was.
bool IsConnectionAtFault(const RemoteFailure& failure);

/// True when the server says that it does not know the operation.
bool IsOperationUnsupported(const RemoteFailure& failure);

} // namespace NQORVYX20
