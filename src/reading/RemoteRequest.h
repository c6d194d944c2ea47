#pragma once

#include "cimhttp/RemoteFailure.h"
#include "reading/LimitExceeded.h"
#include "reading/RemoteFailures.h"

#include <Pegasus/Client/CIMClient.h>

#include <string>

namespace NQORVYX20 {

class ReadingReport;
class RemoteNamespace;

/// Ends an operation of a faithful namespace: notes the failure, writes it to the log in a line that begins with
/// `what`, and throws TVYXException with its code.
[[noreturn]] void FailRemotely(ReadingReport& report, const std::string& what, const RemoteFailure& failure);
[[noreturn]] void FailRemotely(RemoteNamespace& nameSpace, const std::string& what, const RemoteFailure& failure);

/// The failure of a server that answers what no server should.
RemoteFailure MalformedAnswer(const std::string& text);

/// The failure of a host that does not keep what a server gives.
RemoteFailure LocalFailure(const std::string& text);

/// When it goes, what could not be read of the answers until then is in the report of the namespace and in the log,
/// also of a host that never asks for the report.
class FindingsReported {
  public:
    explicit FindingsReported(RemoteNamespace& nameSpace) : namespace_(nameSpace) {}
    ~FindingsReported();
    FindingsReported(const FindingsReported&) = delete;
    FindingsReported& operator=(const FindingsReported&) = delete;

  private:
    RemoteNamespace& namespace_;
};

/// Makes requests, and what comes of them; what the client library throws, and memory that does not suffice, ends the
/// operation as FailRemotely() does.
template <typename Request>
auto AskRemotely(RemoteNamespace& nameSpace, const std::string& what, const Request& request) {
    const FindingsReported findings(nameSpace);
    try {
        return WithinMemory(request);
    } catch (const Pegasus::Exception& exception) {
        FailRemotely(nameSpace, what, RemoteFailureOf(exception));
    }
}

} // namespace NQORVYX20
