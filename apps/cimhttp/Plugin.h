#pragma once

#include <boost/shared_ptr.hpp>

#include <string>
#include <vector>

namespace NQORVYX20 {
class ICIMNamespace;
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

    /// A new namespace of the provider, not connected.
    boost::shared_ptr<NQORVYX20::ICIMNamespace> AllocateNamespace() const;

    /// The connecting operations of the plug-in's namespaces, which its interface does not have: see
    /// TCimHTTPNamespace::connect and EnumerateClassNames. The namespace must come from AllocateNamespace.
    void Connect(NQORVYX20::ICIMNamespace& name_space, const std::string& host, const std::string& user,
                 const std::string& password, int port) const;
    std::vector<std::string> ClassNames(NQORVYX20::ICIMNamespace& name_space) const;

  private:
    template <typename Function>
    Function* Find(const char* link_name) const;

    std::string path_;
    void* library_;
    boost::shared_ptr<NQORVYX20::INamespaceProvider> provider_;
};

} // namespace cimhttp
