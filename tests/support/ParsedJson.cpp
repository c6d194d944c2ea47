#include "support/ParsedJson.h"

namespace support {

nlohmann::json ParsedJson(const std::string& text) { return nlohmann::json::parse(text); }

nlohmann::json ParsedJsonOrDiscarded(const std::string& text) { return nlohmann::json::parse(text, nullptr, false); }

} // namespace support
