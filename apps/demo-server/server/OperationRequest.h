#pragma once

#include "server/RequestHead.h"
#include "wire/CimRequest.h"

#include <string>

namespace demo {

/// The operation that the body of a request asks for. The extension headers of DSP0200 repeat what stands in the body,
/// for firewalls and proxies: throws HttpError when they say something else, or the body is no request.
CimRequest ReadOperation(const RequestHead& head, const std::string& body);

} // namespace demo
