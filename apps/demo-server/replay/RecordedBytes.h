#pragma once

#include "replay/Recording.h"

#include <string>

namespace demo {

/// The bytes of a recorded answer for another request: the body has its message ID where it had that of the recorded
/// one, and the length fits; chunks are framed anew.
std::string BytesFor(const RecordedAnswer& answer, const std::string& messageId);

/// Whether the answer's body ends with the connection or is cut off, or its head says that the connection ends.
bool EndsConnection(const RecordedAnswer& answer);

} // namespace demo
