#pragma once

#include <cstdint>

namespace NQORVYX20 {

// The status codes of TVYXException that the plug-in throws.
constexpr std::uint32_t kNotSupported = 1;
constexpr std::uint32_t kTypeMismatch = 14;
constexpr std::uint32_t kNotFound = 15;
constexpr std::uint32_t kAlreadyExists = 16;
constexpr std::uint32_t kInvalidName = 25;
constexpr std::uint32_t kQualifierConflict = 28;
constexpr std::uint32_t kReadOnly = 31;
constexpr std::uint32_t kContextValueMissing = 32;
constexpr std::uint32_t kRemoteConnectionFailed = 42;

} // namespace NQORVYX20
