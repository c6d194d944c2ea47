#pragma once

#include <string>

namespace cimhttp {

/// The path of a library that was built or installed with this program, `lib` beside the program's `bin`; its bare
/// name, for the loader to search, where there is none.
std::string LibraryBesideProgram(const std::string& file_name);

} // namespace cimhttp
