#pragma once

#include <string>

namespace cimhttp {

/// The path of a library that was built or installed with this program, in the folder of its libraries beside the
/// program's `bin`; its bare name, for the loader to search, where there is none.
std::string LibraryBesideProgram(const std::string& fileName);

/// Loads a library for the rest of the process; `what` names it in the Failure that is thrown when it cannot be loaded.
void* LoadLibrary(const std::string& path, const std::string& what);

/// The address of a function of one of the program's own libraries, which are loaded when they are needed. Throws
/// Failure when it cannot be had.
void* FunctionAddress(const std::string& library, const char* name);

template <typename Function>
Function* FunctionOf(const std::string& library, const char* name) {
    return reinterpret_cast<Function*>(FunctionAddress(library, name));
}

} // namespace cimhttp
