#pragma once

#include "server/CimService.h"
#include "wire/CimError.h"
#include "wire/CimRequest.h"
#include "wire/XmlWriter.h"

#include <optional>
#include <string>

namespace demo {

/// Carries out an operation and returns the whole response message. An error stands in it as an ERROR element.
std::string Answer(const CimService& service, const CimRequest& request);

/// Carries out an operation and writes the response message while it comes about. The caller tells the peer about the
/// error that this returns: in the message itself the response only ends there.
std::optional<CimError> StreamAnswer(const CimService& service, const CimRequest& request, XmlWriter::Output output);

} // namespace demo
