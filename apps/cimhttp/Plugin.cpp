#include "Plugin.h"

#include <dlfcn.h>

#include <type_traits>

#include "Failure.h"
#include "host/ICIMNamespace.h"
#include "host/INamespaceProvider.h"
#include "host/INamespaceProviderManager.h"
#include "host/PegStrToStdStr.h"
#include "host/TRootObject.h"
#include "provider/TCimHTTPNamespace.h"

namespace cimhttp {

namespace {

using NQORVYX20::ICIMNamespace;
using NQORVYX20::TCIMContext;
using NQORVYX20::TCimHTTPNamespace;
using NQORVYX20::TCIMValue;
using ClassNameArray = Pegasus::Array<Pegasus::CIMName>;

constexpr const char* kProviderName = "cimhttp";
constexpr const char* kRemoteNamespace = "root/cimv2";

// A library that is loaded at run time cannot be linked to, so its two member functions are found by their link names
// and called with the object as the first argument, which is what the Itanium C++ ABI makes of a member function. The
// interface is the first base of TCimHTTPNamespace, so that both have one address. The signatures are held to those of
// the plug-in's header.
using ConnectFunction = void(ICIMNamespace*, std::string, std::string, std::string, int);
using ClassNamesFunction = void(ICIMNamespace*, std::string, std::string, ClassNameArray&);
constexpr const char* kConnect =
    "_ZN9NQORVYX2017TCimHTTPNamespace7connectENSt7__cxx1112basic_stringIcSt11char_traitsIcESaIcEEES6_S6_i";
constexpr const char* kClassNames = "_ZN9NQORVYX2017TCimHTTPNamespace19EnumerateClassNamesENSt7__cxx1112basic_"
                                    "stringIcSt11char_traitsIcESaIcEEES6_RN7Pegasus5ArrayINS7_7CIMNameEEE";
static_assert(std::is_same_v<decltype(&TCimHTTPNamespace::connect),
                             void (TCimHTTPNamespace::*)(std::string, std::string, std::string, int)>);
static_assert(std::is_same_v<decltype(&TCimHTTPNamespace::EnumerateClassNames),
                             void (TCimHTTPNamespace::*)(std::string, std::string, ClassNameArray&)>);

} // namespace

Plugin::Plugin(const std::string& path) : path_(path), library_(::dlopen(path.c_str(), RTLD_NOW | RTLD_LOCAL)) {
    if (library_ == nullptr) {
        throw Failure(Failure::kOther, std::string("the plug-in cannot be loaded: ") + ::dlerror());
    }
    provider_ = NQORVYX20::TRootObject::GetNamespaceProviderManager()->GetNamespaceProvider(kProviderName);
    if (!provider_) {
        throw Failure(Failure::kOther, path + " is not the plug-in: it registers no provider '" + kProviderName + "'");
    }
}

boost::shared_ptr<ICIMNamespace> Plugin::AllocateNamespace() const {
    const TCIMContext context{{"pluginNameQualDeclValue", TCIMValue(kProviderName)}};
    return provider_->AllocateNamespace(context, false);
}

void Plugin::Connect(ICIMNamespace& name_space, const std::string& host, const std::string& user,
                     const std::string& password, int port) const {
    Find<ConnectFunction>(kConnect)(&name_space, host, user, password, port);
}

std::vector<std::string> Plugin::ClassNames(ICIMNamespace& name_space) const {
    ClassNameArray names;
    Find<ClassNamesFunction>(kClassNames)(&name_space, kRemoteNamespace, "", names);
    std::vector<std::string> texts;
    texts.reserve(names.size());
    for (Pegasus::Uint32 i = 0; i < names.size(); ++i) {
        texts.push_back(NQORVYX20::PegStrToStdStr(names[i].getString()));
    }
    return texts;
}

template <typename Function>
Function* Plugin::Find(const char* link_name) const {
    void* const symbol = ::dlsym(library_, link_name);
    if (symbol == nullptr) {
        throw Failure(Failure::kOther, path_ + " is not a plug-in of this version: " + ::dlerror());
    }
    return reinterpret_cast<Function*>(symbol);
}

} // namespace cimhttp
