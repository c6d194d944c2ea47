#include "http/TlsTransport.h"

#include <Pegasus/Common/Exception.h>

#include <dlfcn.h>

#include <filesystem>
#include <string>
#include <system_error>

namespace Pegasus::http {

namespace {

/// Beside the library or the program that this code is part of, or in a program's lib folder, or else where the loader
/// searches.
std::string libraryPath() {
    Dl_info self{};
    ::dladdr(reinterpret_cast<void*>(&TlsTransport::loaded), &self);
    const auto folder = std::filesystem::path(self.dli_fname != nullptr ? self.dli_fname : "").parent_path();
    for (const auto& path : {folder / kTlsTransportLibrary, folder / "../lib" / kTlsTransportLibrary}) {
        std::error_code ignored;
        if (std::filesystem::exists(path, ignored)) {
            return path.string();
        }
    }
    return kTlsTransportLibrary;
}

const TlsTransport& load() {
    void* const library = ::dlopen(libraryPath().c_str(), RTLD_NOW | RTLD_LOCAL);
    void* const function = library == nullptr ? nullptr : ::dlsym(library, kTlsTransportFunction);
    if (function == nullptr) {
        throw SSLException(String(std::string("there is no TLS: ") + ::dlerror()));
    }
    return *reinterpret_cast<TlsTransportFunction*>(function)();
}

} // namespace

const TlsTransport& TlsTransport::loaded() {
    static const TlsTransport& transport = load();
    return transport;
}

} // namespace Pegasus::http
