#pragma once

#include "access/RemoteModel.h"
#include "reading/RemoteFailures.h"

#include <Pegasus/Client/CIMClient.h>

namespace cimhttp {

/// Runs one operation of the client. Its exceptions must not leave this library, whose users do not know their types.
template <typename Operation>
auto Remotely(const Operation& operation) {
    try {
        return operation();
    } catch (const Pegasus::Exception& failure) {
        throw RemoteError(NQORVYX20::RemoteFailureOf(failure));
    }
}

} // namespace cimhttp
