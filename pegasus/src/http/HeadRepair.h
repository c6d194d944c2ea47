#pragma once

#include <cstddef>
#include <string_view>

namespace Pegasus::http {

// Changes to the head of an answer that make the parser accept it, where its meaning is clear.

/// Whether the text begins with a status that lacks the blank after it (RFC 9112, 4); the blank belongs at
/// kStatusLength.
bool lacksBlankBehindStatus(std::string_view text);
constexpr std::size_t kStatusLength = 12;

/// Where a head, with its status or without, says its length beside the coding "chunked", which overrides that (RFC
/// 9112, 6.3), gives the length another name. False where it does not.
bool hideOverriddenLength(char* head, std::size_t size);

} // namespace Pegasus::http
