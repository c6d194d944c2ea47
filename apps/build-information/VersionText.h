#pragma once

#include <string>

namespace build_information {

/// What a program of this name says when it is asked for its version: lines with version, commit, compiler and client
/// library, without an end of the last.
std::string VersionText(const std::string& program);

/// The version alone, `1.2.3`.
std::string Version();

} // namespace build_information
