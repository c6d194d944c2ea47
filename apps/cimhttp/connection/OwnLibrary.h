#pragma once

#include <string>

namespace cimhttp {

/// The path of a library that was built or installed with this program, `lib` beside the program's `bin`; its bare
/// name, for the loader to search, where there is none.
std::string LibraryBesideProgram(const std::string& fileName);

/// Loads a library that was built or installed with the program, for the rest of the process, and finds the function by
/// which it is used. Throws Failure where that cannot be.
void* OwnLibraryFunction(const char* library, const char* function);

} // namespace cimhttp
