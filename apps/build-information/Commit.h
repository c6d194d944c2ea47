#pragma once

namespace build_information {

/// The commit that the sources are from, or "unknown". Its definition is written by WriteCommit.cmake.
extern const char* const kCommit;

} // namespace build_information
