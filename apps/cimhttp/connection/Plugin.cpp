#include "connection/Plugin.h"

#include "Failure.h"
#include "cimhttp/ContextKeys.h"
#include "host/ICIMNamespace.h"
#include "host/INamespaceProvider.h"
#include "host/INamespaceProviderManager.h"
#include "host/TRootObject.h"

#include <dlfcn.h>

#include <filesystem>
#include <utility>

namespace cimhttp {

namespace {

using namespace NQORVYX20;

constexpr const char* kProviderName = "cimhttp";

/// Loads a library for the rest of the process; `what` names it in the Failure where that cannot be.
void* LoadLibrary(const std::string& path, const std::string& what) {
    void* const library = ::dlopen(path.c_str(), RTLD_NOW | RTLD_LOCAL);
    if (library == nullptr) {
        throw Failure(Failure::kOther, what + " cannot be loaded: " + ::dlerror());
    }
    return library;
}

boost::shared_ptr<INamespaceProvider> LoadProvider(const std::string& path) {
    LoadLibrary(path, "the plug-in");
    auto provider = TRootObject::GetNamespaceProviderManager()->GetNamespaceProvider(kProviderName);
    if (!provider) {
        throw Failure(Failure::kOther, path + " is not the plug-in: it registers no provider '" + kProviderName + "'");
    }
    return provider;
}

/// The plug-in must be loaded already.
const PluginAccess* LoadAccess() {
    void* const library = LoadLibrary(LibraryBesideProgram(kPluginAccessLibrary), "the program's own library");
    void* const function = ::dlsym(library, kPluginAccessFunction);
    if (function == nullptr) {
        throw Failure(Failure::kOther, std::string("the program's own library is damaged: ") + ::dlerror());
    }
    return reinterpret_cast<PluginAccessFunction*>(function)();
}

} // namespace

std::string LibraryBesideProgram(const std::string& fileName) {
    std::error_code error;
    const auto program = std::filesystem::read_symlink("/proc/self/exe", error);
    const auto beside = program.parent_path().parent_path() / CIMHTTP_LIBRARY_DIR / fileName;
    return !error && std::filesystem::exists(beside, error) ? beside.string() : fileName;
}

Plugin::Plugin(const std::string& path) : path_(path), provider_(LoadProvider(path)), access_(LoadAccess()) {}

boost::shared_ptr<ICIMNamespace> Plugin::AllocateNamespace(TCIMContext settings) const {
    settings.emplace(kPluginNameKey, TCIMValue(kProviderName));
    settings.emplace(kReadingKey, TCIMValue(kFaithfulReading));
    return provider_->AllocateNamespace(std::move(settings), false);
}

} // namespace cimhttp
