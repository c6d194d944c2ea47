#include "connection/DynamicLibrary.h"

#include "Failure.h"

#include <dlfcn.h>

#include <filesystem>

namespace cimhttp {

std::string LibraryBesideProgram(const std::string& fileName) {
    std::error_code error;
    const auto program = std::filesystem::read_symlink("/proc/self/exe", error);
    const auto beside = program.parent_path().parent_path() / CIMHTTP_LIBRARY_DIR / fileName;
    return !error && std::filesystem::exists(beside, error) ? beside.string() : fileName;
}

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
