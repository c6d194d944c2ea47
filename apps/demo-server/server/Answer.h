#pragma once

#include "server/CimService.h"
#include "wire/CimError.h"
#include "wire/CimRequest.h"
#include "wire/XmlWriter.h"

#include <cstddef>
#include <functional>
#include <optional>
#include <string>

namespace demo {

/// A whole response message.
struct WholeAnswer {
    std::string text;
    /// What stands in it as an ERROR element, nothing for success.
    std::optional<CimError> error;
};

/// Says whether a response message may be so long.
using MayHold = std::function<bool(std::size_t)>;

/// Carries out an operation and returns the whole response message; nothing as soon as it may not be longer. Without a
/// limit it may have any length.
std::optional<WholeAnswer> Answer(const CimService& service, const CimRequest& request, const MayHold& mayHold = {});

/// Carries out an operation and writes the response message while it comes about. The caller tells the peer about the
/// error that this returns: in the message itself the response only ends there.
std::optional<CimError> StreamAnswer(const CimService& service, const CimRequest& request, XmlWriter::Output output);

} // namespace demo
