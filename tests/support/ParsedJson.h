#pragma once

#include <nlohmann/json.hpp>

#include <string>

namespace support {

/// The text as JSON. Throws nlohmann::json::parse_error when it is none. The parser is compiled here, once for all
/// tests.
nlohmann::json ParsedJson(const std::string& text);

/// The text as JSON, or a discarded value when it is none.
nlohmann::json ParsedJsonOrDiscarded(const std::string& text);

} // namespace support
