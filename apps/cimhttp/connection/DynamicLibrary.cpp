#include "connection/DynamicLibrary.h"

#include "Failure.h"
#include "connection/ProgramFolder.h"

#include <dlfcn.h>

namespace cimhttp {

void* LoadLibrary(const std::string& path, const std::string& what) {
    void* const library = ::dlopen(path.c_str(), RTLD_NOW | RTLD_LOCAL);
    if (library == nullptr) {
        throw Failure(Failure::kOther, what + " cannot be loaded: " + ::dlerror());
    }
    return library;
}

void* FunctionAddress(const std::string& library, const char* name) {
    void* const handle = LoadLibrary(LibraryBesideProgram(library), "the program's own library");
    void* const function = ::dlsym(handle, name);
    if (function == nullptr) {
        throw Failure(Failure::kOther, std::string("the program's own library is damaged: ") + ::dlerror());
    }
    return function;
}

} // namespace cimhttp
