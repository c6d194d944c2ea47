#pragma once

#include "server/CimService.h"
#include "wire/CimError.h"
#include "wire/CimRequest.h"
#include "wire/XmlWriter.h"

#include <cstddef>
#include <limits>
#include <optional>
#include <string>

namespace demo {

/// Carries out an operation and returns the whole response message; nothing if it is longer than a limit. An error
/// stands in it as an ERROR element.
std::optional<std::string> Answer(const CimService& service, const CimRequest& request,
                                  std::size_t limit = std::numeric_limits<std::size_t>::max());

/// Carries out an operation and writes the response message while it comes about. The caller tells the peer about the
/// error that this returns: in the message itself the response only ends there.
std::optional<CimError> StreamAnswer(const CimService& service, const CimRequest& request, XmlWriter::Output output);

} // namespace demo
