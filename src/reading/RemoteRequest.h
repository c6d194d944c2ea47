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

/// The failure for an answer that no server should give.
RemoteFailure MalformedAnswer(const std::string& text);

/// The failure for something from the server that the host cannot keep.
RemoteFailure LocalFailure(const std::string& text);

/// When it is destroyed, what could not be read of the answers until then goes to the report of the namespace and to
/// the log, even when the host never asks for the report.
class FindingsReported {
  public:
    explicit FindingsReported(RemoteNamespace& nameSpace) : namespace_(nameSpace) {}
    ~FindingsReported();
    FindingsReported(const FindingsReported&) = delete;
    FindingsReported& operator=(const FindingsReported&) = delete;

  private:
    RemoteNamespace& namespace_;
};

/// Runs `request`, which sends requests and uses their answers. An exception of the client library, or a lack of
/// memory, ends the operation as FailRemotely() does.
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
