#include "connection/OwnLibrary.h"

#include "Failure.h"

#include <dlfcn.h>

#include <filesystem>
#include <string>
#include <system_error>

namespace cimhttp {

std::string LibraryBesideProgram(const std::string& fileName) {
    std::error_code error;
    const auto program = std::filesystem::read_symlink("/proc/self/exe", error);
    const auto beside = program.parent_path().parent_path() / CIMHTTP_LIBRARY_DIR / fileName;
    return !error && std::filesystem::exists(beside, error) ? beside.string() : fileName;
}

void* OwnLibraryFunction(const char* library, const char* function) {
    void* const loaded = ::dlopen(LibraryBesideProgram(library).c_str(), RTLD_NOW | RTLD_LOCAL);
    if (loaded == nullptr) {
        throw Failure(Failure::kOther, std::string("the program's own library cannot be loaded: ") + ::dlerror());
    }
    void* const found = ::dlsym(loaded, function);
    if (found == nullptr) {
        throw Failure(Failure::kOther, std::string("the program's own library is damaged: ") + ::dlerror());
    }
    return found;
}

} // namespace cimhttp
