#pragma once

#include <Pegasus/Client/CIMClient.h>

#include <string>

#include "cimhttp/RemoteFailure.h"
#include "reading/LimitExceeded.h"
#include "reading/RemoteFailures.h"

namespace NQORVYX20 {

class ReadingReport;

/// Ends an operation of a faithful namespace: notes the failure, writes it to the log in a line that begins with
/// `what`, and throws TVYXException with its code.
[[noreturn]] void FailRemotely(ReadingReport& report, const std::string& what, const RemoteFailure& failure);

/// The failure of a server that answers what no server should.
RemoteFailure MalformedAnswer(const std::string& text);

/// The failure of a host that does not keep what a server gives.
RemoteFailure LocalFailure(const std::string& text);

/// Makes requests, and what comes of them; what the client library throws, and memory that does not suffice, ends the
/// operation as FailRemotely() does.
template <typename Request>
auto AskRemotely(ReadingReport& report, const std::string& what, const Request& request) {
    try {
        return WithinMemory(request);
    } catch (const Pegasus::Exception& exception) {
        FailRemotely(report, what, RemoteFailureOf(exception));
    }
}

} // namespace NQORVYX20
