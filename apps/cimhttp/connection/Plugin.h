#pragma once

#include "access/PluginAccess.h"
#include "host/TCIMContext.h"

#include <boost/shared_ptr.hpp>

#include <string>

namespace NQORVYX20 {
class INamespaceProvider;
} // namespace NQORVYX20

namespace cimhttp {

/// The plug-in, loaded into this process. It stays loaded when the object goes.
class Plugin {
  public:
    /// Loads the library at `path`, a file or a name that the loader searches. Throws Failure naming it when it cannot
    /// be loaded or is not the plug-in.
    explicit Plugin(const std::string& path);

    const std::string& Path() const { return path_; }

    /// The provider that registered itself while the library was loaded.
    boost::shared_ptr<NQORVYX20::INamespaceProvider> Provider() const { return provider_; }

    const PluginAccess& Access() const { return *access_; }

    /// A new namespace of the provider, not connected, that reads faithfully. `settings` are further keys for the
    /// plug-in, see cimhttp/ContextKeys.h; TVYXException eTypeMismatch is thrown for what it does not accept.
    boost::shared_ptr<NQORVYX20::ICIMNamespace> AllocateNamespace(NQORVYX20::TCIMContext settings) const;

  private:
    std::string path_;
    boost::shared_ptr<NQORVYX20::INamespaceProvider> provider_;
    const PluginAccess* access_;
};

} // namespace cimhttp
