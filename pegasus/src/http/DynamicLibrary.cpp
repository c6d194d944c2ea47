#include "http/DynamicLibrary.h"

#include <dlfcn.h>

#include <filesystem>
#include <system_error>

namespace Pegasus::http {

namespace {

std::string pathOf(const std::string& name) {
    Dl_info self{};
    ::dladdr(reinterpret_cast<void*>(&pathOf), &self);
    const auto path = std::filesystem::path(self.dli_fname != nullptr ? self.dli_fname : "").parent_path() / name;
    std::error_code ignored;
    return std::filesystem::exists(path, ignored) ? path.string() : name;
}

} // namespace

DynamicLibrary::DynamicLibrary(const std::string& name)
    : handle_(::dlopen(pathOf(name).c_str(), RTLD_NOW | RTLD_LOCAL)) {}

std::string DynamicLibrary::error() {
    const char* const text = ::dlerror();
    return text != nullptr ? text : "";
}

void* DynamicLibrary::find(const char* name) const { return handle_ == nullptr ? nullptr : ::dlsym(handle_, name); }

} // namespace Pegasus::http
