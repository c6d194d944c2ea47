#pragma once

#include <optional>
#include <string>

namespace cimhttp {

/// The usual form of a SHA-256 fingerprint, 32 pairs of digits in upper case with colons between them. Takes them in
/// any case, with or without colons; nothing for another text.
std::optional<std::string> NormalFingerprint(const std::string& text);

} // namespace cimhttp
